#include "viewer/InfoPanel.h"
#include "support/FakeBackground.h"
#include "support/FakeLoop.h"
#include <doctest/doctest.h>

using namespace pixelhain;
using Lines = std::vector<std::string>;

namespace {

PhotoItem photo(std::string const& name)
{
    return { FileUrl("/Fotos/" + name), {}, 0 };
}

struct Panel {
    FakeBackground background;
    FakeLoop loop;
    int reads = 0;
    int changes = 0;
    InfoPanel panel { [this](PhotoItem const& item) {
                         ++reads;
                         return Lines { std::string(item.name()) };
                     },
        background, loop, [this] { ++changes; } };

    void settle()
    {
        background.finishAll();
        loop.settle();
    }
};

} // namespace

TEST_CASE("the panel is empty until its lines were read in the background")
{
    Panel p;
    p.panel.show(photo("a.jpg"));
    CHECK(p.reads == 0);
    CHECK(p.panel.lines().empty());
    p.settle();
    CHECK(p.panel.lines() == Lines { "a.jpg" });
    CHECK(p.changes == 1);
    p.panel.show(photo("a.jpg"));
    p.settle();
    CHECK(p.reads == 1);
}

TEST_CASE("lines are read again for another photo, and when the panel comes back")
{
    Panel p;
    p.panel.show(photo("a.jpg"));
    p.settle();
    p.panel.show(photo("b.jpg"));
    p.settle();
    CHECK(p.panel.lines() == Lines { "b.jpg" });
    p.panel.hide();
    p.panel.show(photo("b.jpg"));
    CHECK(p.panel.lines().empty());
    p.settle();
    CHECK(p.reads == 3);
}

TEST_CASE("lines stay until there are new ones when more is known of the same photo")
{
    Panel p;
    auto known = photo("a.jpg");
    p.panel.show(known);
    p.settle();
    known.size = 1;
    p.panel.show(known);
    CHECK(p.panel.lines() == Lines { "a.jpg" });
    p.settle();
    CHECK(p.reads == 2);
}

TEST_CASE("lines that come after the photo was left are dropped")
{
    Panel p;
    p.panel.show(photo("a.jpg"));
    p.background.finishAll(); // read, and on their way
    p.panel.show(photo("b.jpg"));
    p.loop.settle();
    CHECK(p.panel.lines().empty());
    p.settle();
    CHECK(p.panel.lines() == Lines { "b.jpg" });
    p.panel.show(photo("c.jpg"));
    p.panel.hide();
    p.settle();
    CHECK(p.panel.lines().empty());
    CHECK(p.changes == 1);
}
