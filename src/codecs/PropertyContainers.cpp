#include "codecs/PropertyContainers.h"
#include "codecs/HeadBytes.h"
#include "codecs/HeifIndex.h"
#include "codecs/JpegHeader.h"
#include "codecs/JxlStream.h"
#include "codecs/PropertyLimits.h"
#include "codecs/RawContents.h"
#include <algorithm>
#include <array>

namespace pixelhain {

namespace {

// A user's own box, by the 16 bytes that its contents begin with.
using BoxKey = std::array<std::uint8_t, 16>;

constexpr BoxKey canonKey { 0x85, 0xC0, 0xB6, 0x87, 0x82, 0x0F, 0x11, 0xE0, 0x81, 0x11, 0xF4, 0xCE,
    0x46, 0x2B, 0x6A, 0x48 };
constexpr BoxKey packetKey { 0xBE, 0x7A, 0xCF, 0xCB, 0x97, 0xA9, 0x42, 0xE8, 0x9C, 0x71, 0x99, 0x94,
    0x91, 0xE3, 0xAF, 0xAC };
constexpr BoxKey jp2ExifKey { 'J', 'p', 'g', 'T', 'i', 'f', 'f', 'E', 'x', 'i', 'f', '-', '>', 'J',
    'P', '2' };

bool hasKey(ByteSource const& bytes, IsoBox const& box, BoxKey const& key)
{
    BoxKey found {};
    return box.type == fourCharacters("uuid") && box.contents.length > key.size()
        && bytes.readAt(box.contents.offset, found) == found.size() && found == key;
}

// The picture that `range` holds may have blocks of its own.
void gatherFromPreview(ByteSource const& bytes, ByteRange range, PropertyGatherer& gatherer)
{
    constexpr std::size_t headBytes = 4096;
    SliceBytes const slice(bytes, range.offset, range.length);
    HeadBytes const head(slice, headBytes);
    if (!startsWith(head.head(), "\xFF\xD8\xFF"))
        return;
    auto const header = readJpegHeader(head);
    for (auto const& block : header ? header->exifBlocks : std::vector<ByteRange> {})
        gatherer.takeExif(head, block);
}

void gatherFromPreviews(
    ByteSource const& bytes, RawContents const& contents, PropertyGatherer& gatherer)
{
    auto const count = std::min(contents.jpegs.size(), PropertyLimits::blocks);
    for (std::size_t i = 0; i < count && gatherer.lacksShot(); ++i)
        gatherFromPreview(bytes, contents.jpegs[i], gatherer);
}

// An EXIF box begins with how far behind that number the TIFF header stands.
void takeExifBox(ByteSource const& bytes, ByteRange contents, PropertyGatherer& gatherer)
{
    auto const start = bytesAt(bytes, contents.offset, 4);
    if (start.size() == 4 && contents.length > 4)
        gatherer.takeExif(
            bytes, rangeAfter(contents, std::uint64_t { 4 } + bigEndian32(start.data())));
}

void takeCompressedBox(ByteSource const& bytes, ByteRange contents, PropertyGatherer& gatherer)
{
    std::array<std::uint8_t, 4> type {};
    if (bytes.readAt(contents.offset, type) == type.size() && startsWith(type, "Exif")) {
        auto const block = readJxlExif(bytes);
        gatherer.takeExif(SpanBytes(block));
    }
}

std::string textUpToNul(std::vector<std::uint8_t> const& bytes, std::size_t from)
{
    auto const begin = bytes.begin() + static_cast<std::ptrdiff_t>(std::min(from, bytes.size()));
    return { begin, std::find(begin, bytes.end(), std::uint8_t { 0 }) };
}

} // namespace

void gatherFromJpeg(ByteSource const& bytes, PropertyGatherer& gatherer)
{
    auto const header = readJpegHeader(bytes);
    if (!header)
        return;
    gatherer.setPixelSize(header->traits.size);
    for (auto const& block : header->exifBlocks)
        gatherer.takeExif(bytes, block);
    for (auto const& packet : header->packets)
        gatherer.takePacket(bytes, packet);
}

void gatherFromWebp(ByteSource const& bytes, PropertyGatherer& gatherer)
{
    std::uint64_t offset = 12;
    for (std::size_t i = 0; i < PropertyLimits::chunks; ++i) {
        std::array<std::uint8_t, 14> head {};
        auto const got = bytes.readAt(offset, head);
        if (got < 8)
            return;
        std::uint64_t const length = littleEndian32(head.data() + 4);
        ByteRange const contents { offset + 8, length };
        if (startsWith(head, "EXIF")) {
            auto const hasPrefix = startsWith(ByteSpan(head).subspan(8), "Exif\0") && length > 6;
            gatherer.takeExif(bytes, rangeAfter(contents, hasPrefix ? 6 : 0));
        } else if (startsWith(head, "XMP ")) {
            gatherer.takePacket(bytes, contents);
        }
        offset = contents.offset + length + (length & 1);
    }
}

void gatherFromTiff(ByteSource const& bytes, PropertyGatherer& gatherer)
{
    gatherer.takeExif(bytes);
    // Some cameras leave it to the finished picture inside to say how it was taken; one maker keeps
    // its note only there.
    auto const isPanasonic = startsWith(bytesAt(bytes, 0, 4), "IIU\0");
    if (!isPanasonic && (!gatherer.lacksShot() || !isTiffRaw(bytes)))
        return;
    auto const contents = readRawContents(bytes);
    if (!contents)
        return;
    if (isPanasonic && !contents->jpegs.empty())
        gatherFromPreview(bytes, contents->jpegs.front(), gatherer);
    gatherFromPreviews(bytes, *contents, gatherer);
}

void gatherFromHeif(ByteSource const& bytes, PropertyGatherer& gatherer)
{
    auto const index = HeifIndex::read(bytes);
    if (!index)
        return;
    gatherer.setPixelSize(index->unturnedSize());
    if (auto const block = index->exif())
        gatherer.takeExif(bytes, *block);
    for (auto const& text : index->texts())
        gatherer.takePacket(bytes, text);
}

void gatherFromBoxes(ByteSource const& bytes, PropertyGatherer& gatherer)
{
    // A bare codestream has no boxes.
    if (startsWith(bytesAt(bytes, 0, 2), "\xFF"))
        return;
    for (auto const& box : boxesIn(bytes, { 0, bytes.size() })) {
        if (box.type == fourCharacters("Exif"))
            takeExifBox(bytes, box.contents, gatherer);
        else if (box.type == fourCharacters("brob"))
            takeCompressedBox(bytes, box.contents, gatherer);
        else if (box.type == fourCharacters("xml "))
            gatherer.takePacket(bytes, box.contents);
        else if (hasKey(bytes, box, jp2ExifKey))
            gatherer.takeExif(bytes, rangeAfter(box.contents, sizeof(BoxKey)));
        else if (hasKey(bytes, box, packetKey))
            gatherer.takePacket(bytes, rangeAfter(box.contents, sizeof(BoxKey)));
    }
}

void gatherFromCr3(ByteSource const& bytes, PropertyGatherer& gatherer)
{
    auto const movie = findBox(bytes, { 0, bytes.size() }, fourCharacters("moov"));
    if (!movie)
        return;
    for (auto const& box : boxesIn(bytes, movie->contents)) {
        if (!hasKey(bytes, box, canonKey))
            continue;
        for (auto const& [type, contents] :
            boxesIn(bytes, rangeAfter(box.contents, sizeof(BoxKey)))) {
            if (type == fourCharacters("CMT1"))
                gatherer.takeCameraBlock(bytes, contents);
            else if (type == fourCharacters("CMT2"))
                gatherer.takeShotBlock(bytes, contents);
            else if (type == fourCharacters("CMT3"))
                gatherer.takeMakerNoteBlock(bytes, contents);
        }
    }
    for (auto const& box : boxesIn(bytes, { 0, bytes.size() })) {
        if (hasKey(bytes, box, packetKey))
            gatherer.takePacket(bytes, rangeAfter(box.contents, sizeof(BoxKey)));
    }
}

void gatherFromRaw(ByteSource const& bytes, PropertyGatherer& gatherer)
{
    auto const contents = readRawContents(bytes);
    if (!contents)
        return;
    for (auto const& block : contents->exif)
        gatherer.takeExif(bytes, block);
    auto const camera = bytesAt(bytes, contents->camera.offset,
        static_cast<std::size_t>(
            std::min<std::uint64_t>(contents->camera.length, 2 * PropertyLimits::text)));
    auto make = textUpToNul(camera, 0);
    gatherer.takeModel(textUpToNul(camera, make.size() + 1));
    gatherer.takeMake(std::move(make));
    gatherFromPreviews(bytes, *contents, gatherer);
}

} // namespace pixelhain
