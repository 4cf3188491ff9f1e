#include "images/InfoLines.h"
#include "base/Text.h"
#include "ports/ImageDecoder.h"
#include "ports/TextFormats.h"
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

namespace pixelhain {

namespace {

constexpr std::string_view separator = " · ";

// With a dot in every country, unlike what printf writes.
std::string fixed(double value, int decimals)
{
    std::array<char, 400> text; // the largest number has 309 digits
    auto const end = std::to_chars(
        text.data(), text.data() + text.size(), value, std::chars_format::fixed, decimals);
    return { text.data(), end.ptr };
}

void append(std::string& line, std::string_view part)
{
    if (!line.empty())
        line += separator;
    line += part;
}

bool startsWithSpace(std::string_view text)
{
    constexpr std::string_view ascii = " \t\n\v\f\r";
    constexpr auto others = std::to_array<std::string_view>({ "\u0085", "\u00A0", "\u1680",
        "\u2000", "\u2001", "\u2002", "\u2003", "\u2004", "\u2005", "\u2006", "\u2007", "\u2008",
        "\u2009", "\u200A", "\u2028", "\u2029", "\u202F", "\u205F", "\u3000" });
    return !text.empty()
        && (ascii.find(text.front()) != std::string_view::npos
            || std::ranges::any_of(others, [&](auto space) { return text.starts_with(space); }));
}

// Bytes of the letter that `text` begins with.
std::size_t firstLetter(std::string_view text)
{
    std::size_t length = 1;
    while (length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80)
        ++length;
    return length;
}

std::string_view trimmed(std::string_view text)
{
    while (startsWithSpace(text))
        text.remove_prefix(firstLetter(text));
    for (;;) {
        auto last = text.size();
        while (last > 0 && (static_cast<unsigned char>(text[--last]) & 0xC0) == 0x80) { }
        if (!startsWithSpace(text.substr(last)))
            return text;
        text = text.substr(0, last);
    }
}

std::string resolution(PixelSize size)
{
    auto const megapixels = double(size.width) * size.height / 1'000'000;
    return std::to_string(size.width) + " × " + std::to_string(size.height) + " px ("
        + fixed(megapixels, 1) + " MP)";
}

std::string camera(PhotoProperties const& properties)
{
    auto const make = trimmed(properties.make ? *properties.make : std::string_view {});
    auto model = trimmed(properties.model ? *properties.model : std::string_view {});
    if (asciiLowercased(model).starts_with(asciiLowercased(make)))
        model = trimmed(model.substr(make.size()));
    std::string line(make);
    if (!make.empty() && !model.empty())
        line += ' ';
    return line += model;
}

std::string lens(PhotoProperties const& properties)
{
    return properties.lensModel ? *properties.lensModel
                                : properties.auxLensModel.value_or(std::string());
}

std::string exposureTime(double seconds)
{
    if (seconds >= 1)
        return fixed(seconds, 1) + " s";
    return "1/" + fixed(std::round(1 / seconds), 0) + " s";
}

std::string exposure(PhotoProperties const& properties)
{
    std::string line;
    if (properties.focalLength)
        append(line, fixed(*properties.focalLength, 0) + " mm");
    if (properties.fNumber)
        append(line, "f/" + fixed(*properties.fNumber, 1));
    if (properties.exposureTime && *properties.exposureTime > 0)
        append(line, exposureTime(*properties.exposureTime));
    if (!properties.isoSpeedRatings.empty())
        append(line, "ISO " + std::to_string(properties.isoSpeedRatings.front()));
    return line;
}

// Of a file whose date the file system does not know there is none to show.
std::string date(
    PhotoItem const& item, PhotoProperties const& properties, TextFormats const& formats)
{
    if (properties.dateTimeOriginal)
        return "Aufgenommen: " + *properties.dateTimeOriginal;
    return item.date != distantPast ? "Geändert: " + formats.dateAndTime(item.date) : std::string();
}

} // namespace

std::vector<std::string> infoLines(PhotoItem const& item,
    std::optional<PhotoProperties> const& properties, TextFormats const& formats)
{
    auto const known = properties.value_or(PhotoProperties {});
    std::string sizes = known.pixelSize ? resolution(*known.pixelSize) : std::string();
    if (!item.isKnownByName())
        append(sizes, formats.byteCount(item.size));
    std::vector<std::string> lines { displayText(item.name()), std::move(sizes),
        date(item, known, formats), camera(known), lens(known), exposure(known) };
    lines.erase(std::remove(lines.begin() + 1, lines.end(), std::string()), lines.end());
    return lines;
}

std::vector<std::string> infoLines(
    PhotoItem const& item, ImageDecoder& decoder, TextFormats const& formats)
{
    return infoLines(item, decoder.readProperties(item.url), formats);
}

} // namespace pixelhain
