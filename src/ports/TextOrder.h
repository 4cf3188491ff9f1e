#pragma once
#include <compare>
#include <string>
#include <string_view>

namespace pixelhain {

/// How people order and find names: the user's language, digit runs by their value, case ignored
/// when ordering (IMG_2 before img_10). Names are bytes; ill-formed UTF-8 counts as U+FFFD.
/// Thread-safe.
class TextOrder {
public:
    virtual ~TextOrder() = default;

    /// The natural order of two names; `equivalent` for names that differ only in ways that people
    /// do not order by.
    [[nodiscard]] virtual std::weak_ordering compare(
        std::string_view a, std::string_view b) const = 0;

    /// Appends a key of `name` to `keys`, without a terminator: comparing two keys byte by byte
    /// (the shorter of equal ones first) gives the order of `compare`.
    virtual void appendSortKey(std::string_view name, std::string& keys) const = 0;

    /// `text` so that one contains another, letter case ignored, when its folded bytes do. Accents
    /// count; composed and decomposed letters are the same.
    [[nodiscard]] virtual std::string folded(std::string_view text) const = 0;
};

} // namespace pixelhain
