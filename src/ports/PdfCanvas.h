#pragma once
#include "ports/PdfPage.h"
#include "ports/WriteProblem.h"
#include <optional>
#include <string_view>

namespace pixelhain {

/// A PDF that is being written, page by page; what is behind a page's end is no longer in memory.
/// Text is UTF-8 in one line, whatever it holds. Not thread-safe, but bound to no thread.
class PdfCanvas {
public:
    virtual ~PdfCanvas() = default;

    [[nodiscard]] virtual double textWidth(std::string_view text, PdfTextStyle const& style) = 0;
    /// The line's box has its lower left corner at `at`; its end is cut off ("…") if it is wider
    /// than `width`.
    virtual void drawText(
        std::string_view text, PdfTextStyle const& style, PagePoint at, double width)
        = 0;
    /// One line at the top of `box`, centred; its middle is cut out ("…") if it is too wide.
    virtual void drawLabel(std::string_view text, PdfTextStyle const& style, PageRect const& box)
        = 0;
    virtual void fill(PageRect const& rect, WhiteLevel white) = 0;
    virtual void drawLine(PagePoint from, PagePoint to, double width, WhiteLevel white) = 0;
    /// Stretched to fill `rect`.
    virtual void drawPicture(PdfPicture const& picture, PageRect const& rect) = 0;

    /// Every page begins where the one before ends. False: there is no use in going on.
    [[nodiscard]] virtual bool endPage() = 0;

    /// Completes the file and puts it in its place, as FileReplacement does.
    [[nodiscard]] virtual std::optional<WriteProblem> finish() = 0;
};

} // namespace pixelhain
