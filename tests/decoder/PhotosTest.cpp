#include "base/Resample.h"
#include "decoder/InProcessDecoder.h"
#include <array>
#include <cmath>
#include <doctest/doctest.h>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <sys/resource.h>
#include <vector>

using namespace pixelhain;

namespace {

using Row = std::map<std::string, std::string>;

std::vector<std::string> cells(std::string const& line)
{
    std::vector<std::string> parts(1);
    for (char const letter : line)
        if (letter == '\t')
            parts.emplace_back();
        else
            parts.back() += letter;
    return parts;
}

// The pictures in the formats that can be read, with what each must give.
std::vector<Row> photos()
{
    constexpr std::array<std::string_view, 2> formats { "jpeg/", "png/" };
    std::ifstream table(std::string(PIXELHAIN_PHOTOS) + "/expected.tsv");
    std::string line;
    std::vector<std::string> names;
    if (std::getline(table, line))
        names = cells(line);
    std::vector<Row> rows;
    while (std::getline(table, line)) {
        auto const values = cells(line);
        Row row;
        for (std::size_t i = 0; i < names.size() && i < values.size(); ++i)
            row[names[i]] = values[i];
        bool known = row["path"].starts_with("broken/");
        for (auto const format : formats)
            known = known || row["path"].starts_with(format);
        if (known)
            rows.push_back(row);
    }
    return rows;
}

FileUrl fileOf(Row const& row, std::string const& folder = "", std::string const& ending = "")
{
    return FileUrl(std::string(PIXELHAIN_PHOTOS) + "/" + folder + row.at("path") + ending);
}

// How far two pictures are apart at 64 pixels, in levels; both on white.
double difference(Bitmap const& a, Bitmap const& b)
{
    auto const size = fittedSize(a.size, 64);
    auto const left = resampled(a, size);
    auto const right = resampled(b, size);
    double sum = 0;
    for (int y = 0; y < size.height; ++y)
        for (int i = 0; i < size.width * 4; i += 4)
            for (int channel = 0; channel < 3; ++channel) {
                auto const onWhite = [&](Bitmap const& bitmap) {
                    auto const* pixel = bitmap.row(y) + i;
                    return pixel[channel] + (bitmap.isOpaque ? 0 : 255 - pixel[3]);
                };
                auto const apart = onWhite(left) - onWhite(right);
                sum += apart * apart;
            }
    return std::sqrt(sum / (3.0 * size.width * size.height));
}

// How CMYK is shown without a profile is a matter of convention: only its structure can be
// compared.
bool isCmyk(std::string const& path)
{
    return path.find("cmyk") != std::string::npos || path.find("ycck") != std::string::npos;
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
        CHECK(std::to_string(meta->size->width) == row.at("width"));
        CHECK(std::to_string(meta->size->height) == row.at("height"));
        CHECK(meta->isAnimated == (row.at("animation") == "animated"));
    }
}

TEST_CASE("every photo looks like its reference picture")
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
        bool const isByConvention = isCmyk(row.at("path"));
        CHECK(difference(picture->bitmap, reference->bitmap) < (isByConvention ? 40 : 3));
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
        if (row.at("kind") == "broken") {
            CHECK_FALSE(thumbnail);
            CHECK_FALSE(display);
        } else if (thumbnail)
            CHECK(thumbnail->bitmap.size.longestSide() <= 256);
    }
    CHECK(peakMegabytes() - before < 2048);
}
