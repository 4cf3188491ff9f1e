#include "codecs/ByteView.h"
#include "codecs/DecodeLimits.h"
#include "codecs/HeadBytes.h"
#include "codecs/MakerNote.h"
#include "codecs/PreviewShape.h"
#include "codecs/RawContainers.h"
#include "codecs/TiffReader.h"
#include <algorithm>
#include <array>
#include <cmath>

namespace pixelhain {

namespace {

namespace tag {
constexpr std::uint16_t subfileType = 0x00FE;
constexpr std::uint16_t width = 0x0100;
constexpr std::uint16_t height = 0x0101;
constexpr std::uint16_t bitsPerSample = 0x0102;
constexpr std::uint16_t compression = 0x0103;
constexpr std::uint16_t photometric = 0x0106;
constexpr std::uint16_t make = 0x010F;
constexpr std::uint16_t stripOffsets = 0x0111;
constexpr std::uint16_t orientation = 0x0112;
constexpr std::uint16_t samples = 0x0115;
constexpr std::uint16_t stripLengths = 0x0117;
constexpr std::uint16_t planar = 0x011C;
constexpr std::uint16_t tileOffsets = 0x0144;
constexpr std::uint16_t tileLengths = 0x0145;
constexpr std::uint16_t subDirectories = 0x014A;
constexpr std::uint16_t jpegOffset = 0x0201;
constexpr std::uint16_t jpegLength = 0x0202;
constexpr std::uint16_t exif = 0x8769;
constexpr std::uint16_t leafPackets = 0x8606;
constexpr std::uint16_t makerNote = 0x927C;
constexpr std::uint16_t exifWidth = 0xA002;
constexpr std::uint16_t exifHeight = 0xA003;
constexpr std::uint16_t dngVersion = 0xC612;
constexpr std::uint16_t defaultCropSize = 0xC620;
constexpr std::uint16_t previewColors = 0xC71A;
constexpr std::uint16_t kodak = 0xFE00;
// Panasonic's own numbers, in files that begin with "IIU".
constexpr std::uint16_t sensorTop = 0x0004;
constexpr std::uint16_t sensorLeft = 0x0005;
constexpr std::uint16_t sensorBottom = 0x0006;
constexpr std::uint16_t sensorRight = 0x0007;
constexpr std::uint16_t jpegFromRaw = 0x002E;
constexpr std::uint16_t largeJpegFromRaw = 0x0127;
} // namespace tag

constexpr std::size_t mostDirectories = 64;
constexpr std::uint32_t mostSubDirectories = 16;
constexpr std::size_t mostCandidates = 64;
constexpr int largestPlain = 2048;

bool isSensorData(std::uint32_t photometric, std::uint32_t compression)
{
    constexpr std::uint32_t colorFilterArray = 32803;
    constexpr std::uint32_t linearRaw = 34892;
    constexpr std::array<std::uint32_t, 8> makersOwn { 32767, 32769, 32770, 32867, 34316, 34713,
        65000, 65535 };
    return photometric == colorFilterArray || photometric == linearRaw
        || std::ranges::find(makersOwn, compression) != makersOwn.end();
}

std::int64_t area(PixelSize size)
{
    return std::int64_t { size.width } * size.height;
}

PixelSize sizeOf(std::optional<std::uint32_t> width, std::optional<std::uint32_t> height)
{
    if (!width || !height || !isWithinLimits(*width, *height))
        return {};
    return { static_cast<int>(*width), static_cast<int>(*height) };
}

class TiffRawScan {
public:
    TiffRawScan(ByteSource const& bytes, TiffReader const& reader, RawContents& contents)
        : bytes_(bytes)
        , reader_(reader)
        , contents_(contents)
    {
        std::array<std::uint8_t, 4> start {};
        isPanasonic_
            = bytes.readAt(reader.base(), start) == start.size() && startsWith(start, "IIU\0");
    }

    bool scan()
    {
        enqueue(reader_.firstDirectory());
        for (std::size_t i = 0; i < queue_.size(); ++i) {
            auto const directory = reader_.directory(queue_[i]);
            if (!directory)
                continue;
            if (i == 0)
                takeFirst(*directory);
            takePicture(*directory);
            follow(*directory);
        }
        takeSizes();
        return isOpen_;
    }

private:
    void enqueue(std::uint32_t offset)
    {
        if (offset != 0 && queue_.size() < mostDirectories
            && std::ranges::find(queue_, offset) == queue_.end())
            queue_.push_back(offset);
    }

    void follow(TiffDirectory const& directory)
    {
        if (auto const* field = directory.find(tag::subDirectories)) {
            for (std::uint32_t i = 0; i < std::min(field->count, mostSubDirectories); ++i)
                enqueue(reader_.number(*field, i).value_or(0));
        }
        enqueue(reader_.number(directory, tag::kodak).value_or(0));
        if (auto const at = reader_.number(directory, tag::exif))
            takeExif(*at);
        enqueue(directory.next);
    }

    void takeFirst(TiffDirectory const& directory)
    {
        isOpen_ = true;
        auto const orientation = reader_.number(directory, tag::orientation).value_or(1);
        if (orientation >= 1 && orientation <= 8)
            contents_.orientation = static_cast<int>(orientation);
        contents_.isDng = directory.find(tag::dngVersion) != nullptr;
        if (isPanasonic_)
            takePanasonic(directory);
        if (auto const* packets = directory.find(tag::leafPackets))
            takeLeafPackets(*packets);
    }

    void takePanasonic(TiffDirectory const& directory)
    {
        auto const edge = [&](std::uint16_t tag) {
            return std::int64_t { reader_.number(directory, tag).value_or(0) };
        };
        auto const width = edge(tag::sensorRight) - edge(tag::sensorLeft);
        auto const height = edge(tag::sensorBottom) - edge(tag::sensorTop);
        if (isWithinLimits(width, height))
            sensor_ = { static_cast<int>(width), static_cast<int>(height) };
        for (auto const tag : { tag::jpegFromRaw, tag::largeJpegFromRaw }) {
            if (auto const* field = directory.find(tag))
                addJpeg(field->valueOffset, field->count);
        }
    }

    // Leaf wraps everything in named packets; the preview is one of them.
    void takeLeafPackets(TiffField const& field)
    {
        constexpr std::size_t headBytes = 52;
        constexpr int mostPackets = 64;
        auto at = reader_.base() + field.valueOffset;
        auto const end = at + field.count;
        for (int i = 0; i < mostPackets && at + headBytes <= end; ++i) {
            auto const head = bytesAt(bytes_, at, headBytes);
            if (head.size() < headBytes || !startsWith(head, "PKTS"))
                return;
            auto const length = reader_.number32(head.data() + 48);
            if (startsWith(ByteSpan(head).subspan(8), "JPEG_preview_data"))
                addJpeg(at + headBytes - reader_.base(), length);
            at += headBytes + length;
        }
    }

    void takeExif(std::uint32_t offset)
    {
        if (hasExif_)
            return;
        hasExif_ = true;
        auto const exif = reader_.directory(offset);
        if (!exif)
            return;
        exif_
            = sizeOf(reader_.number(*exif, tag::exifWidth), reader_.number(*exif, tag::exifHeight));
        auto colors = exifColors(reader_, *exif);
        if (auto const* field = exif->find(tag::makerNote)) {
            auto const note = readMakerNote(bytes_, reader_, *field);
            for (auto const& range : note.previews)
                add(range);
            if (colors == RawColors::unknown)
                colors = note.colors;
        }
        if (contents_.colors == RawColors::unknown)
            contents_.colors = colors;
    }

    void takePicture(TiffDirectory const& directory)
    {
        auto const number = [&](std::uint16_t tag, std::uint32_t otherwise) {
            return reader_.number(directory, tag).value_or(otherwise);
        };
        auto const size
            = sizeOf(reader_.number(directory, tag::width), reader_.number(directory, tag::height));
        auto const compression = number(tag::compression, 1);
        auto const photometric = number(tag::photometric, 0);
        if (isSensorData(photometric, compression)) {
            if (area(size) > area(sensor_)) {
                sensor_ = size;
                crop_ = cropSize(directory);
            }
            return;
        }
        if ((number(tag::subfileType, 1) & 1) == 0 && area(size) > area(main_))
            main_ = size;
        if (area(size) > area(largest_))
            largest_ = size;
        if (number(tag::previewColors, 0) == 3)
            contents_.colors = RawColors::adobeRgb;
        addJpeg(number(tag::jpegOffset, 0), number(tag::jpegLength, 0));
        if (compression == 6 || compression == 7 || compression == 99) {
            addOnlyPart(directory, tag::stripOffsets, tag::stripLengths);
            addOnlyPart(directory, tag::tileOffsets, tag::tileLengths);
        }
        constexpr std::uint32_t rgb = 2;
        if (compression == 1 && photometric == rgb)
            addPlain(directory, size);
    }

    [[nodiscard]] PixelSize cropSize(TiffDirectory const& directory) const
    {
        auto const* field = directory.find(tag::defaultCropSize);
        if (field == nullptr || field->count != 2)
            return {};
        auto const side = [&](std::uint32_t index) -> std::int64_t {
            if (auto const whole = reader_.number(*field, index))
                return *whole;
            auto const value = reader_.rational(*field, index).value_or(0);
            return value >= 1 && value <= DecodeLimits::side ? std::llround(value) : 0;
        };
        auto const width = side(0);
        auto const height = side(1);
        if (!isWithinLimits(width, height))
            return {};
        return { static_cast<int>(width), static_cast<int>(height) };
    }

    void add(ByteRange range)
    {
        if (range.length >= 4 && contents_.jpegs.size() < mostCandidates
            && std::ranges::find(contents_.jpegs, range) == contents_.jpegs.end())
            contents_.jpegs.push_back(range);
    }

    void addJpeg(std::uint64_t offset, std::uint64_t length)
    {
        if (offset != 0)
            add({ reader_.base() + offset, length });
    }

    // A JPEG that is cut into pieces is none that can be decoded by itself.
    void addOnlyPart(
        TiffDirectory const& directory, std::uint16_t offsetTag, std::uint16_t lengthTag)
    {
        auto const* offsets = directory.find(offsetTag);
        auto const* lengths = directory.find(lengthTag);
        if (offsets != nullptr && lengths != nullptr && offsets->count == 1 && lengths->count == 1)
            addJpeg(reader_.number(*offsets).value_or(0), reader_.number(*lengths).value_or(0));
    }

    void addPlain(TiffDirectory const& directory, PixelSize size)
    {
        auto const* offsets = directory.find(tag::stripOffsets);
        auto const* lengths = directory.find(tag::stripLengths);
        auto const* bits = directory.find(tag::bitsPerSample);
        if (offsets == nullptr || lengths == nullptr || bits == nullptr || area(size) == 0
            || size.longestSide() > largestPlain || reader_.number(*bits) != 8U
            || reader_.number(directory, tag::samples) != 3U
            || reader_.number(directory, tag::planar).value_or(1) != 1
            || contents_.plains.size() >= mostSubDirectories)
            return;
        auto const start = reader_.number(*offsets);
        auto end = std::uint64_t { start.value_or(0) };
        for (std::uint32_t i = 0; i < std::min<std::uint32_t>(offsets->count, largestPlain); ++i) {
            if (reader_.number(*offsets, i) != end) // strips that are apart
                return;
            end += reader_.number(*lengths, i).value_or(0);
        }
        if (start && end - *start >= static_cast<std::uint64_t>(area(size)) * 3)
            contents_.plains.push_back({ reader_.base() + *start, size });
    }

    // Sensors have some more lines than the picture, and EXIF tells the picture's. Where both
    // differ by more, a part was chosen in the camera, and the sensor's data are whole.
    void takeSizes()
    {
        auto const isClose = [&](PixelSize size) {
            constexpr double tolerance = 0.05;
            return std::abs(size.width - sensor_.width) <= tolerance * sensor_.width
                && std::abs(size.height - sensor_.height) <= tolerance * sensor_.height;
        };
        if (area(sensor_) == 0) {
            contents_.size = area(exif_) > 0 ? exif_ : area(main_) > 0 ? main_ : largest_;
            return;
        }
        auto const hasExif = !contents_.isDng && area(exif_) > 0;
        contents_.size = hasExif && isClose(exif_) ? exif_ : sensor_;
        auto const isPart = crop_.width <= sensor_.width && crop_.height <= sensor_.height;
        if (area(crop_) > 0 && isPart && !isClose(crop_))
            contents_.crop = crop_;
        else if (hasExif && !hasSameShape(exif_, sensor_) && !hasSameShape(exif_.turned(), sensor_))
            contents_.crop = largestOfShape(exif_, contents_.size);
    }

    ByteSource const& bytes_;
    TiffReader const& reader_;
    RawContents& contents_;
    std::vector<std::uint32_t> queue_;
    bool isOpen_ = false;
    bool isPanasonic_ = false;
    bool hasExif_ = false;
    PixelSize sensor_;
    PixelSize crop_;
    PixelSize exif_;
    PixelSize main_;
    PixelSize largest_;
};

bool isSensorDirectory(TiffReader const& reader, TiffDirectory const& directory)
{
    return isSensorData(reader.number(directory, tag::photometric).value_or(0),
        reader.number(directory, tag::compression).value_or(1));
}

} // namespace

bool readTiffRaw(ByteSource const& bytes, std::uint64_t base, RawContents& contents)
{
    auto const reader = TiffReader::open(bytes, base);
    return reader && TiffRawScan(bytes, *reader, contents).scan();
}

bool isTiffRaw(ByteSource const& bytes)
{
    constexpr std::size_t headBytes = 4096;
    HeadBytes const head(bytes, headBytes);
    auto const start = head.head();
    if (start.size() >= 16
        && (startsWith(start.subspan(8), "CR") || startsWith(start.subspan(8), "IIIITwaR")
            || startsWith(start.subspan(8), "MMMMRawT")))
        return true;
    auto const reader = TiffReader::open(head);
    auto const first = reader ? reader->directory(reader->firstDirectory()) : std::nullopt;
    if (!first)
        return false;
    if (first->find(tag::dngVersion) != nullptr || first->find(tag::leafPackets) != nullptr
        || isSensorDirectory(*reader, *first))
        return true;
    // A camera's first directory is a small preview, or has no picture at all.
    auto const isReduced = (reader->number(*first, tag::subfileType).value_or(0) & 1) != 0;
    auto const hasPicture
        = first->find(tag::stripOffsets) != nullptr || first->find(tag::tileOffsets) != nullptr;
    auto const* children = first->find(tag::subDirectories);
    if (first->find(tag::make) != nullptr && !hasPicture)
        return true;
    if (children == nullptr)
        return false;
    if (isReduced)
        return true;
    for (std::uint32_t i = 0; i < std::min(children->count, mostSubDirectories); ++i) {
        auto const child = reader->directory(reader->number(*children, i).value_or(0));
        if (child && isSensorDirectory(*reader, *child))
            return true;
    }
    return false;
}

} // namespace pixelhain
