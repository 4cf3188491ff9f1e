#include "codecs/CodedColors.h"
#include <array>
#include <cmath>
#include <doctest/doctest.h>
#include <string>

using namespace pixelhain;

namespace {

using Deep = std::array<std::uint16_t, 4>;
using Shown = std::array<std::uint8_t, 4>;

Shown shown(CodedColors const& colors, Deep const& pixel)
{
    Shown out {};
    CodedRowConverter(colors).convert(pixel.data(), out.data(), 1);
    return out;
}

std::uint16_t deep(int value)
{
    return static_cast<std::uint16_t>(value * 257);
}

} // namespace

TEST_CASE("sRGB goes through the code points unchanged, alpha included")
{
    auto const colors = codedColors(1, 13);
    CHECK(colors.isSrgb());
    for (int value = 0; value <= 255; ++value) {
        CAPTURE(value);
        auto const out = shown(colors, { deep(value), deep(255 - value), deep(value / 2), 32896 });
        CHECK(std::abs(out[2] - value) <= 1);
        CHECK(std::abs(out[1] - (255 - value)) <= 1);
        CHECK(std::abs(out[0] - value / 2) <= 1);
        CHECK(out[3] == 128);
    }
}

TEST_CASE("wide gamuts come out as a profile of the same colours would bring them")
{
    for (auto const primaries : { 5, 9, 11, 12 }) {
        auto const colors = codedColors(primaries, 4);
        CHECK_FALSE(colors.isSrgb());
        auto const profile = makeProfile(colors.primaries, 2.2);
        DeepRowConverter const byProfile(profile);
        REQUIRE(byProfile.isUsable());
        for (auto const& pixel : { Deep { deep(180), deep(100), deep(90), 65535 },
                 Deep { deep(60), deep(120), deep(70), 65535 },
                 Deep { deep(128), deep(128), deep(128), 65535 },
                 Deep { deep(20), deep(30), deep(40), 65535 } }) {
            CAPTURE(primaries);
            CAPTURE(pixel[0] / 257);
            Shown wanted {};
            byProfile.convert(pixel.data(), wanted.data(), 1);
            auto const out = shown(colors, pixel);
            // A profile keeps its gamma in steps of 1/256, which shows where sRGB is steep.
            for (std::size_t c = 0; c < 4; ++c)
                CHECK(std::abs(out[c] - wanted[c]) <= 4);
        }
    }
}

TEST_CASE("greys of every gamut stay grey")
{
    for (int primaries = 0; primaries < 24; ++primaries) {
        CAPTURE(primaries);
        auto const out = shown(codedColors(primaries, 13), { 30000, 30000, 30000, 65535 });
        CHECK(std::abs(out[0] - out[1]) <= 1);
        CHECK(std::abs(out[2] - out[1]) <= 1);
    }
}

TEST_CASE("the shadows of linear light keep their steps")
{
    auto const colors = codedColors(1, 8);
    // Light 1/3295 is the first level of sRGB.
    for (int level = 1; level < 10; ++level) {
        auto const light = static_cast<std::uint16_t>(std::lround(65535.0 * level / 3294.6));
        CHECK(shown(colors, { light, light, light, 65535 })[1] == level);
    }
}

TEST_CASE("brighter stays brighter in a high range, and its peak is white")
{
    for (auto const transfer : { 16, 18 }) {
        for (auto const peak : { 400.0, 1000.0, 4000.0 }) {
            CAPTURE(transfer);
            CAPTURE(peak);
            auto colors = codedColors(9, transfer);
            colors.peak = peak;
            int last = -1;
            for (int value = 0; value <= 255; value += 3) {
                auto const out = shown(colors, { deep(value), deep(value), deep(value), 65535 });
                CHECK(out[1] >= last);
                last = out[1];
            }
            CHECK(last == 255);
        }
    }
}

TEST_CASE("primaries that span no colours are not plausible")
{
    CodedColors colors;
    CHECK(colors.isPlausible());
    colors.primaries.green[0] = colors.primaries.red[0];
    colors.primaries.green[1] = colors.primaries.red[1];
    CHECK_FALSE(colors.isPlausible());
    colors = {};
    colors.primaries.white[1] = 0;
    CHECK_FALSE(colors.isPlausible());
    colors = {};
    colors.primaries.blue[1] = NAN;
    CHECK_FALSE(colors.isPlausible());
}
