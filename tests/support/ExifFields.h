#pragma once
#include "support/ByteWriter.h"
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace pixelhain {

/// A field of an EXIF block with its values, whatever its tag.
struct ExifField {
    unsigned tag = 0;
    unsigned type = 2;
    std::vector<std::size_t> values {}; ///< of a fraction first what is above the line
    std::size_t count = 0; ///< what the field states; 0: as many as there are
    std::optional<std::size_t> place {}; ///< where it says that they lie, if not where they do

    static ExifField ascii(unsigned tag, std::string const& text)
    {
        ExifField field { tag };
        for (auto const letter : text + '\0')
            field.values.push_back(static_cast<unsigned char>(letter));
        return field;
    }
    static ExifField fraction(unsigned tag, std::vector<std::size_t> values)
    {
        return { tag, 5, std::move(values) };
    }
    static ExifField numbers(unsigned tag, std::vector<std::size_t> values)
    {
        return { tag, 3, std::move(values) };
    }

    [[nodiscard]] FileBytes data(bool isBigEndian) const
    {
        ByteWriter out(isBigEndian);
        for (auto const value : values) {
            if (type == 3 || type == 8)
                out.u16(static_cast<unsigned>(value));
            else if (type == 1 || type == 2 || type == 7 || type == 129)
                out.u8(static_cast<unsigned>(value));
            else
                out.u32(value);
        }
        return out.bytes;
    }
    [[nodiscard]] std::size_t stated() const
    {
        auto const isPair = type == 5 || type == 10 || type == 12;
        return count > 0 ? count : values.size() / (isPair ? 2 : 1);
    }
};

/// The bytes of a TIFF structure with these fields in its first directory, and those in its EXIF
/// directory.
inline FileBytes exifOf(
    std::vector<ExifField> first, std::vector<ExifField> const& exif, bool isBigEndian = false)
{
    ByteWriter out(isBigEndian);
    out.text(isBigEndian ? "MM" : "II");
    out.u16(42);
    out.u32(8);
    auto const bytesOf = [](std::size_t fields) { return 2 + 12 * fields + 4; };
    if (!exif.empty())
        first.push_back({ 0x8769, 4, { 8 + bytesOf(first.size() + 1) } });
    auto free = 8 + bytesOf(first.size()) + (exif.empty() ? 0 : bytesOf(exif.size()));
    FileBytes values;
    for (auto const* const directory : { &std::as_const(first), &exif }) {
        if (directory->empty())
            continue;
        out.u16(static_cast<unsigned>(directory->size()));
        for (auto const& field : *directory) {
            auto data = field.data(isBigEndian);
            out.u16(field.tag);
            out.u16(field.type);
            out.u32(field.stated());
            if (field.place) {
                out.u32(*field.place);
            } else if (data.size() > 4) {
                out.u32(free + values.size());
                values.insert(values.end(), data.begin(), data.end());
                values.resize(values.size() + values.size() % 2);
            } else {
                data.resize(4);
                out.raw(data);
            }
        }
        out.u32(0);
    }
    out.raw(values);
    return out.bytes;
}

} // namespace pixelhain
