#include "codecs/ByteView.h"
#include "codecs/MakerNote.h"
#include "codecs/RawContainers.h"
#include <algorithm>
#include <array>
#include <string_view>

namespace pixelhain {

namespace {

constexpr int mostBoxes = 512;
constexpr int deepest = 8;
// A picture stands behind a few numbers in its box.
constexpr std::size_t pictureLead = 64;

struct Box {
    std::array<char, 4> name {};
    std::uint64_t offset = 0; ///< of its contents
    std::uint64_t length = 0;

    [[nodiscard]] bool is(std::string_view other) const
    {
        return std::string_view(name.data(), name.size()) == other;
    }
};

struct Track {
    std::uint64_t offset = 0;
    std::uint64_t length = 0;
};

class BoxScan {
public:
    BoxScan(ByteSource const& bytes, RawContents& contents)
        : bytes_(bytes)
        , contents_(contents)
    {
    }

    bool scan()
    {
        scanBoxes(0, bytes_.size(), 0);
        return isOpen_;
    }

private:
    [[nodiscard]] std::optional<Box> boxAt(std::uint64_t offset, std::uint64_t end) const
    {
        std::array<std::uint8_t, 16> head {};
        if (end - offset < 8 || bytes_.readAt(offset, std::span(head).first(8)) != 8)
            return {};
        Box box;
        std::copy_n(head.begin() + 4, 4, box.name.begin());
        std::uint64_t length = bigEndian32(head.data());
        std::uint64_t headLength = 8;
        if (length == 0)
            length = end - offset;
        if (length == 1) {
            headLength = 16;
            if (end - offset < headLength || bytes_.readAt(offset, head) != head.size())
                return {};
            length = std::uint64_t { bigEndian32(head.data() + 8) } << 32
                | bigEndian32(head.data() + 12);
        }
        if (length < headLength)
            return {};
        box.offset = offset + headLength;
        // What a cut file still has of a box may hold a picture that is whole.
        box.length = std::min(length, end - offset) - headLength;
        return box;
    }

    void scanBoxes(std::uint64_t offset, std::uint64_t end, int depth)
    {
        while (offset < end && ++boxes_ <= mostBoxes) {
            auto const box = boxAt(offset, end);
            if (!box)
                return;
            takeBox(*box, depth);
            offset = box->offset + box->length;
        }
    }

    void takeBox(Box const& box, int depth)
    {
        constexpr std::uint64_t userTypeBytes = 16;
        auto const end = box.offset + box.length;
        if (depth >= deepest)
            return;
        if (box.is("trak"))
            takeTrack(box, depth);
        else if (box.is("moov") || box.is("mdia") || box.is("minf") || box.is("stbl"))
            scanBoxes(box.offset, end, depth + 1);
        else if (box.is("uuid") && box.length > userTypeBytes)
            takeUserBox(box, depth);
        else if (box.is("THMB") || box.is("PRVW"))
            takePicture(box);
        else if (box.is("CMT1"))
            takeFirstDirectory(box);
        else if (box.is("CMT2"))
            takeExif(box);
        else if (box.is("stsz"))
            track_.length = numberAt(box, 4) != 0 ? numberAt(box, 4) : numberAt(box, 12);
        else if (box.is("stco"))
            track_.offset = numberAt(box, 8);
        else if (box.is("co64"))
            track_.offset = numberAt(box, 8) << 32 | numberAt(box, 12);
    }

    [[nodiscard]] std::uint64_t numberAt(Box const& box, std::uint64_t at) const
    {
        std::array<std::uint8_t, 4> value {};
        if (at + value.size() > box.length || bytes_.readAt(box.offset + at, value) != value.size())
            return 0;
        return bigEndian32(value.data());
    }

    // One of a maker's own boxes holds others from its start on, another behind eight more bytes.
    void takeUserBox(Box const& box, int depth)
    {
        constexpr std::array<std::uint8_t, 4> preview { 0xEA, 0xF4, 0x2B, 0x5E };
        constexpr std::array<std::uint8_t, 4> metadata { 0x85, 0xC0, 0xB6, 0x87 };
        std::array<std::uint8_t, 4> type {};
        if (bytes_.readAt(box.offset, type) != type.size())
            return;
        auto const end = box.offset + box.length;
        if (type == metadata)
            scanBoxes(box.offset + 16, end, depth + 1);
        else if (type == preview)
            scanBoxes(box.offset + 24, end, depth + 1);
    }

    void takeTrack(Box const& box, int depth)
    {
        track_ = {};
        scanBoxes(box.offset, box.offset + box.length, depth + 1);
        if (track_.offset != 0 && track_.length >= 4)
            contents_.jpegs.push_back({ track_.offset, track_.length });
    }

    void takePicture(Box const& box)
    {
        auto const lead = bytesAt(bytes_, box.offset,
            static_cast<std::size_t>(std::min<std::uint64_t>(box.length, pictureLead)));
        for (std::size_t at = 0; at + 3 <= lead.size(); ++at) {
            if (startsWith(ByteSpan(lead).subspan(at), "\xFF\xD8\xFF")) {
                contents_.jpegs.push_back({ box.offset + at, box.length - at });
                return;
            }
        }
    }

    void takeFirstDirectory(Box const& box)
    {
        RawContents directory;
        if (!readTiffRaw(bytes_, box.offset, directory))
            return;
        isOpen_ = true;
        contents_.size = directory.size;
        contents_.orientation = directory.orientation;
    }

    // The directory that a TIFF has behind its first one stands by itself here.
    void takeExif(Box const& box)
    {
        auto const reader = TiffReader::open(bytes_, box.offset);
        auto const exif = reader ? reader->directory(reader->firstDirectory()) : std::nullopt;
        if (exif)
            contents_.colors = exifColors(*reader, *exif);
    }

    ByteSource const& bytes_;
    RawContents& contents_;
    Track track_;
    int boxes_ = 0;
    bool isOpen_ = false;
};

} // namespace

bool readCr3(ByteSource const& bytes, RawContents& contents)
{
    return BoxScan(bytes, contents).scan();
}

} // namespace pixelhain
