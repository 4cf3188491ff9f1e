#include "model/SlideshowRules.h"
#include "support/FakeRandomSource.h"
#include <algorithm>
#include <array>
#include <doctest/doctest.h>
#include <map>
#include <numeric>
#include <string>

using namespace pixelhain;

namespace {

using Order = std::vector<std::size_t>;

std::vector<PhotoItem> photos(std::size_t count)
{
    std::vector<PhotoItem> items(count);
    for (std::size_t i = 0; i < count; ++i)
        items[i].url = FileUrl("/b/" + std::to_string(i) + ".jpg");
    return items;
}

UrlSet marked(std::vector<PhotoItem> const& items, Order const& indices)
{
    UrlSet urls;
    for (auto const index : indices)
        urls.insert(items[index].url);
    return urls;
}

Order ascending(std::size_t count)
{
    Order order(count);
    std::iota(order.begin(), order.end(), std::size_t { 0 });
    return order;
}

} // namespace

TEST_CASE("a slideshow shows the marked photos in list order if there are two, else all")
{
    auto const items = photos(5);
    CHECK(slideshowOrder({}, items) == ascending(5));
    CHECK(slideshowOrder(marked(items, { 3 }), items) == ascending(5));
    CHECK(slideshowOrder(marked(items, { 3, 1 }), items) == Order { 1, 3 });
    CHECK(slideshowOrder(marked(items, { 4, 0, 2 }), items) == Order { 0, 2, 4 });
}

TEST_CASE("marked photos that are not in the list are not shown; if none is, all are")
{
    auto const items = photos(3);
    auto selection = marked(items, { 2 });
    selection.insert(FileUrl("/b/hidden.jpg"));
    CHECK(slideshowOrder(selection, items) == Order { 2 });
    CHECK(slideshowOrder({ FileUrl("/b/x.jpg"), FileUrl("/b/y.jpg") }, items) == ascending(3));
}

TEST_CASE("a round wraps at both ends, however far the step")
{
    CHECK(wrapped(4, +1, 5) == 0);
    CHECK(wrapped(0, -1, 5) == 4);
    CHECK(wrapped(2, +1, 5) == 3);
    CHECK(wrapped(2, -7, 5) == 0);
    CHECK(wrapped(2, +13, 5) == 0);
    CHECK(wrapped(0, -1, 1) == 0);
}

TEST_CASE("the next two photos of the order come after each, around its end")
{
    Order const order { 7, 3, 5 };
    CHECK(photosAfter(0, order, 10) == Order { 3, 5 });
    CHECK(photosAfter(1, order, 10) == Order { 5, 7 });
    CHECK(photosAfter(2, order, 10) == Order { 7, 3 });
}

TEST_CASE("photos that are no longer in the list do not come next")
{
    Order const order { 0, 9, 1 };
    CHECK(photosAfter(0, order, 9) == Order { 1 });
    CHECK(photosAfter(0, order, 1).empty());
}

TEST_CASE("a shuffled order holds the same photos")
{
    FakeRandomSource random;
    auto order = ascending(1'000);
    shuffle(order, random);
    CHECK(order != ascending(1'000));
    std::ranges::sort(order);
    CHECK(order == ascending(1'000));
    Order none;
    shuffle(none, random);
    CHECK(none.empty());
}

// The sum of the squared deviations has 23 degrees of freedom; one of a thousand fair shuffles
// passes 49.7, and hardly any stays below 7.5.
TEST_CASE("each of the 24 orders of four photos is as likely as the others")
{
    constexpr int rounds = 24'000;
    FakeRandomSource random;
    std::map<Order, int> counts;
    for (int i = 0; i < rounds; ++i) {
        auto order = ascending(4);
        shuffle(order, random);
        ++counts[order];
    }
    REQUIRE(counts.size() == 24);
    constexpr double expected = rounds / 24.0;
    double chiSquare = 0;
    for (auto const& [order, count] : counts)
        chiSquare += (count - expected) * (count - expected) / expected;
    CHECK(chiSquare < 49.7);
    CHECK(chiSquare > 7.5);
}

// 99 degrees of freedom; one of a thousand passes 148.2.
TEST_CASE("in a long order every photo is as likely to stand at every place")
{
    constexpr int rounds = 20'000;
    constexpr std::size_t count = 10;
    FakeRandomSource random;
    std::array<std::array<int, count>, count> places {};
    for (int i = 0; i < rounds; ++i) {
        auto order = ascending(count);
        shuffle(order, random);
        for (std::size_t place = 0; place < count; ++place)
            ++places[place][order[place]];
    }
    constexpr double expected = static_cast<double>(rounds) / count;
    double chiSquare = 0;
    for (auto const& row : places)
        for (int const seen : row)
            chiSquare += (seen - expected) * (seen - expected) / expected;
    CHECK(chiSquare < 148.2);
}
