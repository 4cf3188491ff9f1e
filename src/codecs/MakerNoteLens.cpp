#include "codecs/MakerNoteLens.h"
#include "base/Text.h"
#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>

namespace pixelhain {

namespace {

using Style = MakerNoteDirectory::Style;

namespace tag {
constexpr std::uint16_t canonLensModel = 0x0095;
constexpr std::uint16_t nikonLens = 0x0084;
constexpr std::uint16_t sonyLensSpecification = 0xB02A;
constexpr std::uint16_t olympusEquipment = 0x2010;
constexpr std::uint16_t olympusLensModel = 0x0203;
constexpr std::uint16_t panasonicLensType = 0x0051;
} // namespace tag

// A note that a program moved has texts that are none.
bool isName(std::string_view text)
{
    auto const isLetter = [](char letter) { return letter >= ' ' && letter <= '~'; };
    auto const tells = [](char letter) { return std::isalnum(static_cast<unsigned char>(letter)); };
    return std::ranges::all_of(text, isLetter) && std::ranges::any_of(text, tells);
}

std::optional<std::string> nameIn(
    TiffReader const& reader, TiffDirectory const& directory, std::uint16_t tag)
{
    constexpr std::size_t longest = 128;
    auto const* field = directory.find(tag);
    auto name = field != nullptr ? reader.text(*field, longest) : std::string();
    if (!isName(name))
        return {};
    name.erase(name.find_last_not_of(' ') + 1);
    return name;
}

/// What is written on a lens; 0: not known.
struct LensFigures {
    double shortest = 0; ///< millimetres
    double longest = 0;
    double widest = 0; ///< F-numbers, at the shortest and at the longest
    double widestAtLongest = 0;
};

// With a decimal where there is one.
std::string number(double value)
{
    std::array<char, 32> text {};
    auto const tenths = std::round(value * 10) / 10;
    auto const end = std::to_chars(text.data(), text.data() + text.size(), tenths);
    return { text.data(), end.ptr };
}

std::string span(double from, double to)
{
    return to > from ? number(from) + '-' + number(to) : number(from);
}

std::optional<std::string> textOf(LensFigures const& lens)
{
    constexpr double longestLens = 10'000;
    constexpr double smallestAperture = 100;
    if (!(lens.shortest >= 1 && lens.shortest <= longestLens && lens.longest <= longestLens))
        return {};
    auto text = span(lens.shortest, lens.longest) + "mm";
    if (lens.widest >= 0.5 && lens.widest <= smallestAperture
        && lens.widestAtLongest <= smallestAperture)
        text += " f/" + span(lens.widest, lens.widestAtLongest);
    return text;
}

std::optional<std::string> nikonLens(MakerNoteDirectory const& note)
{
    auto const* field = note.directory.find(tag::nikonLens);
    if (field == nullptr || field->count != 4)
        return {};
    auto const figure
        = [&](std::uint32_t index) { return note.reader.rational(*field, index).value_or(0); };
    return textOf({ figure(0), figure(1), figure(2), figure(3) });
}

// Decimal digits, two in a byte; below 0 if they are none.
double digits(std::uint8_t high, std::uint8_t low)
{
    double value = 0;
    for (int const digit : { high >> 4, high & 15, low >> 4, low & 15 }) {
        if (digit > 9)
            return -1;
        value = value * 10 + digit;
    }
    return value;
}

std::optional<std::string> sonyLens(MakerNoteDirectory const& note)
{
    constexpr std::size_t length = 8;
    auto const* field = note.directory.find(tag::sonyLensSpecification);
    if (field == nullptr || field->count != length)
        return {};
    auto const raw = note.reader.bytes(*field, length);
    if (raw.size() != length)
        return {};
    // Between two bytes that tell the mount and what the lens can do.
    LensFigures const lens { digits(raw[1], raw[2]), digits(raw[3], raw[4]), digits(0, raw[5]) / 10,
        digits(0, raw[6]) / 10 };
    if (std::min({ lens.longest, lens.widest, lens.widestAtLongest }) < 0)
        return {};
    return textOf(lens);
}

std::optional<std::string> olympusLens(MakerNoteDirectory const& note)
{
    auto const equipment = note.subDirectory(tag::olympusEquipment);
    if (!equipment)
        return {};
    return nameIn(note.reader, *equipment, tag::olympusLensModel);
}

} // namespace

std::optional<std::string> makerNoteLens(MakerNoteDirectory const& note, std::string_view make)
{
    auto const maker = asciiLowercased(make);
    if (note.style == Style::nikon || maker.starts_with("nikon"))
        return nikonLens(note);
    if (note.style == Style::olympus)
        return olympusLens(note);
    if (note.style != Style::other)
        return {};
    if (maker.starts_with("canon"))
        return nameIn(note.reader, note.directory, tag::canonLensModel);
    if (maker.starts_with("sony"))
        return sonyLens(note);
    if (maker.starts_with("panasonic") || maker.starts_with("leica"))
        return nameIn(note.reader, note.directory, tag::panasonicLensType);
    return {};
}

} // namespace pixelhain
