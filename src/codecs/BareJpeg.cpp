#include "codecs/BareJpeg.h"
#include "codecs/ByteView.h"
#include "codecs/JpegCode.h"
#include <algorithm>
#include <array>
#include <utility>

namespace pixelhain {

namespace {

constexpr int mostSegments = 1024;
constexpr int mostScans = 64; // encoders write about 10
constexpr int mostFill = 64; // bytes of 0xFF in front of a marker
constexpr std::size_t pieceBytes = 16384;

// Says that three components are YCbCr, whatever other headers were left out.
constexpr std::array<std::uint8_t, 20> opening { 0xFF, JpegCode::startOfImage, 0xFF,
    JpegCode::application0, 0, 16, 'J', 'F', 'I', 'F', 0, 1, 1, 0, 0, 1, 0, 1, 0, 0 };

bool isQuantization(ByteSpan tables)
{
    constexpr std::size_t table = 65;
    if (tables.empty() || tables.size() % table != 0)
        return false;
    for (std::size_t at = 0; at < tables.size(); at += table)
        if (tables[at] > 3) // of 8 bits, and with a number that there is
            return false;
    return true;
}

bool isHuffman(ByteSpan tables)
{
    constexpr std::size_t head = 17;
    while (tables.size() >= head) {
        std::size_t codes = 0;
        for (std::size_t length = 1; length < head; ++length)
            codes += tables[length];
        if ((tables[0] & 0xECU) != 0 || codes > 256 || tables.size() < head + codes)
            return false;
        tables = tables.subspan(head + codes);
        if (tables.empty())
            return true;
    }
    return false;
}

/// One walk from marker to marker.
class Walk {
public:
    Walk(ByteSource const& bytes, int maxPixel)
        : bytes_(bytes)
        , maxPixel_(maxPixel)
        , mostBytes_(mostBareBytes(maxPixel))
    {
        jpeg_.bytes.assign(opening.begin(), opening.end());
    }

    std::optional<BareJpeg> run()
    {
        if (nextMarker() != JpegCode::startOfImage)
            return {};
        for (int i = 0; i < mostSegments; ++i) {
            auto const marker = nextMarker();
            if (!marker)
                return {};
            if (*marker == JpegCode::endOfImage)
                return finish();
            if (!takeSegment(*marker))
                return {};
        }
        return {};
    }

private:
    std::optional<std::uint8_t> nextMarker()
    {
        std::array<std::uint8_t, 2> head {};
        for (int i = 0; i < mostFill; ++i, ++offset_) {
            if (bytes_.readAt(offset_, head) != head.size() || head[0] != 0xFF)
                return {};
            if (head[1] == 0xFF)
                continue;
            offset_ += head.size();
            return head[1];
        }
        return {};
    }

    bool takeSegment(std::uint8_t marker)
    {
        std::array<std::uint8_t, 2> head {};
        if (bytes_.readAt(offset_, head) != head.size() || bigEndian16(head.data()) < 2)
            return false;
        auto const contents = offset_ + head.size();
        auto const length = std::size_t { bigEndian16(head.data()) } - head.size();
        offset_ = contents + length;
        if (JpegCode::isNote(marker))
            return marker != JpegCode::application14 || takeAdobe(bytesAt(bytes_, contents, 12));
        if (jpeg_.bytes.size() + length > mostBytes_)
            return false;
        auto const segment = bytesAt(bytes_, contents, length);
        if (segment.size() != length || !isSound(marker, segment))
            return false;
        return keep(std::array<std::uint8_t, 4> { 0xFF, marker, head[0], head[1] }) && keep(segment)
            && (marker != JpegCode::startOfScan || takeCodedPixels());
    }

    // Its last byte says what the components are.
    bool takeAdobe(ByteSpan contents)
    {
        constexpr std::size_t place = 11;
        constexpr std::uint8_t ycbcr = 1;
        if (startsWith(contents, "Adobe") && contents.size() > place && contents[place] != ycbcr)
            isOtherColors_ = true;
        return true;
    }

    bool isSound(std::uint8_t marker, ByteSpan segment)
    {
        switch (marker) {
        case JpegCode::quantizationTables:
            return isQuantization(segment);
        case JpegCode::huffmanTables:
            return isHuffman(segment);
        case JpegCode::restartInterval:
            return segment.size() == 2;
        case JpegCode::baselineFrame:
        case JpegCode::progressiveFrame:
            return takeFrame(marker, segment);
        case JpegCode::startOfScan:
            return isScan(segment);
        default:
            return false;
        }
    }

    bool takeFrame(std::uint8_t marker, ByteSpan frame)
    {
        constexpr std::size_t head = 6;
        constexpr std::size_t each = 3;
        if (!components_.empty() || frame.size() < head || frame[0] != 8
            || (frame[5] != 1 && frame[5] != 3) || frame.size() != head + each * frame[5])
            return false;
        for (std::size_t at = head; at < frame.size(); at += each) {
            auto const across = frame[at + 1] >> 4U;
            auto const down = frame[at + 1] & 15U;
            if (across < 1 || across > 4 || down < 1 || down > 4 || frame[at + 2] > 3)
                return false;
            components_.push_back(frame[at]);
        }
        frame_ = marker;
        jpeg_.isGrey = components_.size() == 1;
        jpeg_.size = { bigEndian16(frame.data() + 3), bigEndian16(frame.data() + 1) };
        // Some encoders count from 0; letters stand for other colours.
        bool const isUsual = jpeg_.isGrey || std::ranges::equal(components_, std::array { 1, 2, 3 })
            || std::ranges::equal(components_, std::array { 0, 1, 2 });
        return isUsual && jpeg_.size.width > 0 && jpeg_.size.height > 0
            && jpeg_.size.longestSide() <= maxPixel_;
    }

    bool isScan(ByteSpan head)
    {
        if (++scans_ > mostScans || head.empty())
            return false;
        std::size_t const count = head[0];
        if (count < 1 || count > components_.size() || head.size() != 4 + 2 * count)
            return false;
        for (std::size_t i = 0; i < count; ++i)
            if (std::ranges::count(components_, head[1 + 2 * i]) != 1
                || (head[2 + 2 * i] & 0xCCU) != 0)
                return false;
        auto const band = head.last(3);
        if (frame_ != JpegCode::progressiveFrame)
            return band[0] == 0 && band[1] == 63 && band[2] == 0;
        return band[0] <= band[1] && band[1] <= 63 && (band[2] >> 4U) <= 13
            && (band[2] & 15U) <= 13;
    }

    // They end in front of the first marker that is not one of theirs.
    bool takeCodedPixels()
    {
        for (;;) {
            auto const piece = bytesAt(bytes_, offset_, pieceBytes);
            std::size_t at = 0;
            bool isEnd = false;
            while (at + 1 < piece.size() && !isEnd) {
                auto const next = piece[at + 1];
                if (piece[at] != 0xFF)
                    ++at;
                else if (next == 0
                    || (next >= JpegCode::firstRestart && next <= JpegCode::lastRestart))
                    at += 2;
                else
                    isEnd = true;
            }
            at = std::min(at, piece.size());
            if (!keep(ByteSpan(piece).first(at)))
                return false;
            offset_ += at;
            if (isEnd || at == 0)
                return isEnd;
        }
    }

    bool keep(ByteSpan more)
    {
        constexpr std::size_t closing = 2;
        if (jpeg_.bytes.size() + more.size() + closing > mostBytes_)
            return false;
        jpeg_.bytes.insert(jpeg_.bytes.end(), more.begin(), more.end());
        return true;
    }

    std::optional<BareJpeg> finish()
    {
        if (scans_ == 0 || (isOtherColors_ && !jpeg_.isGrey))
            return {};
        jpeg_.bytes.insert(jpeg_.bytes.end(), { 0xFF, JpegCode::endOfImage });
        return std::move(jpeg_);
    }

    ByteSource const& bytes_;
    int const maxPixel_;
    std::size_t const mostBytes_;
    std::uint64_t offset_ = 0;
    BareJpeg jpeg_;
    std::vector<std::uint8_t> components_;
    std::uint8_t frame_ = 0;
    int scans_ = 0;
    bool isOtherColors_ = false;
};

} // namespace

std::size_t mostBareBytes(int maxPixel)
{
    auto const side = static_cast<std::size_t>(std::max(maxPixel, 0));
    constexpr std::size_t tables = 2048;
    return side * side / 2 + tables;
}

std::optional<BareJpeg> bareJpeg(ByteSource const& bytes, int maxPixel)
{
    return Walk(bytes, maxPixel).run();
}

} // namespace pixelhain
