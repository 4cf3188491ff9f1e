#pragma once
#include "codecs/ByteView.h"
#include "codecs/ExifReader.h"
#include <cstdint>
#include <optional>
#include <vector>

namespace pixelhain {

/// The four characters that name a box, a brand or a kind of item, as one number.
[[nodiscard]] constexpr std::uint32_t fourCharacters(char const (&name)[5])
{
    std::uint32_t code = 0;
    for (int i = 0; i < 4; ++i)
        code = code << 8 | static_cast<std::uint8_t>(name[i]);
    return code;
}

/// One box of a file built of boxes (ISO base media).
struct IsoBox {
    std::uint32_t type = 0;
    ByteRange contents; ///< without the header
};

/// The boxes that follow each other in `range`, the last of them cut where the range ends. Ends at
/// the first that makes no sense.
[[nodiscard]] std::vector<IsoBox> boxesIn(ByteSource const& bytes, ByteRange range);

/// The first box in `range` that is called `type`.
[[nodiscard]] std::optional<IsoBox> findBox(
    ByteSource const& bytes, ByteRange range, std::uint32_t type);

/// `range` without its first `count` bytes.
[[nodiscard]] constexpr ByteRange rangeAfter(ByteRange range, std::uint64_t count)
{
    auto const skipped = count < range.length ? count : range.length;
    return { range.offset + skipped, range.length - skipped };
}

/// The brands a file states, the major one first; empty unless it begins with them.
[[nodiscard]] std::vector<std::uint32_t> brandsOf(ByteSpan start);

/// Takes big-endian numbers one after another. Behind the end every number is 0, and it has failed.
class NumberReader {
public:
    explicit NumberReader(ByteSpan bytes)
        : bytes_(bytes)
    {
    }

    /// The next number of `length` bytes, 0 to 8.
    std::uint64_t take(std::size_t length)
    {
        if (length > bytes_.size() - at_) {
            at_ = bytes_.size();
            hasFailed_ = true;
            return 0;
        }
        std::uint64_t number = 0;
        for (std::size_t i = 0; i < length; ++i)
            number = number << 8 | bytes_[at_++];
        return number;
    }
    std::uint32_t take32(std::size_t length = 4)
    {
        return static_cast<std::uint32_t>(take(length));
    }

    [[nodiscard]] bool hasFailed() const { return hasFailed_; }
    [[nodiscard]] std::size_t position() const { return at_; }
    [[nodiscard]] bool isAtEnd() const { return at_ == bytes_.size(); }

private:
    ByteSpan bytes_;
    std::size_t at_ = 0;
    bool hasFailed_ = false;
};

} // namespace pixelhain
