#pragma once
#include "base/Bitmap.h"
#include "base/FileUrl.h"
#include "ports/FileReplacement.h"
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace pixelhain {

/// Lengths and places on a page are points (1/72 inch), counted from its bottom left corner.
struct PageSize {
    double width = 0;
    double height = 0;
    bool operator==(PageSize const&) const = default;
};
struct PagePoint {
    double x = 0;
    double y = 0;
    bool operator==(PagePoint const&) const = default;
};
struct PageRect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
    bool operator==(PageRect const&) const = default;
};

/// A tone between black (0) and white (1).
using WhiteLevel = double;

struct PdfTextStyle {
    enum class Weight : std::uint8_t { regular, semibold };
    double size = 0; ///< points
    Weight weight = Weight::regular;
    WhiteLevel white = 0;
    bool operator==(PdfTextStyle const&) const = default;
};

/// A picture as it goes into a PDF: the bytes of a JPEG without transparency. Empty: none.
struct PdfPicture {
    PixelSize size;
    std::shared_ptr<std::vector<std::uint8_t> const> jpeg;
    explicit operator bool() const { return jpeg != nullptr; }
};

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

/// Writes PDF files. Thread-safe.
class PdfWriter {
public:
    struct Document {
        FileUrl target;
        std::string title;
        std::string creator;
        PageSize page;
        std::optional<ReplacedFile> agreed {}; ///< what may be replaced; absent: whatever is there
    };
    virtual ~PdfWriter() = default;
    [[nodiscard]] virtual std::variant<std::unique_ptr<PdfCanvas>, WriteProblem> begin(
        Document const& document)
        = 0;

    /// `bitmap` for a page; what is transparent in it shows `background`. Empty without memory.
    [[nodiscard]] virtual PdfPicture pictureOf(Bitmap const& bitmap, WhiteLevel background) = 0;
};

} // namespace pixelhain
