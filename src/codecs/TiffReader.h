#pragma once
#include "ports/ByteSource.h"
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace pixelhain {

/// One field of a TIFF directory. Where it points is not checked before it is read.
struct TiffField {
    std::uint16_t tag = 0;
    std::uint16_t type = 0;
    std::uint32_t count = 0;
    std::uint32_t valueOffset = 0; ///< from the TIFF header; of the field itself if it holds them
    bool operator==(TiffField const&) const = default;
};

struct TiffDirectory {
    std::vector<TiffField> fields;
    std::uint32_t next = 0; ///< offset of the next directory; 0: there is none
    bool operator==(TiffDirectory const&) const = default;

    [[nodiscard]] TiffField const* find(std::uint16_t tag) const;
};

/// Reads the directories of a TIFF structure (an EXIF block, a TIFF file, a RAW, an MPF index)
/// field by field. Every access is checked against the end; nothing is followed by itself, so
/// directories that point at each other do no harm.
class TiffReader {
public:
    /// Nothing unless a TIFF header stands at `base`. `bytes` must outlive the reader.
    [[nodiscard]] static std::optional<TiffReader> open(
        ByteSource const& bytes, std::uint64_t base = 0);

    /// Directories without a header of their own, as maker notes have them: offsets count from
    /// `base`, and there is no first directory.
    TiffReader(ByteSource const& bytes, std::uint64_t base, bool isBigEndian)
        : bytes_(&bytes)
        , base_(base)
        , isBigEndian_(isBigEndian)
    {
    }

    [[nodiscard]] std::uint32_t firstDirectory() const { return first_; }
    [[nodiscard]] bool isBigEndian() const { return isBigEndian_; }
    /// Where the TIFF header stands: what offsets count from.
    [[nodiscard]] std::uint64_t base() const { return base_; }

    /// The fields that are whole; nothing if not even their number can be read.
    [[nodiscard]] std::optional<TiffDirectory> directory(std::uint32_t offset) const;

    /// The whole number at `index` of a BYTE, SHORT or LONG field.
    [[nodiscard]] std::optional<std::uint32_t> number(
        TiffField const& field, std::uint32_t index = 0) const;
    [[nodiscard]] std::optional<std::uint32_t> number(
        TiffDirectory const& directory, std::uint16_t tag) const;

    /// The quotient at `index` of a RATIONAL or SRATIONAL field; nothing for a denominator of 0.
    [[nodiscard]] std::optional<double> rational(
        TiffField const& field, std::uint32_t index = 0) const;

    /// An ASCII or UTF-8 field up to its first NUL, at most `most` bytes.
    [[nodiscard]] std::string text(TiffField const& field, std::size_t most = 1024) const;

    /// At most `most` bytes of any field.
    [[nodiscard]] std::vector<std::uint8_t> bytes(TiffField const& field, std::size_t most) const;

    [[nodiscard]] std::uint16_t number16(std::uint8_t const* at) const;
    [[nodiscard]] std::uint32_t number32(std::uint8_t const* at) const;

private:
    [[nodiscard]] bool read(std::uint64_t offset, std::span<std::uint8_t> into) const;

    ByteSource const* bytes_;
    std::uint64_t base_;
    std::uint32_t first_ = 0;
    bool isBigEndian_;
};

} // namespace pixelhain
