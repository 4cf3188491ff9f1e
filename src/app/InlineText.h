#pragma once
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace pixelhain {

/// A text without its marks, and where it is bold, italic or code. Offsets count bytes.
struct InlineText {
    struct Span {
        std::size_t begin = 0;
        std::size_t end = 0;
        bool isBold = false;
        bool isItalic = false;
        bool isCode = false;

        bool operator==(Span const&) const = default;
    };

    std::string text;
    std::vector<Span> spans; ///< in order, without overlap; what lies between them is plain

    bool operator==(InlineText const&) const = default;
};

/// Reads **bold**, *italic*, `code`, backslash escapes and character references by the inline rules
/// of CommonMark. Nothing else is special: white space stays as it is, and how a text begins makes
/// no list, heading or quotation of it. Links and HTML stay as they are written.
[[nodiscard]] InlineText inlineText(std::string_view marked);

} // namespace pixelhain
