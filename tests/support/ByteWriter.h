#pragma once
#include "support/ImageWriters.h"
#include <string_view>

namespace pixelhain {

/// Builds the bytes of a file.
class ByteWriter {
public:
    explicit ByteWriter(bool isBigEndian = false)
        : isBigEndian_(isBigEndian)
    {
    }
    std::size_t size() const { return bytes.size(); }
    void u8(unsigned value) { bytes.push_back(static_cast<std::uint8_t>(value)); }
    void u16(unsigned value) { number(value, 2); }
    void u24(unsigned value) { number(value, 3); }
    void u32(std::size_t value) { number(value, 4); }
    void text(std::string_view text) { bytes.insert(bytes.end(), text.begin(), text.end()); }
    void raw(FileBytes const& more) { bytes.insert(bytes.end(), more.begin(), more.end()); }
    void pad(std::size_t multiple)
    {
        while (bytes.size() % multiple != 0)
            u8(0);
    }
    void put32(std::size_t at, std::size_t value)
    {
        ByteWriter patch(isBigEndian_);
        patch.u32(value);
        std::copy(patch.bytes.begin(), patch.bytes.end(),
            bytes.begin() + static_cast<std::ptrdiff_t>(at));
    }

    FileBytes bytes;

private:
    void number(std::size_t value, int count)
    {
        for (int i = 0; i < count; ++i) {
            auto const shift = 8 * (isBigEndian_ ? count - 1 - i : i);
            u8(static_cast<unsigned>(value >> shift) & 0xFF);
        }
    }

    bool isBigEndian_;
};

/// The 216 colours of the writers' palettes.
inline unsigned paletteIndex(std::uint8_t const* rgba)
{
    auto const level = [](unsigned value) { return (value * 5 + 127) / 255; };
    return level(rgba[0]) * 36 + level(rgba[1]) * 6 + level(rgba[2]);
}

inline unsigned paletteColor(unsigned index, int channel)
{
    unsigned const levels[] { index / 36 % 6, index / 6 % 6, index % 6 };
    return index < 216 ? levels[channel] * 51 : 0;
}

inline unsigned luma(std::uint8_t const* rgba)
{
    return (rgba[0] * 299U + rgba[1] * 587U + rgba[2] * 114U + 500) / 1000;
}

} // namespace pixelhain
