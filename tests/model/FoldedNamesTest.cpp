#include "model/FoldedNames.h"
#include "support/FakeTextOrder.h"
#include <doctest/doctest.h>
#include <string>

using namespace pixelhain;

namespace {

constexpr std::size_t many = 50'001; // more than three blocks

std::string nameAt(std::size_t position)
{
    return "IMG_" + std::to_string(position) + ".JPG";
}

FoldedNames manyNames()
{
    std::vector<std::string> names;
    for (std::size_t i = 0; i < many; ++i)
        names.push_back(nameAt(i));
    return { many, [&](std::size_t i) -> std::string_view { return names[i]; }, FakeTextOrder() };
}

} // namespace

TEST_CASE("names of all blocks are folded, kept in their order and found")
{
    auto const names = manyNames();
    REQUIRE(names.size() == many);
    CHECK(names.at(0) == "img_0.jpg");
    CHECK(names.at(16'383) == "img_16383.jpg");
    CHECK(names.at(16'384) == "img_16384.jpg");
    CHECK(names.at(many - 1) == "img_50000.jpg");
    CHECK(names.holding("9999.")
        == std::vector<std::uint32_t> { 9'999, 19'999, 29'999, 39'999, 49'999 });
    CHECK(names.holding("").size() == many);
    CHECK(names.holding("IMG").empty());
}

TEST_CASE("a text is not found where one name ends and the next begins")
{
    CHECK(manyNames().holding("jpgimg").empty());
}

TEST_CASE("names that are added one by one are like those that were there")
{
    auto const names = manyNames();
    FoldedNames added;
    CHECK(added.size() == 0);
    CHECK(added.holding("a").empty());
    for (std::size_t i = 0; i < many; i += 2)
        added.add(names.at(i));
    REQUIRE(added.size() == many / 2 + 1);
    CHECK(added.at(16'384) == names.at(32'768));
    CHECK(added.holding("img_50000.").front() == many / 2);
}
