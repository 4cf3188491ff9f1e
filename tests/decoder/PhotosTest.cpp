#include "codecs/PhotoCollection.h"
#include "decoder/InProcessDecoder.h"
#include "support/Places.h"
#include "support/Sanitizers.h"
#include <doctest/doctest.h>
#include <string>
#include <sys/resource.h>
#include <vector>

using namespace pixelhain;

namespace {

using Row = PhotoAnswers;

// The pictures in the formats that can be read, with what each must give, and the damaged ones.
std::vector<Row> photos()
{
    return photoAnswers(
        { "jpeg", "png", "gif", "webp", "tiff", "bmp", "heif", "avif", "jxl", "raw", "broken" });
}

FileUrl fileOf(Row const& row, std::string const& folder = "", std::string const& ending = "")
{
    return FileUrl(photosFolder() + "/" + folder + row.at("path") + ending);
}

// Of RAW pictures programs disagree by the sensor's borders.
bool isNear(int side, Row const& row, std::string const& wanted)
{
    auto const isRaw = row.at("path").starts_with("raw/");
    return std::abs(side - std::stoi(wanted)) <= (isRaw ? 0.02 * std::stoi(wanted) : 0);
}

long peakMegabytes()
{
    rusage usage {};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

} // namespace

TEST_CASE("every photo reports its size and whether it is animated")
{
    InProcessDecoder decoder;
    for (auto const& row : photos()) {
        if (row.at("kind") != "ok")
            continue;
        CAPTURE(row.at("path"));
        auto const meta = decoder.readMeta(fileOf(row));
        REQUIRE(meta);
        REQUIRE(meta->size);
        CHECK(isNear(meta->size->width, row, row.at("width")));
        CHECK(isNear(meta->size->height, row, row.at("height")));
        CHECK(meta->isAnimated == (row.at("animation") == "animated"));
    }
}

TEST_CASE("every photo looks like its reference picture" * doctest::skip(isThreadSanitized))
{
    InProcessDecoder decoder;
    for (auto const& row : photos()) {
        if (row.at("kind") != "ok")
            continue;
        CAPTURE(row.at("path"));
        auto const picture = decoder.decode({ fileOf(row), 256, EmbeddedPreviews::ignore });
        auto const reference
            = decoder.decode({ fileOf(row, "reference/", ".png"), 256, EmbeddedPreviews::ignore });
        CHECK(picture);
        CHECK(reference);
        if (!picture || !reference)
            continue;
        CHECK(std::abs(picture->bitmap.size.width - reference->bitmap.size.width) <= 1);
        CHECK(std::abs(picture->bitmap.size.height - reference->bitmap.size.height) <= 1);
        if (isLoose(row))
            CHECK(likeness(picture->bitmap, reference->bitmap) > 0.9);
        else
            CHECK(difference(picture->bitmap, reference->bitmap) <= 3);
    }
}

TEST_CASE("a damaged photo yields nothing or what can be saved, in bounded memory")
{
    InProcessDecoder decoder;
    auto const before = peakMegabytes();
    for (auto const& row : photos()) {
        if (row.at("kind") == "ok")
            continue;
        CAPTURE(row.at("path"));
        auto const url = fileOf(row);
        static_cast<void>(decoder.readMeta(url));
        auto const thumbnail = decoder.decode({ url, 256, EmbeddedPreviews::prefer });
        auto const display = decoder.decode({ url, 2880, EmbeddedPreviews::ignore });
        if (!mayBeShown(row)) {
            CHECK_FALSE(thumbnail);
            CHECK_FALSE(display);
        } else if (thumbnail)
            CHECK(thumbnail->bitmap.size.longestSide() <= 256);
    }
    CHECK(peakMegabytes() - before < 2048);
}
