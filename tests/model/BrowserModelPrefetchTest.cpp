#include "support/Desk.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

struct Gallery : Desk {
    explicit Gallery(std::size_t count)
    {
        Names all;
        for (std::size_t i = 0; i < count; ++i)
            all.push_back(std::to_string(i) + ".jpg");
        open("/b", all);
    }

    std::string shown() { return std::string(prefetch.requests.back().shown.name()); }
    std::size_t requests() const { return prefetch.requests.size(); }
};

} // namespace

TEST_CASE("opening the viewer on photo 0 of 3 prefetches photos 1 and 2")
{
    Gallery desk(3);
    CHECK(desk.requests() == 0);
    desk.model().openViewer(0);
    CHECK(desk.shown() == "0.jpg");
    CHECK(desk.prefetch.next() == Names { "1.jpg", "2.jpg" });
}

TEST_CASE("a click that opens the viewer prefetches two ahead and one behind")
{
    Gallery desk(9);
    desk.model().click(4, {});
    CHECK(desk.shown() == "4.jpg");
    CHECK(desk.prefetch.next() == Names { "5.jpg", "6.jpg", "3.jpg" });
    CHECK(desk.requests() == 1);
}

TEST_CASE("stepping backward from 5 to 4 prefetches 3, 2 and 5")
{
    Gallery desk(9);
    desk.model().openViewer(5);
    desk.press(keyCodes::left);
    CHECK(desk.shown() == "4.jpg");
    CHECK(desk.prefetch.next() == Names { "3.jpg", "2.jpg", "5.jpg" });
}

TEST_CASE("stepping forward prefetches forward")
{
    Gallery desk(9);
    desk.model().openViewer(2);
    desk.press(keyCodes::right);
    CHECK(desk.shown() == "3.jpg");
    CHECK(desk.prefetch.next() == Names { "4.jpg", "5.jpg", "2.jpg" });
}

TEST_CASE("a step that does not move prefetches nothing")
{
    Gallery desk(3);
    desk.model().openViewer(2);
    desk.press(keyCodes::right);
    CHECK(desk.window.beepCount == 1);
    CHECK(desk.requests() == 1);
}

TEST_CASE("the viewer's Home and End prefetch forward from there")
{
    Gallery desk(9);
    desk.model().openViewer(4);
    desk.press(keyCodes::end);
    CHECK(desk.prefetch.next() == Names { "7.jpg" });
    desk.press(keyCodes::home);
    CHECK(desk.prefetch.next() == Names { "1.jpg", "2.jpg" });
}

TEST_CASE("after the photo in the viewer was trashed, its successor's neighbours are prefetched")
{
    Gallery desk(6);
    desk.model().openViewer(2);
    desk.model().trashTargets();
    desk.settle();
    CHECK(desk.shown() == "3.jpg");
    CHECK(desk.prefetch.next() == Names { "4.jpg", "5.jpg", "1.jpg" });
}

TEST_CASE("removing photos while the gallery shows prefetches nothing")
{
    Gallery desk(6);
    desk.model().toggle(1);
    desk.model().trashTargets();
    desk.settle();
    CHECK(desk.names().size() == 5);
    CHECK(desk.requests() == 0);
}

TEST_CASE("photos beside another one are prefetched where the list stands after sorting")
{
    Gallery desk(4);
    desk.model().openViewer(1);
    desk.model().setAscending(false);
    desk.press(keyCodes::right);
    CHECK(desk.shown() == "0.jpg");
    CHECK(desk.prefetch.next() == Names { "1.jpg" });
}

TEST_CASE("opening a photo from outside prefetches its neighbours")
{
    Desk desk;
    auto const folder = desk.folder("/b", { "1.jpg", "2.jpg", "3.jpg" });
    desk.model().open(folder.child("2.jpg"));
    desk.settle();
    CHECK(desk.prefetch.next() == Names { "3.jpg", "1.jpg" });
}
