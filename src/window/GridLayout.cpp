#include "window/GridLayout.h"
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace pixelhain {

namespace {

// Converting a number beyond the range of int is undefined.
int truncated(double value)
{
    constexpr double most = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(value, -most, most));
}

double captionHeight(double lineHeight)
{
    return lineHeight > 0 ? GridLayout::captionGap + lineHeight : 0;
}

} // namespace

int columnCount(double width, double thumbSize)
{
    auto const fitting = (GridLayout::spacing + (width - 2 * GridLayout::padding))
        / (thumbSize + GridLayout::spacing);
    if (!std::isfinite(fitting))
        std::abort();
    return std::max(1, truncated(fitting));
}

int thumbnailPixelSize(double thumbSize, double displayScale)
{
    constexpr double step = 128;
    constexpr double mostSteps = 1 << 20;
    auto const steps = std::ceil(thumbSize * displayScale * 0.0078125);
    return static_cast<int>(step * (steps >= 1 ? std::min(steps, mostSteps) : 1));
}

GridLayout::GridLayout(Measures const& measures)
    : measures_(measures)
    , columns_(columnCount(measures.width, measures.thumbSize))
{
    auto const gridWidth = columns_ * measures_.thumbSize + (columns_ - 1) * spacing;
    left_ = (measures_.width - gridWidth) / 2;
}

std::size_t GridLayout::rows() const
{
    auto const columns = static_cast<std::size_t>(columns_);
    return measures_.count / columns + (measures_.count % columns == 0 ? 0 : 1);
}

std::size_t GridLayout::rowsPerPage(double height) const
{
    auto const fitting = std::floor((height + spacing) / rowStep());
    return fitting > 1 ? static_cast<std::size_t>(fitting) : 1;
}

double GridLayout::cellHeight() const
{
    return measures_.thumbSize + captionHeight(measures_.nameLineHeight)
        + captionHeight(measures_.resolutionLineHeight);
}

double GridLayout::contentHeight() const
{
    auto const rowCount = static_cast<double>(rows());
    return 2 * padding + rowCount * cellHeight() + std::max(0.0, rowCount - 1) * spacing;
}

Rect GridLayout::cell(std::size_t index) const
{
    auto const columns = static_cast<std::size_t>(columns_);
    auto const column = static_cast<double>(index % columns);
    auto const row = static_cast<double>(index / columns);
    return { left_ + column * (measures_.thumbSize + spacing), padding + row * rowStep(),
        measures_.thumbSize, cellHeight() };
}

Rect GridLayout::thumbnailArea(std::size_t index) const
{
    auto area = cell(index);
    area.height = measures_.thumbSize;
    return area;
}

Rect GridLayout::nameLine(std::size_t index) const
{
    auto const area = thumbnailArea(index);
    auto const height = std::max(0.0, measures_.nameLineHeight);
    auto const bottom = area.bottom() + captionHeight(measures_.nameLineHeight);
    return { area.x, bottom - height, area.width, height };
}

Rect GridLayout::resolutionLine(std::size_t index) const
{
    auto const whole = cell(index);
    auto const height = std::max(0.0, measures_.resolutionLineHeight);
    return { whole.x, whole.bottom() - height, whole.width, height };
}

// The row whose cell or the gap below it holds `y`; may lie beyond the last row.
std::size_t GridLayout::rowAt(double y) const
{
    auto const row = std::floor((y - padding) / rowStep());
    if (!(row > 0))
        return 0;
    return row >= static_cast<double>(rows()) ? rows() : static_cast<std::size_t>(row);
}

std::optional<std::size_t> GridLayout::indexAt(Point point) const
{
    auto const column = std::floor((point.x - left_) / (measures_.thumbSize + spacing));
    if (!(column >= 0 && column < columns_) || !(point.y >= padding))
        return std::nullopt;
    auto const row = rowAt(point.y);
    if (row >= rows())
        return std::nullopt;
    auto const index = row * static_cast<std::size_t>(columns_) + static_cast<std::size_t>(column);
    if (index >= measures_.count || !cell(index).contains(point))
        return std::nullopt;
    return index;
}

IndexRange GridLayout::visible(double top, double height, std::size_t rowsAhead) const
{
    auto const end = rows();
    if (end == 0 || !(height > 0))
        return {};
    auto first = rowAt(top);
    if (first < end && top >= padding + static_cast<double>(first) * rowStep() + cellHeight())
        ++first; // only the gap below that row is in view
    auto last = rowAt(top + height);
    if (last < end && top + height > padding + static_cast<double>(last) * rowStep())
        ++last;
    first = first > rowsAhead ? std::min(first, end) - std::min(rowsAhead, first) : 0;
    last = rowsAhead < end - std::min(last, end) ? last + rowsAhead : end;
    auto const columns = static_cast<std::size_t>(columns_);
    auto const lastIndex = last == end ? measures_.count : last * columns;
    return { std::min(first * columns, lastIndex), lastIndex };
}

double GridLayout::scrollToShow(std::size_t index, double top, double height) const
{
    auto const whole = cell(index);
    if (whole.y < top || whole.height > height)
        return clampedScroll(whole.y, height);
    if (whole.bottom() > top + height)
        return clampedScroll(whole.bottom() - height, height);
    return clampedScroll(top, height);
}

double GridLayout::scrollToCentre(std::size_t index, double height) const
{
    auto const whole = cell(index);
    return clampedScroll(whole.y + (whole.height - height) / 2, height);
}

double GridLayout::clampedScroll(double top, double height) const
{
    return std::clamp(top, 0.0, std::max(0.0, contentHeight() - height));
}

} // namespace pixelhain
