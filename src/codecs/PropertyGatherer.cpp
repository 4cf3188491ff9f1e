#include "codecs/PropertyGatherer.h"
#include "base/Text.h"
#include "codecs/ByteView.h"
#include "codecs/MakerNoteLens.h"
#include "codecs/PropertyLimits.h"
#include "codecs/XmpLens.h"
#include <algorithm>
#include <bit>
#include <cmath>

namespace pixelhain {

namespace {

namespace tag {
constexpr std::uint16_t make = 0x010F;
constexpr std::uint16_t model = 0x0110;
constexpr std::uint16_t packet = 0x02BC;
constexpr std::uint16_t exposureTime = 0x829A;
constexpr std::uint16_t fNumber = 0x829D;
constexpr std::uint16_t exifDirectory = 0x8769;
constexpr std::uint16_t isoSpeedRatings = 0x8827;
constexpr std::uint16_t dateTimeOriginal = 0x9003;
constexpr std::uint16_t focalLength = 0x920A;
constexpr std::uint16_t makerNote = 0x927C;
constexpr std::uint16_t lensModel = 0xA434;
} // namespace tag

namespace type {
constexpr std::uint16_t byte = 1;
constexpr std::uint16_t number16 = 3;
constexpr std::uint16_t number32 = 4;
constexpr std::uint16_t single = 11;
constexpr std::uint16_t twice = 12;
} // namespace type

// Blanks are what EXIF fills a field with whose value is not known.
bool isBlank(std::string_view text)
{
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

std::optional<std::string> shownText(std::string raw)
{
    raw.resize(std::min(raw.size(), PropertyLimits::text));
    if (isBlank(raw))
        return {};
    return displayText(raw);
}

void setText(std::optional<std::string>& property, std::string raw)
{
    if (!property)
        property = shownText(std::move(raw));
}

void setText(std::optional<std::string>& property, TiffReader const& reader,
    TiffDirectory const& directory, std::uint16_t tag)
{
    auto const* field = property ? nullptr : directory.find(tag);
    if (field != nullptr)
        setText(property, reader.text(*field, PropertyLimits::text));
}

std::optional<double> realNumber(TiffReader const& reader, TiffField const& field)
{
    if (field.type != type::single && field.type != type::twice)
        return reader.rational(field);
    auto const raw = reader.bytes(field, 8);
    double value = NAN;
    if (field.type == type::single && raw.size() >= 4) {
        value = double(std::bit_cast<float>(reader.number32(raw.data())));
    } else if (field.type == type::twice && raw.size() >= 8) {
        std::uint64_t const first = reader.number32(raw.data());
        std::uint64_t const second = reader.number32(raw.data() + 4);
        value = std::bit_cast<double>(
            reader.isBigEndian() ? first << 32 | second : second << 32 | first);
    }
    return std::isfinite(value) ? std::optional(value) : std::nullopt;
}

void setNumber(std::optional<double>& property, TiffReader const& reader,
    TiffDirectory const& directory, std::uint16_t tag)
{
    auto const* field = property ? nullptr : directory.find(tag);
    if (field != nullptr)
        property = realNumber(reader, *field);
}

std::optional<TiffDirectory> firstDirectory(std::optional<TiffReader> const& reader)
{
    return reader ? reader->directory(reader->firstDirectory()) : std::nullopt;
}

} // namespace

void PropertyGatherer::takeExif(ByteSource const& block)
{
    if (++blocks_ > PropertyLimits::blocks)
        return;
    auto const reader = TiffReader::open(block);
    auto const first = firstDirectory(reader);
    if (!first)
        return;
    takeCamera(*reader, *first);
    auto const at = reader->number(*first, tag::exifDirectory);
    if (auto const exif = at ? reader->directory(*at) : std::nullopt) {
        takeShot(*reader, *exif);
        auto const* field = exif->find(tag::makerNote);
        auto const note = field != nullptr && !properties_.lensModel
            ? openMakerNote(block, *reader, *field)
            : std::nullopt;
        if (note)
            takeMakerNote(*note);
    }
    // Cameras of the first years kept everything in one directory.
    takeShot(*reader, *first);
    if (auto const* packet = first->find(tag::packet); packet != nullptr && packet->count > 4)
        takePacket(block, { packet->valueOffset, packet->count });
}

void PropertyGatherer::takeExif(ByteSource const& bytes, ByteRange range)
{
    takeExif(SliceBytes(bytes, range.offset, range.length));
}

void PropertyGatherer::takeCameraBlock(ByteSource const& bytes, ByteRange range)
{
    SliceBytes const block(bytes, range.offset, range.length);
    auto const reader = TiffReader::open(block);
    if (auto const directory = firstDirectory(reader))
        takeCamera(*reader, *directory);
}

void PropertyGatherer::takeShotBlock(ByteSource const& bytes, ByteRange range)
{
    SliceBytes const block(bytes, range.offset, range.length);
    auto const reader = TiffReader::open(block);
    if (auto const directory = firstDirectory(reader))
        takeShot(*reader, *directory);
}

void PropertyGatherer::takeMakerNoteBlock(ByteSource const& bytes, ByteRange range)
{
    SliceBytes const block(bytes, range.offset, range.length);
    auto const reader = TiffReader::open(block);
    if (auto directory = firstDirectory(reader))
        takeMakerNote({ MakerNoteDirectory::Style::other, *reader, std::move(*directory) });
}

void PropertyGatherer::takePacket(ByteSource const& bytes, ByteRange range)
{
    if (properties_.lensModel || packetLens_ || ++packets_ > PropertyLimits::blocks)
        return;
    auto const packet = bytesAt(bytes, range.offset,
        static_cast<std::size_t>(std::min<std::uint64_t>(range.length, PropertyLimits::packet)));
    std::string_view const text(reinterpret_cast<char const*>(packet.data()), packet.size());
    if (auto lens = xmpLens(text))
        packetLens_ = shownText(std::move(*lens));
}

void PropertyGatherer::takeMake(std::string raw)
{
    setText(properties_.make, std::move(raw));
}

void PropertyGatherer::takeModel(std::string raw)
{
    setText(properties_.model, std::move(raw));
}

bool PropertyGatherer::lacksShot() const
{
    return !properties_.dateTimeOriginal && !properties_.exposureTime && !properties_.fNumber
        && properties_.isoSpeedRatings.empty();
}

PhotoProperties PropertyGatherer::finish() &&
{
    if (!properties_.lensModel)
        properties_.auxLensModel = packetLens_ ? std::move(packetLens_) : std::move(makerLens_);
    return std::move(properties_);
}

void PropertyGatherer::takeCamera(TiffReader const& reader, TiffDirectory const& directory)
{
    setText(properties_.make, reader, directory, tag::make);
    setText(properties_.model, reader, directory, tag::model);
}

void PropertyGatherer::takeShot(TiffReader const& reader, TiffDirectory const& directory)
{
    setText(properties_.dateTimeOriginal, reader, directory, tag::dateTimeOriginal);
    setText(properties_.lensModel, reader, directory, tag::lensModel);
    setNumber(properties_.focalLength, reader, directory, tag::focalLength);
    setNumber(properties_.fNumber, reader, directory, tag::fNumber);
    setNumber(properties_.exposureTime, reader, directory, tag::exposureTime);
    takeIsoSpeed(reader, directory);
}

void PropertyGatherer::takeMakerNote(MakerNoteDirectory const& note)
{
    if (!makerLens_)
        makerLens_ = makerNoteLens(note, properties_.make.value_or(std::string()));
}

void PropertyGatherer::takeIsoSpeed(TiffReader const& reader, TiffDirectory const& directory)
{
    auto const* field = directory.find(tag::isoSpeedRatings);
    if (field == nullptr || !properties_.isoSpeedRatings.empty()
        || (field->type != type::byte && field->type != type::number16
            && field->type != type::number32))
        return;
    auto const count = std::min<std::uint32_t>(field->count, PropertyLimits::isoValues);
    for (std::uint32_t i = 0; i < count; ++i) {
        auto const value = reader.number(*field, i);
        if (!value)
            return;
        properties_.isoSpeedRatings.push_back(*value);
    }
}

} // namespace pixelhain
