#include "window/GridView.h"
#include "support/Desk.h"
#include "support/FakeThumbnails.h"
#include <chrono>
#include <doctest/doctest.h>
#include <map>

using namespace pixelhain;

namespace {

// 40 photos in four columns of 100 points; rows of 100 + 10.
struct Gallery {
    Desk desk;
    FakeThumbnails source;
    std::vector<FileUrl> changed;
    std::optional<GridView> grid;

    explicit Gallery(int count = 40)
    {
        Names names;
        for (int i = 1; i <= count; ++i)
            names.push_back(std::to_string(i) + ".jpg");
        desk.open("/b", names);
        desk.model().setThumbSize(100);
        grid.emplace(desk.model(), source, desk.loop,
            [this](FileUrl const& url) { changed.push_back(url); });
        layOut(18 + 4 * 110);
    }

    void layOut(double width) { grid->layOut(width, {}); }

    // Whose turn it is, in that order; what is ahead in brackets, what is looked at only marked.
    Names turns() const
    {
        std::map<std::pair<int, std::uint32_t>, std::string> order;
        for (auto const& request : source.requests) {
            auto const place = request.turn.place();
            auto const name = std::string(request.url.name());
            if (*request.dropped || request.maxPixel == 0 || place.wish == Turn::Wish::nothing)
                continue;
            order[{ static_cast<int>(place.wish), place.rank }] = place.wish == Turn::Wish::load
                ? name
                : place.wish == Turn::Wish::glance ? "?" + name
                                                   : "(" + name + ")";
        }
        Names names;
        for (auto const& [place, name] : order)
            names.push_back(name);
        return names;
    }
};

constexpr double rowStep = 110;

} // namespace

TEST_CASE("the grid tells the model its columns whenever it is laid out")
{
    Gallery gallery;
    CHECK(gallery.desk.model().columns() == 4);
    gallery.layOut(18 + 7 * 110);
    CHECK(gallery.desk.model().columns() == 7);
    gallery.desk.model().setThumbSize(400);
    gallery.layOut(18 + 7 * 110);
    CHECK(gallery.desk.model().columns() == 1);
}

TEST_CASE("a page key takes a cursor in view along by whole rows, in its column")
{
    using Turn = GridView::PageTurn;
    Gallery gallery;
    constexpr double height = 350; // three whole rows
    gallery.desk.model().moveCursor(+3, Extend::no); // index 2
    auto const page = gallery.grid->page(Turn::forward, 0, height);
    CHECK(page.cursorStep == 12);
    CHECK(page.top == 3 * rowStep);
    auto const back = gallery.grid->page(Turn::back, 0, height);
    CHECK(back.cursorStep == 0);
    CHECK(back.top == 0);
    gallery.desk.model().moveCursor(+31, Extend::no); // index 33, of rows 0 to 9
    auto const end = gallery.grid->page(Turn::forward, 6 * rowStep, height);
    CHECK(end.cursorStep == 4);
    CHECK(end.top == gallery.grid->layout().contentHeight() - height);
}

TEST_CASE("a page key in the last rows does not leave the list")
{
    using Turn = GridView::PageTurn;
    Gallery gallery(38); // two photos in the last row
    gallery.desk.model().moveCursor(+32, Extend::no); // index 31
    auto const top = gallery.grid->layout().scrollToShow(31, 0, 350);
    CHECK(gallery.grid->page(Turn::forward, top, 350).cursorStep == 6); // to 37
    gallery.desk.model().moveCursor(+6, Extend::no);
    auto const end = gallery.grid->layout().scrollToShow(37, 0, 350);
    CHECK(gallery.grid->page(Turn::forward, end, 350).cursorStep == 0);
    CHECK(gallery.grid->page(Turn::back, end, 350).cursorStep == -12);
}

TEST_CASE("without a cursor in view a page key turns nearly one page")
{
    using Turn = GridView::PageTurn;
    Gallery gallery;
    CHECK(gallery.grid->page(Turn::forward, 0, 350).top == 310);
    CHECK(gallery.grid->page(Turn::back, 400, 350).top == 90);
    gallery.desk.model().moveCursor(+1, Extend::no);
    auto const page = gallery.grid->page(Turn::forward, 500, 350);
    CHECK(page.cursorStep == 0);
    CHECK(page.top == 768); // the end
}

TEST_CASE("captions that are switched off take no room")
{
    Gallery gallery;
    gallery.grid->layOut(458, { 14, 12 });
    CHECK(gallery.grid->layout().cell(0).height == 134);
    gallery.desk.model().setShowFilenames(false);
    gallery.grid->layOut(458, { 14, 12 });
    CHECK(gallery.grid->layout().cell(0).height == 116);
    gallery.desk.model().setShowResolution(false);
    gallery.grid->layOut(458, { 14, 12 });
    CHECK(gallery.grid->layout().cell(0).height == 100);
}

TEST_CASE(
    "only cells in view and a row around them load, those in view first, then what comes next")
{
    Gallery gallery;
    gallery.grid->showRows(14 + 2 * rowStep, 100);
    gallery.desk.loop.advance(ScrollForecast::beat);
    CHECK(gallery.grid->inView() == IndexRange { 8, 12 });
    CHECK(gallery.grid->kept() == IndexRange { 4, 16 });
    CHECK(gallery.source.thumbnailsAsked()
        == Names { "9.jpg", "10.jpg", "11.jpg", "12.jpg", "13.jpg", "14.jpg", "15.jpg", "16.jpg",
            "5.jpg", "6.jpg", "7.jpg", "8.jpg" });
    CHECK(gallery.turns()
        == Names { "9.jpg", "10.jpg", "11.jpg", "12.jpg", "(13.jpg)", "(14.jpg)", "(15.jpg)",
            "(16.jpg)", "(5.jpg)", "(6.jpg)", "(7.jpg)", "(8.jpg)" });
}

TEST_CASE("a gallery that moves up takes the turns from below, and the row above comes next")
{
    Gallery gallery;
    gallery.grid->showRows(14 + 8 * rowStep, 100);
    gallery.desk.loop.advance(std::chrono::seconds(1));
    gallery.grid->showRows(14 + 4 * rowStep, 210);
    gallery.desk.loop.advance(std::chrono::milliseconds(100));
    CHECK(gallery.turns()
        == Names { "24.jpg", "23.jpg", "22.jpg", "21.jpg", "20.jpg", "19.jpg", "18.jpg", "17.jpg",
            "(16.jpg)", "(15.jpg)", "(14.jpg)", "(13.jpg)", "(28.jpg)", "(27.jpg)", "(26.jpg)",
            "(25.jpg)" });
}

TEST_CASE("a row that comes into view takes its turn before the rows that wait around it")
{
    Gallery gallery;
    gallery.grid->showRows(14, 100);
    CHECK(gallery.turns().at(4) == "(5.jpg)");
    auto const before = gallery.source.turnChanges;
    gallery.grid->showRows(14 + 1, 110);
    CHECK(gallery.turns().at(4) == "5.jpg");
    CHECK(gallery.source.turnChanges > before);
}

TEST_CASE("cells that pass by fast are not begun, and those that slow down are")
{
    Gallery gallery(10'000);
    auto& grid = *gallery.grid;
    double top = 0;
    auto const scroll = [&](double step, int frames) {
        for (int i = 0; i < frames; ++i) {
            grid.showRows(top += step, 600);
            gallery.desk.loop.advance(std::chrono::milliseconds(16));
        }
    };
    scroll(2000, 20);
    CHECK(gallery.turns() == Names {});
    scroll(42, 10);
    auto const looking = gallery.turns();
    REQUIRE_FALSE(looking.empty());
    for (auto const& name : looking)
        CHECK(name.front() == '?');
    scroll(5, 10);
    CHECK(gallery.turns().size() >= grid.inView().count());
    CHECK(gallery.turns().front().front() != '?');
}

TEST_CASE("a gallery that stops tells the turns again without another scroll")
{
    Gallery gallery(10'000);
    auto& grid = *gallery.grid;
    for (double top = 0; top < 20'000; top += 2000)
        grid.showRows(top, 600);
    CHECK(gallery.turns() == Names {});
    auto const before = gallery.source.turnChanges;
    gallery.desk.loop.advance(std::chrono::milliseconds(100));
    CHECK(gallery.turns().size() == grid.kept().count());
    CHECK(gallery.source.turnChanges > before);
}

TEST_CASE("the next folder's photos have their turn at once, wherever the last one was scrolled to")
{
    Gallery gallery(10'000);
    auto& grid = *gallery.grid;
    grid.showRows(100'000, 600);
    gallery.desk.loop.advance(std::chrono::milliseconds(200));
    gallery.desk.open("/c", { "x.jpg", "y.jpg" });
    gallery.layOut(18 + 4 * 110);
    grid.showRows(0, 600);
    CHECK(gallery.turns() == Names { "x.jpg", "y.jpg" });
}

TEST_CASE("of a movement that ends by itself only the end counts")
{
    Gallery gallery(10'000);
    auto& grid = *gallery.grid;
    double const goal = 14 + 100 * rowStep;
    grid.showRows(14, 210, goal);
    CHECK(gallery.turns() == Names {});
    grid.showRows(goal - 100, 210, goal);
    CHECK(gallery.turns().size() >= 8);
    CHECK(gallery.turns().front() == "397.jpg");
    grid.showRows(goal, 210);
    CHECK(gallery.turns().front() == "401.jpg");
}

TEST_CASE("cells that scroll away cancel their loads, those that stay keep theirs")
{
    Gallery gallery;
    gallery.grid->showRows(0, 110);
    CHECK(gallery.source.wanted() == 8);
    gallery.grid->showRows(14 + rowStep, 100);
    CHECK(gallery.source.thumbnailsAsked().size() == 12);
    CHECK(gallery.source.wanted() == 12);
    gallery.grid->showRows(14 + 8 * rowStep, 100);
    CHECK(gallery.source.wanted() == 12);
    gallery.source.answer(0, pictureOf(10, 10));
    CHECK(gallery.changed.empty());
}

TEST_CASE("a cell follows its photo when the order changes")
{
    Gallery gallery(4);
    gallery.grid->showRows(0, 500);
    auto const image = pictureOf(10, 10);
    gallery.source.answerLook(0, {});
    gallery.source.answer(0, image);
    gallery.desk.model().setAscending(false);
    gallery.layOut(458);
    gallery.grid->showRows(0, 500);
    CHECK(gallery.source.requests.size() == 4);
    CHECK(gallery.grid->cell(3).image == image);
    CHECK_FALSE(gallery.grid->cell(0).image);
}

TEST_CASE("a cell says what the model knows of its photo")
{
    Gallery gallery;
    auto& model = gallery.desk.model();
    gallery.grid->displayScale = 2;
    gallery.grid->showRows(0, 110);
    model.toggle(1);
    model.openViewer(2);
    model.setShowResolution(false);
    auto const marked = gallery.grid->cell(1);
    CHECK(marked.item.name() == "2.jpg");
    CHECK(marked.size == 100);
    CHECK(marked.pixel == 256);
    CHECK(marked.isSelected);
    CHECK_FALSE(marked.isCursor);
    CHECK(marked.showName);
    CHECK_FALSE(marked.showResolution);
    auto const cursor = gallery.grid->cell(2);
    CHECK_FALSE(cursor.isSelected);
    CHECK(cursor.isCursor);
}

TEST_CASE("marking the first photo shows the circles of all cells, unmarking hides them")
{
    Gallery gallery;
    CHECK_FALSE(gallery.grid->cell(5).showsCircle());
    gallery.grid->cell(0).onToggle();
    CHECK(gallery.grid->cell(5).showsCircle());
    gallery.desk.model().selectNone();
    CHECK_FALSE(gallery.grid->cell(5).showsCircle());
}

TEST_CASE("pictures and metadata arrive in their cells and are reported")
{
    Gallery gallery;
    gallery.grid->showRows(0, 110);
    auto const small = pictureOf(3, 4);
    gallery.source.answerLook(1, { ImageMeta { PixelSize { 3, 4 }, false }, small });
    CHECK(gallery.grid->cell(1).resolutionText() == "3 × 4");
    CHECK(gallery.grid->cell(1).embedded == small);
    CHECK(gallery.grid->cell(1).drawn() == small);
    CHECK_FALSE(gallery.grid->cell(1).image);
    auto const image = pictureOf(10, 10);
    gallery.source.answer(1, image);
    CHECK(gallery.grid->cell(1).image == image);
    CHECK(gallery.grid->cell(1).drawn() == image);
    CHECK(gallery.changed == std::vector { FileUrl("/b/2.jpg"), FileUrl("/b/2.jpg") });
}

TEST_CASE("the grid tells what was read for the pictures in view and to look for them")
{
    Gallery gallery;
    gallery.grid->showRows(0, 110);
    CHECK(gallery.grid->bytesRead().pictures == 0);
    for (std::size_t const index : { 0U, 2U }) {
        CGImageBox box = *pictureOf(3, 2);
        box.bytesRead = 5000 + index;
        gallery.source.answer(index, std::make_shared<CGImageBox>(std::move(box)));
    }
    CHECK(gallery.grid->bytesRead().pictures == 10'002);
    CHECK(gallery.grid->bytesRead().looks == 0);
    gallery.source.answerLook(1, { std::nullopt, nullptr, 300 });
    CHECK(gallery.grid->bytesRead().pictures == 10'002);
    CHECK(gallery.grid->bytesRead().looks == 300);
}

TEST_CASE("the grid is complete when every photo in view has its picture or none")
{
    Gallery gallery;
    gallery.grid->showRows(0, 110);
    CHECK_FALSE(gallery.grid->isComplete());
    for (std::size_t i = 0; i < 4; ++i)
        gallery.source.answerLook(i, { std::nullopt, pictureOf(5, 5) });
    CHECK_FALSE(gallery.grid->isComplete());
    gallery.source.answer(0, pictureOf(10, 10));
    gallery.source.answer(1, nullptr);
    gallery.source.answer(2, pictureOf(10, 10));
    CHECK_FALSE(gallery.grid->isComplete());
    gallery.source.answer(3, pictureOf(10, 10));
    CHECK(gallery.grid->isComplete());
}

TEST_CASE("thumbnails on a finer screen are asked for anew, the old ones stay meanwhile")
{
    Gallery gallery;
    gallery.grid->showRows(0, 110);
    auto const image = pictureOf(10, 10);
    gallery.source.answerLook(0, {});
    gallery.source.answer(0, image);
    gallery.grid->displayScale = 2;
    gallery.grid->showRows(0, 110);
    CHECK(gallery.source.requests.back().maxPixel == 256);
    CHECK(gallery.grid->cell(0).image == image);
    CHECK_FALSE(gallery.grid->isComplete());
}

TEST_CASE("the cursor's cell is brought into view with the least scrolling")
{
    Gallery gallery;
    CHECK_FALSE(gallery.grid->scrollWish(0, 300).has_value());
    gallery.desk.model().openViewer(30);
    CHECK(gallery.grid->scrollWish(0, 300) == 14 + 7 * rowStep + 100 - 300);
    CHECK_FALSE(gallery.grid->scrollWish(0, 300).has_value());
}

TEST_CASE("Home and End show the first and the last photo again after scrolling away")
{
    Gallery gallery;
    auto const press = [&](int key) { CHECK(gallery.desk.press(key)); };
    press(keyCodes::home);
    CHECK(gallery.grid->scrollWish(0, 300) == 0);
    CHECK_FALSE(gallery.grid->scrollWish(500, 300).has_value());
    press(keyCodes::home);
    CHECK(gallery.grid->scrollWish(500, 300) == 14);
    press(keyCodes::end);
    auto const end = gallery.grid->scrollWish(14, 300);
    REQUIRE(end.has_value());
    press(keyCodes::end);
    CHECK(gallery.grid->scrollWish(14, 300) == end);
}

TEST_CASE("closing the viewer centres the cursor's cell even when it was in view")
{
    Gallery gallery;
    gallery.desk.model().openViewer(20);
    auto const top = gallery.grid->scrollWish(0, 300);
    REQUIRE(top.has_value());
    gallery.desk.model().closeViewer();
    CHECK(gallery.grid->scrollWish(*top, 300) == 14 + 5 * rowStep + 50 - 150);
}

TEST_CASE("a cursor that is gone scrolls nowhere")
{
    Gallery gallery;
    gallery.desk.model().openViewer(30);
    (void)gallery.grid->scrollWish(0, 300);
    gallery.desk.model().selectFolders({ FileUrl("/c") }, FocusGallery::no);
    gallery.layOut(458);
    CHECK_FALSE(gallery.grid->scrollWish(500, 300).has_value());
}

TEST_CASE("the cell under the pointer shows its circle, captions included")
{
    Gallery gallery;
    gallery.grid->layOut(458, { 14, 12 });
    auto const area = gallery.grid->layout().cell(5);
    gallery.grid->movePointer(Point { area.x + 50, area.bottom() - 1 });
    CHECK(gallery.grid->hovered() == 5U);
    CHECK(gallery.grid->cell(5).hovering);
    CHECK(gallery.grid->cell(5).showsCircle());
    CHECK_FALSE(gallery.grid->cell(6).showsCircle());
    gallery.grid->movePointer(Point { area.x - 5, area.y });
    CHECK_FALSE(gallery.grid->hovered().has_value());
    CHECK_FALSE(gallery.grid->cell(5).showsCircle());
    gallery.grid->movePointer(std::nullopt);
    CHECK_FALSE(gallery.grid->hovered().has_value());
}

TEST_CASE("a hit tells the cell and whether it is on the circle")
{
    Gallery gallery;
    auto const area = gallery.grid->layout().thumbnailArea(2);
    auto const at = [&](double x, double y) {
        Point const point { area.x + x, area.y + y };
        gallery.grid->movePointer(point);
        return gallery.grid->hit(point);
    };
    CHECK(at(18, 18) == GridView::Hit { 2, true });
    CHECK(at(2, 2) == GridView::Hit { 2, true });
    CHECK(at(33.9, 33.9) == GridView::Hit { 2, true });
    CHECK(at(34, 18) == GridView::Hit { 2, false });
    CHECK(at(1.9, 18) == GridView::Hit { 2, false });
    CHECK(at(70, 70) == GridView::Hit { 2, false });
    CHECK_FALSE(at(-5, 18).has_value());
}

TEST_CASE("a circle that is not shown is not hit")
{
    Gallery gallery;
    auto const area = gallery.grid->layout().thumbnailArea(2);
    Point const circle { area.x + 18, area.y + 18 };
    CHECK(gallery.grid->hit(circle) == GridView::Hit { 2, false });
    gallery.desk.model().toggle(7);
    CHECK(gallery.grid->hit(circle) == GridView::Hit { 2, true });
}

TEST_CASE("dragging a marked photo takes all visible marked ones along, another one goes alone")
{
    Gallery gallery;
    auto& model = gallery.desk.model();
    for (std::size_t const index : { 9U, 0U, 4U })
        model.toggle(index);
    auto const photo = [](int number) { return FileUrl("/b/" + std::to_string(number) + ".jpg"); };
    CHECK(gallery.grid->dragged(4) == std::vector { photo(1), photo(5), photo(10) });
    CHECK(gallery.grid->dragged(5) == std::vector { photo(6) });
    model.setSearchText("0");
    gallery.layOut(458);
    CHECK(gallery.grid->dragged(0) == std::vector { photo(10) });
    CHECK(gallery.grid->dragged(99).empty());
}

TEST_CASE("a list that is shorter than when it was laid out shows and hits nothing beyond its end")
{
    Gallery gallery;
    gallery.grid->showRows(0, 2000);
    auto const area = gallery.grid->layout().cell(39);
    CHECK(gallery.grid->isCurrent());
    gallery.desk.model().setSearchText("1.jpg");
    CHECK_FALSE(gallery.grid->isCurrent());
    CHECK(gallery.grid->cell(39).item.url.empty());
    CHECK_FALSE(gallery.grid->hit({ area.x + 50, area.y + 50 }).has_value());
    gallery.layOut(458);
    CHECK(gallery.grid->isCurrent());
}
