#include "window/GridLayout.h"
#include <cmath>
#include <csignal>
#include <doctest/doctest.h>
#include <limits>
#include <sys/wait.h>
#include <unistd.h>

using namespace pixelhain;

namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();

// Four columns of 100 points in 458 points, cells with both captions 100 + (4 + 14) + (4 + 12)
// high.
GridLayout::Measures fourColumns(std::size_t count)
{
    GridLayout::Measures measures;
    measures.width = 18 + 4 * 110;
    measures.thumbSize = 100;
    measures.nameLineHeight = 14;
    measures.resolutionLineHeight = 12;
    measures.count = count;
    return measures;
}

constexpr double cellHeight = 134;
constexpr double rowStep = cellHeight + 10;

// Whether counting columns ends the program.
bool stops(double width, double thumbSize)
{
    auto const child = fork();
    if (child == 0) {
        std::signal(SIGABRT, SIG_DFL);
        _exit(columnCount(width, thumbSize) > 0 ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT;
}

} // namespace

TEST_CASE("a width smaller than one column holds one column")
{
    CHECK(columnCount(18 + 110 - 0.5, 100) == 1);
    CHECK(columnCount(0, 100) == 1);
    CHECK(columnCount(-500, 100) == 1);
}

TEST_CASE("columns fill the width exactly")
{
    CHECK(columnCount(18 + 4 * 110, 100) == 4);
    CHECK(columnCount(18 + 4 * 110 - 0.5, 100) == 3);
    CHECK(columnCount(18 + 4 * (170 + 10), 170) == 4);
    CHECK(columnCount(18 + 5 * 110 - 0.5, 100) == 4);
}

TEST_CASE("a width without bounds holds as many columns as can be counted")
{
    CHECK(columnCount(1e300, 100) == std::numeric_limits<int>::max());
}

TEST_CASE("a quotient that is not finite stops the program")
{
    CHECK(stops(infinite, 100));
    CHECK(stops(std::nan(""), 100));
    CHECK(stops(500, -10));
    CHECK_FALSE(stops(500, 100));
}

TEST_CASE("thumbnails are asked for in steps of 128 device pixels")
{
    CHECK(thumbnailPixelSize(160, 2) == 384);
    CHECK(thumbnailPixelSize(64, 1) == 128);
    CHECK(thumbnailPixelSize(80, 1) == 128);
    CHECK(thumbnailPixelSize(128, 1) == 128);
    CHECK(thumbnailPixelSize(128.5, 1) == 256);
    CHECK(thumbnailPixelSize(400, 2) == 896);
    CHECK(thumbnailPixelSize(170, 1.25) == 256);
    CHECK(thumbnailPixelSize(0, 1) == 128);
    CHECK(thumbnailPixelSize(-4, 1) == 128);
}

TEST_CASE("a thumbnail size without bounds asks for a size that can be counted")
{
    CHECK(thumbnailPixelSize(1e300, 2) > 0);
    CHECK(thumbnailPixelSize(std::nan(""), 2) == 128);
}

TEST_CASE("cells stand in rows from the top left")
{
    GridLayout const layout(fourColumns(10));
    CHECK(layout.columns() == 4);
    CHECK(layout.rows() == 3);
    CHECK(layout.cell(0) == Rect { 14, 14, 100, cellHeight });
    CHECK(layout.cell(3) == Rect { 14 + 3 * 110, 14, 100, cellHeight });
    CHECK(layout.cell(4) == Rect { 14, 14 + rowStep, 100, cellHeight });
    CHECK(layout.contentHeight() == 14 + 3 * cellHeight + 2 * 10 + 14);
}

TEST_CASE("left-over width is shared by both sides")
{
    auto measures = fourColumns(10);
    measures.width += 60;
    CHECK(GridLayout(measures).cell(0).x == 14 + 30);
}

TEST_CASE("the captions stand below the picture")
{
    GridLayout const layout(fourColumns(10));
    CHECK(layout.thumbnailArea(5) == Rect { 124, 14 + rowStep, 100, 100 });
    CHECK(layout.nameLine(5) == Rect { 124, 14 + rowStep + 104, 100, 14 });
    CHECK(layout.resolutionLine(5) == Rect { 124, 14 + rowStep + 122, 100, 12 });
}

TEST_CASE("captions that are off take no room")
{
    auto measures = fourColumns(10);
    measures.nameLineHeight = 0;
    CHECK(GridLayout(measures).cell(0).height == 116);
    CHECK(GridLayout(measures).resolutionLine(0).y == 14 + 104);
    CHECK(GridLayout(measures).nameLine(0).height == 0);
    measures.resolutionLineHeight = 0;
    CHECK(GridLayout(measures).cell(0).height == 100);
}

TEST_CASE("a grid without photos is its padding")
{
    GridLayout const layout(fourColumns(0));
    CHECK(layout.rows() == 0);
    CHECK(layout.contentHeight() == 28);
    CHECK(layout.visible(0, 500, 1).empty());
    CHECK_FALSE(layout.indexAt({ 20, 20 }).has_value());
    CHECK(layout.clampedScroll(100, 500) == 0);
}

TEST_CASE("the cell under a point is found, between cells there is none")
{
    GridLayout const layout(fourColumns(10));
    CHECK(layout.indexAt({ 14, 14 }) == 0);
    CHECK(layout.indexAt({ 113.9, 14 + cellHeight - 0.1 }) == 0);
    CHECK_FALSE(layout.indexAt({ 114, 20 }).has_value());
    CHECK_FALSE(layout.indexAt({ 13.9, 20 }).has_value());
    CHECK_FALSE(layout.indexAt({ 20, 13.9 }).has_value());
    CHECK_FALSE(layout.indexAt({ 20, 14 + cellHeight }).has_value());
    CHECK(layout.indexAt({ 124, 14 + 2 * rowStep }) == 9);
    CHECK_FALSE(layout.indexAt({ 234, 14 + 2 * rowStep }).has_value());
    CHECK_FALSE(layout.indexAt({ 20, 14 + 3 * rowStep }).has_value());
    CHECK_FALSE(layout.indexAt({ 500, 20 }).has_value());
}

TEST_CASE("the cells in view are those that show at least in part")
{
    GridLayout const layout(fourColumns(40));
    CHECK(layout.visible(0, 14, 0) == IndexRange { 0, 0 });
    CHECK(layout.visible(0, 15, 0) == IndexRange { 0, 4 });
    CHECK(layout.visible(0, 14 + rowStep, 0) == IndexRange { 0, 4 });
    CHECK(layout.visible(0, 14 + rowStep + 1, 0) == IndexRange { 0, 8 });
    CHECK(layout.visible(14 + cellHeight - 1, 5, 0) == IndexRange { 0, 4 });
    CHECK(layout.visible(14 + cellHeight, 5, 0).empty());
    CHECK(layout.visible(14 + cellHeight, 20, 0) == IndexRange { 4, 8 });
    CHECK(layout.visible(1e9, 500, 0).empty());
    CHECK(layout.visible(-1000, 500, 0).empty());
}

TEST_CASE("a row ahead is kept on both sides, as far as there are rows")
{
    GridLayout const layout(fourColumns(38));
    CHECK(layout.visible(0, 100, 1) == IndexRange { 0, 8 });
    CHECK(layout.visible(14 + 3 * rowStep, 100, 1) == IndexRange { 8, 20 });
    CHECK(layout.visible(14 + 9 * rowStep, 100, 1) == IndexRange { 32, 38 });
    CHECK(layout.visible(14 + 3 * rowStep, 100, 1000) == IndexRange { 0, 38 });
}

TEST_CASE("scrolling moves no further than a cell needs to be in view")
{
    GridLayout const layout(fourColumns(40));
    CHECK(layout.scrollToShow(4, 50, 500) == 50);
    CHECK(layout.scrollToShow(0, 50, 500) == 14);
    CHECK(layout.scrollToShow(20, 50, 500) == 14 + 5 * rowStep + cellHeight - 500);
    CHECK(layout.scrollToShow(20, 1e9, 500) == 14 + 5 * rowStep);
}

TEST_CASE("a cell higher than the viewport shows its upper part")
{
    GridLayout const layout(fourColumns(40));
    CHECK(layout.scrollToShow(20, 0, 50) == 14 + 5 * rowStep);
    CHECK(layout.scrollToShow(20, 14 + 5 * rowStep + 20, 50) == 14 + 5 * rowStep);
}

TEST_CASE("a cell is centred as far as there is something to scroll")
{
    GridLayout const layout(fourColumns(40));
    CHECK(layout.scrollToCentre(20, 500) == 14 + 5 * rowStep + cellHeight / 2 - 250);
    CHECK(layout.scrollToCentre(0, 500) == 0);
    CHECK(layout.scrollToCentre(39, 500) == layout.contentHeight() - 500);
    CHECK(GridLayout(fourColumns(4)).scrollToCentre(3, 500) == 0);
}

TEST_CASE("a million photos in one column have exact places")
{
    auto measures = fourColumns(1'000'000);
    measures.width = 400;
    measures.thumbSize = 400;
    GridLayout const layout(measures);
    REQUIRE(layout.columns() == 1);
    auto const last = layout.cell(999'999);
    CHECK(last.y == 14 + 999'999.0 * (400 + 34 + 10));
    CHECK(last.bottom() + 14 == layout.contentHeight());
    CHECK(layout.indexAt({ 200, last.y + 1 }) == 999'999);
    CHECK(layout.visible(last.y, 500, 0) == IndexRange { 999'999, 1'000'000 });
}

TEST_CASE("no number of photos overflows")
{
    auto const most = std::numeric_limits<std::size_t>::max();
    GridLayout const layout(fourColumns(most));
    CHECK(layout.rows() == most / 4 + 1);
    CHECK(std::isfinite(layout.contentHeight()));
    CHECK(layout.visible(layout.contentHeight(), 500, 1).last <= most);
}
