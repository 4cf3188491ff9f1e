#pragma once
#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace pixelhain {

/// A Huffman code as a JPEG states it.
struct HuffmanCode {
    std::array<std::uint8_t, 17> counts {}; ///< how many codes have 1 to 16 bits
    std::array<std::uint8_t, 256> symbols {}; ///< in the order of their codes
};

/// Finds the symbol whose code stands at the front of coded bits.
class HuffmanLookup {
public:
    /// Codes of up to so many bits are found by one look.
    static constexpr int shortBits = 9;

    struct Found {
        int bits = 0; ///< of the code; 0: no code begins like this
        std::uint8_t symbol = 0;
    };

    /// Nothing for a code that has more words than its lengths allow. Here, as in a JPEG, a word
    /// of nothing but ones is none.
    [[nodiscard]] static std::optional<HuffmanLookup> of(HuffmanCode const& code);

    /// `bits`: what follows, the first at the top; at least 16 of them count.
    [[nodiscard]] Found find(std::uint64_t bits) const
    {
        auto const entry = short_[bits >> (64 - shortBits)];
        return entry != 0 ? Found { entry >> 8, static_cast<std::uint8_t>(entry) } : findLong(bits);
    }

private:
    [[nodiscard]] Found findLong(std::uint64_t bits) const;
    void fillShort();

    std::array<std::uint16_t, std::size_t { 1 } << shortBits> short_ {}; ///< bits, then symbol
    /// For each length: the first 16 bits, as a number, that are beyond its codes and all shorter.
    std::array<std::uint32_t, 17> beyond_ {};
    std::array<std::uint32_t, 17> before_ {}; ///< how many codes are shorter
    std::array<std::uint8_t, 256> symbols_ {};
};

/// How the coefficients of a block are passed over when nobody wants to know them: several codes
/// with what follows them in one look. Both tables that a picture needs fit into the nearest cache.
class SkipTable {
public:
    static constexpr int lookBits = 12;
    /// An entry is in its lower byte how many coefficients to go on, 1 to 62, or `end` more if the
    /// block ends there, or `unknown` if one code must be taken by itself; in its upper byte how
    /// many bits.
    static constexpr unsigned bitsShift = 8;
    static constexpr unsigned end = 128;
    static constexpr unsigned unknown = 192;
    /// The most bits that an entry passes over: a code that begins with the last bit that is looked
    /// at does not count, so what follows the last code adds to them.
    static constexpr int mostBits = lookBits + 15;

    explicit SkipTable(HuffmanLookup const& code);

    [[nodiscard]] std::uint16_t const* entries() const { return entries_.data(); }

private:
    std::vector<std::uint16_t> entries_;
};

/// The number that follows a code, with that code, in one look.
class NumberTable {
public:
    static constexpr int lookBits = 11;
    /// An entry is in its lower byte how many bits both take, and above it the number, with its
    /// sign; 0 if they take more than one look.
    static constexpr int numberShift = 8;

    explicit NumberTable(HuffmanLookup const& code);

    [[nodiscard]] std::int32_t const* entries() const { return entries_.data(); }

private:
    std::vector<std::int32_t> entries_;
};

} // namespace pixelhain
