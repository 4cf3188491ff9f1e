#include "Encoding.h"

#include <doctest/doctest.h>
#include <set>

using namespace pixelhain;

namespace {

/// The picture that EXIF's description of `orientation` makes of what was stored.
RgbaPixels shownUpright(int orientation, RgbaPixels const& stored)
{
    auto const isTurned = orientation > 4;
    auto upright = RgbaPixels::filled(isTurned ? stored.size.turned() : stored.size, 0);
    // By the tag's own words: where the 0th row and the 0th column of what is stored belong.
    auto const rowIsBottom = orientation == 3 || orientation == 4;
    auto const rowIsRight = orientation == 6 || orientation == 7;
    auto const columnIsRight = orientation == 2 || orientation == 3;
    auto const columnIsBottom = orientation == 7 || orientation == 8;
    for (auto row = 0; row < stored.size.height; ++row)
        for (auto column = 0; column < stored.size.width; ++column) {
            auto const farRow = stored.size.height - 1 - row;
            auto const farColumn = stored.size.width - 1 - column;
            auto const x
                = isTurned ? (rowIsRight ? farRow : row) : (columnIsRight ? farColumn : column);
            auto const y
                = isTurned ? (columnIsBottom ? farColumn : column) : (rowIsBottom ? farRow : row);
            std::copy_n(stored.at(column, row), 4, upright.at(x, y));
        }
    return upright;
}

} // namespace

TEST_CASE("a picture stored in any orientation is upright again when shown")
{
    auto const pixels = pixelsOf(drawScene(Scene::rings, { 24, 16 }, 3));
    for (auto orientation = 1; orientation <= 8; ++orientation) {
        CAPTURE(orientation);
        auto const shown = shownUpright(orientation, storedAs(orientation, pixels));
        CHECK(shown.size == pixels.size);
        CHECK(shown.rgba == pixels.rgba);
    }
}

TEST_CASE("reducing keeps the shape and the mean color")
{
    auto pixels = RgbaPixels::filled({ 300, 200 }, 0);
    for (auto y = 0; y < 200; ++y)
        for (auto x = 0; x < 300; ++x)
            pixels.at(x, y)[0] = static_cast<std::uint8_t>((x + y) % 2 * 200);
    auto const small = reduced(pixels, 30);
    CHECK(small.size == PixelSize { 30, 20 });
    CHECK(small.at(11, 7)[0] == 100);
}

TEST_CASE("a picture that is small already is not enlarged")
{
    auto const pixels = RgbaPixels::filled({ 30, 20 }, 0x102030FF);
    CHECK(reduced(pixels, 160).size == pixels.size);
}

TEST_CASE("every scene draws more than a plain color, the same for the same seed")
{
    for (auto const& sample : sampleCatalogue()) {
        CAPTURE(sample.path);
        auto const first = pixelsOf(drawScene(sample.scene, { 60, 40 }, sample.seed));
        auto const second = pixelsOf(drawScene(sample.scene, { 60, 40 }, sample.seed));
        CHECK(first.rgba == second.rgba);
        std::set<int> shades;
        for (auto const part : first.rgba)
            shades.insert(part);
        CHECK(shades.size() > 20);
    }
}

TEST_CASE("the catalogue names every picture once and has all orientations and formats")
{
    std::set<std::string> paths;
    std::set<int> orientations;
    std::set<SampleFormat> formats;
    for (auto const& sample : sampleCatalogue()) {
        paths.insert(sample.path);
        orientations.insert(sample.orientation);
        formats.insert(sample.format);
    }
    CHECK(paths.size() == sampleCatalogue().size());
    CHECK(orientations == std::set { 0, 1, 2, 3, 4, 5, 6, 7, 8 });
    CHECK(formats.size() == 14);
}
