#include "SampleFolder.h"

#include "Catalogue.h"
#include "support/TemporaryFolder.h"
#include <doctest/doctest.h>
#include <fstream>

using namespace pixelhain;
namespace fs = std::filesystem;

namespace {

constexpr auto tiny = 0.02;

fs::path pathOf(TemporaryFolder const& folder)
{
    return std::string(folder.url().path());
}

void write(fs::path const& file, std::string const& text)
{
    std::ofstream(file) << text;
}

std::string read(fs::path const& file)
{
    std::ifstream stream(file, std::ios::binary);
    return { std::istreambuf_iterator<char>(stream), {} };
}

} // namespace

TEST_CASE("every picture of the catalogue is written, and nothing half done is left")
{
    TemporaryFolder const place;
    auto const folder = pathOf(place) / "Bilder mit Leerzeichen";
    REQUIRE_FALSE(writeSamples(folder, tiny));
    auto files = 0u;
    for (auto const& entry : fs::recursive_directory_iterator(folder))
        files += entry.is_regular_file() ? 1 : 0;
    CHECK(files == sampleCatalogue().size() + 1);
    for (auto const& sample : sampleCatalogue())
        CHECK_MESSAGE(fs::file_size(folder / sample.path) > 50, sample.path);
}

TEST_CASE("a complete folder is left alone, even where a picture was changed")
{
    TemporaryFolder const place;
    auto const changed = pathOf(place) / sampleCatalogue().front().path;
    REQUIRE_FALSE(writeSamples(pathOf(place), tiny));
    write(changed, "changed by its owner");
    REQUIRE_FALSE(writeSamples(pathOf(place), tiny));
    CHECK(read(changed) == "changed by its owner");
}

TEST_CASE("an interrupted run is taken up without drawing again what is there")
{
    TemporaryFolder const place;
    auto const& samples = sampleCatalogue();
    REQUIRE_FALSE(writeSamples(pathOf(place), tiny));
    auto const stamp = pathOf(place) / ".pixelhain-samples";
    auto text = read(stamp);
    text.replace(text.find("complete"), 8, "unfinished");
    write(stamp, text);
    fs::remove(pathOf(place) / samples.front().path);
    write(pathOf(place) / samples.back().path, "was there");
    REQUIRE_FALSE(writeSamples(pathOf(place), tiny));
    CHECK(fs::exists(pathOf(place) / samples.front().path));
    CHECK(read(pathOf(place) / samples.back().path) == "was there");
    CHECK(read(stamp).find("complete") != std::string::npos);
}

TEST_CASE("a folder with other things in it is refused and stays as it is")
{
    TemporaryFolder const place;
    write(pathOf(place) / "Steuererklärung.txt", "wichtig");
    auto const problem = writeSamples(pathOf(place), tiny);
    REQUIRE(problem);
    CHECK(problem->find(pathOf(place).string()) != std::string::npos);
    CHECK(std::distance(fs::directory_iterator(pathOf(place)), {}) == 1);
}

TEST_CASE("a place that is a file is refused")
{
    TemporaryFolder const place;
    write(pathOf(place) / "datei", "x");
    CHECK(writeSamples(pathOf(place) / "datei", tiny));
    CHECK(read(pathOf(place) / "datei") == "x");
}

TEST_CASE("other sizes are drawn anew")
{
    TemporaryFolder const place;
    auto const first = pathOf(place) / sampleCatalogue().front().path;
    REQUIRE_FALSE(writeSamples(pathOf(place), tiny));
    auto const before = fs::file_size(first);
    REQUIRE_FALSE(writeSamples(pathOf(place), 2 * tiny));
    CHECK(fs::file_size(first) > before);
}
