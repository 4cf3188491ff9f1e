#pragma once
#include "base/Geometry.h"
#include <cstddef>
#include <optional>

namespace pixelhain {

/// Columns of cells of `thumbSize` points that fit into `width` points, at least 1. The program
/// stops if the two give no finite number: the caller has lost its own size.
[[nodiscard]] int columnCount(double width, double thumbSize);

/// The edge in device pixels that a thumbnail of `thumbSize` points is asked for: rounded up to
/// multiples of 128, so that neighbouring sizes share one picture; at least 128.
[[nodiscard]] int thumbnailPixelSize(double thumbSize, double displayScale);

/// Indices from `first` up to, not including, `last`.
struct IndexRange {
    std::size_t first = 0;
    std::size_t last = 0;

    bool empty() const { return first >= last; }
    bool contains(std::size_t index) const { return index >= first && index < last; }
    std::size_t count() const { return empty() ? 0 : last - first; }
    bool operator==(IndexRange const&) const = default;
};

/// Where the gallery's cells lie, in points of the scrolled content, y downwards from its top. A
/// plain value; positions stay exact for far more photos than fit on a drive.
class GridLayout {
public:
    static constexpr double spacing = 10; ///< between columns and between rows
    static constexpr double padding = 14; ///< around the grid
    static constexpr double captionGap = 4; ///< above each caption line

    struct Measures {
        double width = 0; ///< what the grid is offered, without a scroll bar
        double thumbSize = 0; ///< edge of the square picture area
        double nameLineHeight = 0; ///< 0: no such line
        double resolutionLineHeight = 0; ///< 0: no such line
        std::size_t count = 0;
    };

    explicit GridLayout(Measures const& measures);

    Measures const& measures() const { return measures_; }
    int columns() const { return columns_; }
    std::size_t rows() const;
    /// Whole rows that a viewport of `height` has room for, at least 1.
    std::size_t rowsPerPage(double height) const;
    /// From the top of a row to that of the next.
    double rowStep() const { return cellHeight() + spacing; }
    double contentHeight() const;

    /// A cell with its captions, and its parts. The line of a caption that is off is empty.
    Rect cell(std::size_t index) const;
    Rect thumbnailArea(std::size_t index) const;
    Rect nameLine(std::size_t index) const;
    Rect resolutionLine(std::size_t index) const;

    /// The cell under a point; nothing between cells.
    std::optional<std::size_t> indexAt(Point point) const;

    /// The cells that a viewport of `height` at scroll position `top` shows at least in part, and
    /// those of `rowsAhead` rows above and below it.
    IndexRange visible(double top, double height, std::size_t rowsAhead) const;

    /// The scroll position nearest to `top` at which the whole cell is in view; one that is higher
    /// than the viewport shows its upper part.
    double scrollToShow(std::size_t index, double top, double height) const;

    /// The scroll position that brings the cell's middle to the viewport's, as far as there is
    /// something to scroll.
    double scrollToCentre(std::size_t index, double height) const;

    /// `top` brought to where the content can be scrolled to.
    double clampedScroll(double top, double height) const;

private:
    double cellHeight() const;
    std::size_t rowAt(double y) const;

    Measures measures_;
    int columns_ = 1;
    double left_ = 0;
};

} // namespace pixelhain
