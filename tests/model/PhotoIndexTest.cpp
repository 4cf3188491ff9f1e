#include "model/PhotoIndex.h"
#include "icu/IcuTextOrder.h"
#include "model/PhotoOrder.h"
#include <algorithm>
#include <doctest/doctest.h>
#include <random>
#include <string>
#include <vector>

using namespace pixelhain;

namespace {

using Items = std::vector<PhotoItem>;

IcuTextOrder const german("de_DE");

// Names that share beginnings, differ in case, digits, accents or nothing at all, and bytes that
// are no text.
std::string makeName(std::mt19937& random)
{
    static std::vector<std::string> const pieces { "IMG_", "img_", "a", "A", "\xC3\xA4",
        "a\xCC\x88", "0", "00", "1", "9", "10", "123456789012", " ", "-", "_", "\xFF", "\xE2\x82",
        "z", "ss", "\xC3\x9F", "\xF0\x9F\x98\x80", "Urlaub am Meer " };
    std::string name;
    for (auto count = random() % 5 + 1; count > 0; --count)
        name += pieces[random() % pieces.size()];
    return name + ".jpg";
}

Items makeItems(unsigned seed, std::size_t count)
{
    std::mt19937 random(seed);
    Items items;
    while (items.size() < count) {
        auto const folder = FileUrl("/f" + std::to_string(random() % 3));
        PhotoItem item { folder.child(makeName(random)),
            Timestamp(std::chrono::seconds(random() % 4)),
            static_cast<std::int64_t>(random() % 4) };
        if (std::ranges::find(items, item.url, &PhotoItem::url) == items.end())
            items.push_back(std::move(item));
    }
    return items;
}

// What the index must yield, by the comparator alone. Equivalent names lie in the order of their
// paths, turned round when descending.
Items expected(Items items, std::string_view text, SortKey key, bool ascending)
{
    std::erase_if(items, [&](auto const& item) { return !matchesFilter(item, text, german); });
    std::ranges::sort(items, {}, &PhotoItem::url);
    if (!ascending)
        std::ranges::reverse(items);
    std::ranges::stable_sort(items,
        [&](auto const& a, auto const& b) { return photoOrder(a, b, key, ascending, german); });
    return items;
}

void checkAgainstComparator(PhotoIndex& index, Items const& items)
{
    for (auto const key : { SortKey::name, SortKey::date, SortKey::size })
        for (bool const ascending : { true, false })
            for (char const* const text : { "", " img ", "\xC3\x84", "1", "nothing has this" }) {
                CAPTURE(rawValue(key));
                CAPTURE(ascending);
                CAPTURE(text);
                CHECK(index.visible(items, german, text, key, ascending)
                    == expected(items, text, key, ascending));
            }
}

} // namespace

TEST_CASE("the index sorts and filters as the comparator and the filter rule do")
{
    for (unsigned seed = 0; seed < 40; ++seed) {
        CAPTURE(seed);
        auto const items = makeItems(seed, seed * 4);
        PhotoIndex index(items, german);
        CHECK(index.size() == items.size());
        checkAgainstComparator(index, items);
    }
}

TEST_CASE("names that agree in more bytes than a number holds are still told apart")
{
    Items items;
    for (int i = 299; i >= 0; --i)
        items.push_back({ FileUrl("/p/Ein langer gemeinsamer Anfang " + std::to_string(i % 3)
            + " und noch einer, und dann " + std::to_string(i) + ".jpg") });
    PhotoIndex index(items, german);
    CHECK(index.visible(items, german, "", SortKey::name, true)
        == expected(items, "", SortKey::name, true));
}

TEST_CASE("one name in many folders is ordered by the paths")
{
    Items items;
    for (int i = 0; i < 100; ++i)
        items.push_back({ FileUrl("/f" + std::to_string(i * 37 % 100) + "/IMG_0001.jpg") });
    items.push_back({ FileUrl("/a/IMG_0001.jpg2.jpg") });
    PhotoIndex index(items, german);
    CHECK(index.visible(items, german, "", SortKey::name, true)
        == expected(items, "", SortKey::name, true));
}

TEST_CASE("names folded before the first search are found like others")
{
    auto const items = makeItems(3, 60);
    PhotoIndex index(items, german);
    index.foldNames(items, german);
    index.foldNames(items, german);
    checkAgainstComparator(index, items);
}

TEST_CASE("a long list is ordered as the comparator does")
{
    auto const items = makeItems(99, 4000);
    PhotoIndex index(items, german);
    CHECK(index.visible(items, german, "", SortKey::name, true)
        == expected(items, "", SortKey::name, true));
}

TEST_CASE("photos that are taken out leave the order of the others alone")
{
    for (bool const searchedBefore : { false, true }) {
        CAPTURE(searchedBefore);
        auto items = makeItems(7, 150);
        PhotoIndex index(items, german);
        if (searchedBefore)
            static_cast<void>(index.visible(items, german, "img", SortKey::name, true));
        auto left = items;
        std::vector<bool> gone;
        for (auto const& item : items)
            gone.push_back(item.size == 2);
        std::erase_if(left, [](PhotoItem const& item) { return item.size == 2; });
        removePhotos(items, index, gone);
        CHECK(items == left);
        REQUIRE(index.size() == left.size());
        checkAgainstComparator(index, items);
    }
}

TEST_CASE("an index whose last photo was taken out is empty")
{
    auto items = makeItems(1, 5);
    PhotoIndex index(items, german);
    removePhotos(items, index, std::vector<bool>(items.size(), true));
    CHECK(items.empty());
    CHECK(index.size() == 0);
    CHECK(index.visible(items, german, "x", SortKey::date, true).empty());
}

TEST_CASE("an empty index shows nothing")
{
    PhotoIndex index;
    CHECK(index.visible({}, german, "", SortKey::name, true).empty());
    CHECK(index.visible({}, german, "x", SortKey::size, false).empty());
}
