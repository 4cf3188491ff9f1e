#include "support/Desk.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

using Index = std::optional<std::size_t>;

struct Gallery : Desk {
    explicit Gallery(Names const& names = { "1.jpg", "2.jpg", "3.jpg", "4.jpg", "5.jpg" })
    {
        open("/b", names);
    }

    UrlSet photos(std::vector<int> const& numbers)
    {
        UrlSet urls;
        for (auto const number : numbers)
            urls.insert(FileUrl("/b/" + std::to_string(number) + ".jpg"));
        return urls;
    }
};

} // namespace

TEST_CASE("removing nothing recounts nothing")
{
    Gallery desk;
    auto const counts = desk.model().countsVersion.get();
    desk.model().removeItems({});
    CHECK(*desk.model().countsVersion == counts);
    CHECK(desk.names().size() == 5);
}

TEST_CASE("removed photos leave both lists and the marks; the sidebar recounts once")
{
    Gallery desk;
    auto const counts = desk.model().countsVersion.get();
    desk.model().selectAll();
    desk.model().removeItems(desk.photos({ 2, 4, 77 }));
    CHECK(desk.names() == Names { "1.jpg", "3.jpg", "5.jpg" });
    CHECK(desk.model().allItems().size() == 3);
    CHECK(desk.marked() == Names { "1.jpg", "3.jpg", "5.jpg" });
    CHECK(*desk.model().countsVersion == counts + 1);
}

TEST_CASE("viewer, cursor and the start of a range follow their photos")
{
    struct Case {
        Index before;
        std::vector<int> removed;
        Index after;
    };
    for (auto const& it : {
             Case { Index(3), { 1, 2 }, Index(1) },
             Case { Index(1), { 2 }, Index(1) },
             Case { Index(1), { 2, 3 }, Index(1) },
             Case { Index(1), { 1, 2, 3 }, Index(0) },
             Case { Index(4), { 5 }, Index(3) },
             Case { Index(4), { 5, 4 }, Index(2) },
             Case { Index(2), { 1, 2, 3, 4, 5 }, std::nullopt },
             Case { std::nullopt, { 1 }, std::nullopt },
         }) {
        CAPTURE(it.removed.size());
        Gallery desk;
        if (it.before) {
            desk.model().click(*it.before, {});
            REQUIRE(desk.model().anchor() == it.before);
        }
        desk.model().removeItems(desk.photos(it.removed));
        CHECK(*desk.model().viewerIndex == it.after);
        CHECK(*desk.model().cursor == it.after);
        CHECK(desk.model().anchor() == it.after);
    }
}

TEST_CASE("photos that the filter hides are removed as well, and stay away")
{
    Gallery desk({ "1.jpg", "12.jpg", "2.jpg" });
    desk.model().setSearchText("2");
    desk.model().removeItems(desk.photos({ 1, 2 }));
    CHECK(desk.names() == Names { "12.jpg" });
    desk.model().setSearchText("");
    CHECK(desk.names() == Names { "12.jpg" });
}

TEST_CASE("after a removal the rest is sorted and searched as before")
{
    Gallery desk({ "b.jpg", "C.jpg", "a10.jpg", "a9.jpg", "d.jpg" });
    desk.model().setSearchText("a");
    desk.model().setSearchText("");
    desk.model().removeItems({ FileUrl("/b/C.jpg"), FileUrl("/b/a9.jpg") });
    CHECK(desk.names() == Names { "a10.jpg", "b.jpg", "d.jpg" });
    desk.model().setAscending(false);
    CHECK(desk.names() == Names { "d.jpg", "b.jpg", "a10.jpg" });
    desk.model().setSearchText("A1");
    CHECK(desk.names() == Names { "a10.jpg" });
    desk.model().setSearchText("C");
    CHECK(desk.names().empty());
}

TEST_CASE("observers hear of a removal")
{
    Gallery desk;
    desk.loop.settle();
    int heard = 0;
    auto const observation = desk.model().observe([&] { ++heard; });
    desk.model().removeItems(desk.photos({ 1 }));
    desk.loop.settle();
    CHECK(heard == 1);
}
