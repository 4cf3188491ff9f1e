#include "decoder/PropertiesRecord.h"
#include "base/Text.h"
#include "codecs/PropertyLimits.h"
#include "decoder/Protocol.h"
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace pixelhain {

namespace {

enum class Field : std::uint16_t {
    pixelSize = 1,
    dateTimeOriginal,
    make,
    model,
    lensModel,
    auxLensModel,
    focalLength,
    fNumber,
    exposureTime,
    isoSpeedRatings,
};

struct FieldHead {
    Field field = Field::pixelSize;
    std::uint16_t length = 0;
};
static_assert(sizeof(FieldHead) == 4 && PropertyLimits::shownText <= UINT16_MAX);
// All of the texts and a field for each of the others.
static_assert(PropertyLimits::all >= 5 * (PropertyLimits::shownText + sizeof(FieldHead)) + 256);

bool isSize(PixelSize size)
{
    return size.width > 0 && size.height > 0 && size.longestSide() <= largestStatedSide;
}

bool isText(std::string_view text)
{
    return !text.empty() && text.size() <= PropertyLimits::shownText && displayText(text) == text;
}

class Packer {
public:
    void add(Field field, std::span<std::byte const> bytes)
    {
        FieldHead const head { field, static_cast<std::uint16_t>(bytes.size()) };
        auto const headBytes = std::as_bytes(std::span(&head, 1));
        record_.insert(record_.end(), headBytes.begin(), headBytes.end());
        record_.insert(record_.end(), bytes.begin(), bytes.end());
    }
    void add(Field field, std::optional<PixelSize> const& size)
    {
        if (size && isSize(*size))
            add(field, std::as_bytes(std::span(&*size, 1)));
    }
    void add(Field field, std::optional<std::string> const& text)
    {
        if (text && isText(*text))
            add(field, std::as_bytes(std::span(*text)));
    }
    void add(Field field, std::optional<double> const& number)
    {
        if (number && std::isfinite(*number))
            add(field, std::as_bytes(std::span(&*number, 1)));
    }
    [[nodiscard]] std::vector<std::byte> finish() { return std::move(record_); }

private:
    std::vector<std::byte> record_;
};

template <typename Value> bool copyInto(Value& value, std::span<std::byte const> bytes)
{
    if (bytes.size() != sizeof value)
        return false;
    std::memcpy(&value, bytes.data(), sizeof value);
    return true;
}

bool take(std::optional<PixelSize>& into, std::span<std::byte const> bytes)
{
    return copyInto(into.emplace(), bytes) && isSize(*into);
}

bool take(std::optional<std::string>& into, std::span<std::byte const> bytes)
{
    into.emplace(reinterpret_cast<char const*>(bytes.data()), bytes.size());
    return isText(*into);
}

bool take(std::optional<double>& into, std::span<std::byte const> bytes)
{
    return copyInto(into.emplace(), bytes) && std::isfinite(*into);
}

bool take(std::vector<std::uint32_t>& into, std::span<std::byte const> bytes)
{
    auto const count = bytes.size() / sizeof into.front();
    if (count == 0 || count > PropertyLimits::isoValues || bytes.size() % sizeof into.front() != 0)
        return false;
    into.resize(count);
    std::memcpy(into.data(), bytes.data(), bytes.size());
    return true;
}

bool takeField(PhotoProperties& properties, Field field, std::span<std::byte const> bytes)
{
    switch (field) {
    case Field::pixelSize:
        return take(properties.pixelSize, bytes);
    case Field::dateTimeOriginal:
        return take(properties.dateTimeOriginal, bytes);
    case Field::make:
        return take(properties.make, bytes);
    case Field::model:
        return take(properties.model, bytes);
    case Field::lensModel:
        return take(properties.lensModel, bytes);
    case Field::auxLensModel:
        return take(properties.auxLensModel, bytes);
    case Field::focalLength:
        return take(properties.focalLength, bytes);
    case Field::fNumber:
        return take(properties.fNumber, bytes);
    case Field::exposureTime:
        return take(properties.exposureTime, bytes);
    case Field::isoSpeedRatings:
        return take(properties.isoSpeedRatings, bytes);
    }
    return false;
}

} // namespace

std::vector<std::byte> packProperties(PhotoProperties const& properties)
{
    Packer packer;
    packer.add(Field::pixelSize, properties.pixelSize);
    packer.add(Field::dateTimeOriginal, properties.dateTimeOriginal);
    packer.add(Field::make, properties.make);
    packer.add(Field::model, properties.model);
    packer.add(Field::lensModel, properties.lensModel);
    packer.add(Field::auxLensModel, properties.auxLensModel);
    packer.add(Field::focalLength, properties.focalLength);
    packer.add(Field::fNumber, properties.fNumber);
    packer.add(Field::exposureTime, properties.exposureTime);
    std::span const values(properties.isoSpeedRatings);
    if (!values.empty())
        packer.add(Field::isoSpeedRatings,
            std::as_bytes(values.first(std::min(values.size(), PropertyLimits::isoValues))));
    return packer.finish();
}

std::optional<PhotoProperties> unpackProperties(std::span<std::byte const> record)
{
    if (record.size() > PropertyLimits::all)
        return {};
    PhotoProperties properties;
    std::optional<Field> last;
    while (!record.empty()) {
        FieldHead head;
        if (record.size() < sizeof head || !copyInto(head, record.first(sizeof head)))
            return {};
        record = record.subspan(sizeof head);
        if (head.length > record.size() || (last && head.field <= *last)
            || !takeField(properties, head.field, record.first(head.length)))
            return {};
        record = record.subspan(head.length);
        last = head.field;
    }
    return properties;
}

} // namespace pixelhain
