#include "codecs/PropertyContainers.h"
#include "codecs/PropertyLimits.h"
#include <algorithm>
#include <array>
#include <string_view>

#include <zlib.h>

namespace pixelhain {

namespace {

// A keyword and what stands in front of a text.
constexpr std::size_t textHead = 128;

using Bytes = std::vector<std::uint8_t>;

struct Chunk {
    std::array<std::uint8_t, 4> type {};
    ByteRange contents;

    [[nodiscard]] bool is(std::string_view name) const
    {
        return std::equal(name.begin(), name.end(), type.begin());
    }
};

/// A text chunk, taken apart.
struct Text {
    std::string_view keyword;
    ByteRange place;
    bool isCompressed = false;
};

// At most what a block may have; of one that has more only the beginning.
Bytes inflated(Bytes const& packed)
{
    Bytes bytes(PropertyLimits::unpacked);
    z_stream stream {};
    if (inflateInit(&stream) != Z_OK)
        return {};
    stream.next_in = const_cast<Bytef*>(packed.data());
    stream.avail_in = static_cast<uInt>(packed.size());
    stream.next_out = bytes.data();
    stream.avail_out = static_cast<uInt>(bytes.size());
    inflate(&stream, Z_FINISH);
    bytes.erase(bytes.end() - static_cast<std::ptrdiff_t>(stream.avail_out), bytes.end());
    inflateEnd(&stream);
    return bytes;
}

int digitOf(std::uint8_t letter)
{
    if (letter >= '0' && letter <= '9')
        return letter - '0';
    letter |= 0x20;
    return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : -1;
}

// What programs wrote before there was a chunk for EXIF: an empty line, a name, the length, and
// digits in lines.
Bytes unhexed(Bytes const& text)
{
    auto at = text.begin();
    for (int lines = 0; lines < 3; ++lines) {
        at = std::find(at, text.end(), std::uint8_t { '\n' });
        if (at == text.end())
            return {};
        ++at;
    }
    Bytes bytes;
    int high = -1;
    for (; at != text.end(); ++at) {
        auto const digit = digitOf(*at);
        if (digit < 0)
            continue;
        if (high >= 0)
            bytes.push_back(static_cast<std::uint8_t>(high << 4 | digit));
        high = high < 0 ? digit : -1;
    }
    return bytes;
}

class ChunkScan {
public:
    ChunkScan(ByteSource const& bytes, PropertyGatherer& gatherer)
        : bytes_(bytes)
        , gatherer_(gatherer)
    {
    }

    void scan()
    {
        std::uint64_t offset = 8;
        for (std::size_t i = 0; i < PropertyLimits::chunks; ++i) {
            std::array<std::uint8_t, 8> head {};
            if (bytes_.readAt(offset, head) != head.size())
                return;
            Chunk chunk;
            std::copy_n(head.begin() + 4, chunk.type.size(), chunk.type.begin());
            chunk.contents = { offset + head.size(), bigEndian32(head.data()) };
            if (chunk.is("eXIf"))
                gatherer_.takeExif(bytes_, chunk.contents);
            else if (chunk.is("tEXt") || chunk.is("zTXt") || chunk.is("iTXt"))
                takeText(chunk);
            offset = chunk.contents.offset + chunk.contents.length + 4;
        }
    }

private:
    void takeText(Chunk const& chunk)
    {
        auto const head = bytesAt(bytes_, chunk.contents.offset,
            static_cast<std::size_t>(std::min<std::uint64_t>(chunk.contents.length, textHead)));
        auto const text = textIn(chunk, head);
        if (!text)
            return;
        if (text->keyword == "XML:com.adobe.xmp" && !text->isCompressed) {
            gatherer_.takePacket(bytes_, text->place);
            return;
        }
        constexpr std::string_view profile = "Raw profile type ";
        auto const isPacket = text->keyword == "XML:com.adobe.xmp";
        if ((!isPacket && !text->keyword.starts_with(profile))
            || ++unpacked_ > PropertyLimits::blocks)
            return;
        auto const kind = text->keyword.substr(isPacket ? text->keyword.size() : profile.size());
        if (!isPacket && kind != "exif" && kind != "APP1" && kind != "xmp")
            return;
        auto contents = bytesAt(bytes_, text->place.offset,
            static_cast<std::size_t>(
                std::min<std::uint64_t>(text->place.length, PropertyLimits::unpacked)));
        if (text->isCompressed)
            contents = inflated(contents);
        takeBlock(isPacket ? contents : unhexed(contents));
    }

    // The parts of the three kinds of text up to where the text itself begins.
    [[nodiscard]] static std::optional<Text> textIn(Chunk const& chunk, Bytes const& head)
    {
        std::string_view const all(reinterpret_cast<char const*>(head.data()), head.size());
        auto at = all.find('\0');
        if (at == all.npos)
            return {};
        Text text;
        text.keyword = all.substr(0, at++);
        if (chunk.is("zTXt")) {
            text.isCompressed = true;
            ++at;
        } else if (chunk.is("iTXt")) {
            text.isCompressed = at < all.size() && all[at] == 1;
            at += 2;
            for (int parts = 0; parts < 2; ++parts) { // the language, and the keyword in it
                at = all.find('\0', at);
                if (at++ == all.npos)
                    return {};
            }
        }
        if (at > chunk.contents.length)
            return {};
        text.place = { chunk.contents.offset + at, chunk.contents.length - at };
        return text;
    }

    void takeBlock(Bytes const& block)
    {
        constexpr std::string_view packetName = "http://ns.adobe.com/xap/1.0/";
        SpanBytes const bytes(block);
        ByteRange const all { 0, block.size() };
        std::string_view const text(reinterpret_cast<char const*>(block.data()), block.size());
        if (text.starts_with("II") || text.starts_with("MM"))
            gatherer_.takeExif(bytes);
        else if (startsWith(block, "Exif\0\0"))
            gatherer_.takeExif(bytes, { 6, block.size() - 6 });
        else if (text.starts_with(packetName) || text.starts_with('<'))
            gatherer_.takePacket(bytes, all);
    }

    ByteSource const& bytes_;
    PropertyGatherer& gatherer_;
    std::size_t unpacked_ = 0;
};

} // namespace

void gatherFromPng(ByteSource const& bytes, PropertyGatherer& gatherer)
{
    ChunkScan(bytes, gatherer).scan();
}

} // namespace pixelhain
