#include "codecs/TiffReader.h"
#include "codecs/ByteView.h"
#include "codecs/DecodeLimits.h"
#include <algorithm>
#include <array>

namespace pixelhain {

namespace {

constexpr std::size_t fieldBytes = 12;
constexpr std::uint16_t ascii = 2;
constexpr std::uint16_t utf8 = 129; // of EXIF 3

std::size_t unitBytes(std::uint16_t type)
{
    constexpr std::array<std::uint8_t, 14> sizes { 0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4 };
    if (type == utf8)
        return 1;
    return type < sizes.size() ? sizes[type] : 0;
}

} // namespace

TiffField const* TiffDirectory::find(std::uint16_t tag) const
{
    auto const found = std::ranges::find(fields, tag, &TiffField::tag);
    return found == fields.end() ? nullptr : &*found;
}

std::optional<TiffReader> TiffReader::open(ByteSource const& bytes, std::uint64_t base)
{
    std::array<std::uint8_t, 8> header {};
    if (bytes.readAt(base, header) != header.size())
        return {};
    auto const isBigEndian = header[0] == 'M';
    if (header[0] != header[1] || (header[0] != 'M' && header[0] != 'I'))
        return {};
    TiffReader reader(bytes, base, isBigEndian);
    reader.first_ = reader.number32(header.data() + 4);
    return reader;
}

bool TiffReader::read(std::uint64_t offset, std::span<std::uint8_t> into) const
{
    return bytes_->readAt(base_ + offset, into) == into.size();
}

std::uint16_t TiffReader::number16(std::uint8_t const* at) const
{
    return isBigEndian_ ? bigEndian16(at) : littleEndian16(at);
}

std::uint32_t TiffReader::number32(std::uint8_t const* at) const
{
    return isBigEndian_ ? bigEndian32(at) : littleEndian32(at);
}

std::optional<TiffDirectory> TiffReader::directory(std::uint32_t offset) const
{
    std::array<std::uint8_t, 2> head {};
    if (offset == 0 || !read(offset, head))
        return {};
    auto const count = std::min<std::size_t>(number16(head.data()), DecodeLimits::directoryEntries);
    auto const block = bytesAt(*bytes_, base_ + offset + head.size(), count * fieldBytes + 4);
    TiffDirectory directory;
    directory.fields.reserve(block.size() / fieldBytes);
    for (std::size_t i = 0; i < count && (i + 1) * fieldBytes <= block.size(); ++i) {
        auto const* at = block.data() + i * fieldBytes;
        TiffField field { number16(at), number16(at + 2), number32(at + 4), number32(at + 8) };
        if (unitBytes(field.type) * std::uint64_t { field.count } <= 4)
            field.valueOffset
                = static_cast<std::uint32_t>(offset + head.size() + i * fieldBytes + 8);
        directory.fields.push_back(field);
    }
    if (block.size() == count * fieldBytes + 4)
        directory.next = number32(block.data() + count * fieldBytes);
    return directory;
}

std::optional<std::uint32_t> TiffReader::number(TiffField const& field, std::uint32_t index) const
{
    auto const unit = unitBytes(field.type);
    std::array<std::uint8_t, 4> value {};
    auto const isWhole = field.type == 1 || field.type == 3 || field.type == 4 || field.type == 7
        || field.type == 13;
    auto const offset = field.valueOffset + std::uint64_t { index } * unit;
    if (!isWhole || index >= field.count || !read(offset, std::span(value).first(unit)))
        return {};
    if (unit == 1)
        return value[0];
    return unit == 2 ? number16(value.data()) : number32(value.data());
}

std::optional<std::uint32_t> TiffReader::number(
    TiffDirectory const& directory, std::uint16_t tag) const
{
    auto const* field = directory.find(tag);
    return field != nullptr ? number(*field) : std::nullopt;
}

std::optional<double> TiffReader::rational(TiffField const& field, std::uint32_t index) const
{
    std::array<std::uint8_t, 8> value {};
    auto const isSigned = field.type == 10;
    auto const offset = field.valueOffset + std::uint64_t { index } * value.size();
    if ((field.type != 5 && !isSigned) || index >= field.count || !read(offset, value))
        return {};
    auto const above = number32(value.data());
    auto const below = number32(value.data() + 4);
    if (below == 0)
        return {};
    if (isSigned)
        return double(static_cast<std::int32_t>(above)) / static_cast<std::int32_t>(below);
    return double(above) / below;
}

std::string TiffReader::text(TiffField const& field, std::size_t most) const
{
    if (field.type != ascii && field.type != utf8)
        return {};
    auto const raw = bytes(field, most);
    return { raw.begin(), std::ranges::find(raw, std::uint8_t { 0 }) };
}

std::vector<std::uint8_t> TiffReader::bytes(TiffField const& field, std::size_t most) const
{
    auto const length = unitBytes(field.type) * std::uint64_t { field.count };
    return bytesAt(*bytes_, base_ + field.valueOffset,
        static_cast<std::size_t>(std::min<std::uint64_t>(length, most)));
}

} // namespace pixelhain
