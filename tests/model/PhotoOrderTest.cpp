#include "model/PhotoOrder.h"
#include "icu/IcuTextOrder.h"
#include "model/PhotoIndex.h"
#include "model/PhotoItem.h"
#include <algorithm>
#include <doctest/doctest.h>
#include <string>
#include <vector>

using namespace pixelhain;

namespace {

IcuTextOrder const order("de_DE");

PhotoItem photo(char const* name, int date = 0, std::int64_t size = 0)
{
    return { FileUrl("/p").child(name), Timestamp(std::chrono::seconds(date)), size };
}

bool before(PhotoItem const& a, PhotoItem const& b, SortKey key, bool ascending)
{
    CHECK_FALSE(
        (photoOrder(a, b, key, ascending, order) && photoOrder(b, a, key, ascending, order)));
    return photoOrder(a, b, key, ascending, order);
}

} // namespace

TEST_CASE("names are ordered by the value of their digits, case ignored")
{
    CHECK(before(photo("IMG_2.jpg"), photo("IMG_10.jpg"), SortKey::name, true));
    CHECK(before(photo("img_2.jpg"), photo("IMG_10.jpg"), SortKey::name, true));
    CHECK(before(photo("IMG_10.jpg"), photo("IMG_2.jpg"), SortKey::name, false));
    CHECK_FALSE(before(photo("a.jpg"), photo("a.jpg"), SortKey::name, true));
    CHECK_FALSE(before(photo("a.jpg"), photo("A.jpg"), SortKey::name, true));
    CHECK_FALSE(before(photo("A.jpg"), photo("a.jpg"), SortKey::name, true));
}

TEST_CASE("two files of the same date are ordered by name, b.jpg before a.jpg when descending")
{
    CHECK(before(photo("b.jpg", 1), photo("a.jpg", 2), SortKey::date, true));
    CHECK(before(photo("a.jpg", 2), photo("b.jpg", 1), SortKey::date, false));
    CHECK(before(photo("a.jpg", 1), photo("b.jpg", 1), SortKey::date, true));
    CHECK(before(photo("b.jpg", 1), photo("a.jpg", 1), SortKey::date, false));
}

TEST_CASE("two files of the same size are ordered by name, the other way when descending")
{
    CHECK(before(photo("b.jpg", 0, 1), photo("a.jpg", 0, 2), SortKey::size, true));
    CHECK(before(photo("a.jpg", 0, 2), photo("b.jpg", 0, 1), SortKey::size, false));
    CHECK(before(photo("a.jpg", 0, 5), photo("b.jpg", 0, 5), SortKey::size, true));
    CHECK(before(photo("b.jpg", 0, 5), photo("a.jpg", 0, 5), SortKey::size, false));
}

TEST_CASE("an unknown date comes before every known one")
{
    auto unknown = photo("z.jpg");
    unknown.date = distantPast;
    CHECK(before(unknown, photo("a.jpg", -1'000'000'000), SortKey::date, true));
}

TEST_CASE("the search text IMG with spaces around it finds img_0001.jpg")
{
    auto const img = photo("img_0001.jpg");
    CHECK(matchesFilter(img, "  IMG\t", order));
    CHECK(matchesFilter(img, "IMG", order));
    CHECK(matchesFilter(img, ".JPG", order));
    CHECK_FALSE(matchesFilter(img, "IMG 0", order));
    CHECK_FALSE(matchesFilter(img, ".png", order));
}

TEST_CASE("a search text of only spaces shows everything")
{
    for (char const* const text : { "", " ", " \t  " })
        CHECK(matchesFilter(photo("a.jpg"), text, order));
}

TEST_CASE("a line break in a search text is not trimmed")
{
    CHECK_FALSE(matchesFilter(photo("img.jpg"), "img\n", order));
}

TEST_CASE("only the name is searched, never the folder")
{
    PhotoItem const item { FileUrl("/urlaub/a.jpg") };
    CHECK_FALSE(matchesFilter(item, "urlaub", order));
}

TEST_CASE("a search for e does not find é, however either is written")
{
    CHECK_FALSE(matchesFilter(photo("caf\xC3\xA9.jpg"), "cafe", order));
    CHECK_FALSE(matchesFilter(photo("cafe\xCC\x81.jpg"), "cafe", order));
    CHECK(matchesFilter(photo("cafe\xCC\x81.jpg"), "CAF\xC3\x89", order));
    CHECK(matchesFilter(photo("CAF\xC3\x89.jpg"), "cafe\xCC\x81", order));
}

TEST_CASE("a photo is found in a list of any order, and one that is not there is not")
{
    std::vector<PhotoItem> items;
    for (int i = 0; i < 60; ++i) {
        auto const name = (i % 2 == 0 ? "IMG_" : "img_") + std::to_string(i / 4) + ".jpg";
        items.push_back({ FileUrl("/" + std::to_string(i % 3)).child(name),
            Timestamp(std::chrono::seconds(i % 5)), i % 7 });
    }
    std::ranges::sort(items, {}, &PhotoItem::url);
    auto const isSame = [](auto const& a, auto const& b) { return a.url == b.url; };
    items.erase(std::unique(items.begin(), items.end(), isSame), items.end());
    for (auto const key : { SortKey::name, SortKey::date, SortKey::size })
        for (bool const ascending : { true, false }) {
            ViewChoice const choice { "", key, ascending };
            PhotoIndex index(std::span<PhotoItem const>(items), order);
            auto const sorted = index.visible(items, order, "", key, ascending);
            for (std::size_t i = 0; i < sorted.size(); ++i)
                CHECK(placeInOrder(sorted, sorted[i], choice, order) == i);
            CHECK_FALSE(placeInOrder(sorted, photo("IMG_3.jpg"), choice, order));
            CHECK_FALSE(placeInOrder({}, sorted[0], choice, order));
        }
}
