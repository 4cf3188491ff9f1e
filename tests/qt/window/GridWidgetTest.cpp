#include "qt/window/GridWidget.h"
#include "images/DecodeRules.h"
#include "qt/window/DrawnPicture.h"
#include "qt/window/Gallery.h"
#include <QScrollBar>
#include <QTest>
#include <QWheelEvent>
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

int pictureEdge(Gallery const& gallery, double thumbSize)
{
    auto const pixel
        = [&](double points) { return static_cast<int>(std::lround(points * gallery.scale())); };
    return pixel(thumbSize) - 2 * pixel(5);
}

void turnWheel(GridWidget& grid, int angle, int pixels = 0)
{
    QPointF const at(100, 100);
    QWheelEvent event(at, grid.mapToGlobal(at), QPoint(0, pixels), QPoint(0, angle), Qt::NoButton,
        Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(grid.viewport(), &event);
}

} // namespace

TEST_CASE("only photos in view and one row ahead are asked for")
{
    Gallery gallery(1000);
    auto const& layout = gallery.grid.view().layout();
    auto const ready = layout.visible(0, gallery.grid.viewport()->height(), 1);
    CHECK(gallery.thumbnails.thumbnailsAsked().size() == ready.count());
    CHECK(ready.count() < 40);
    CHECK(gallery.thumbnails.thumbnailsAsked().front() == "IMG_1.jpg");
}

TEST_CASE("scrolling away drops the loads of what is left behind")
{
    Gallery gallery(1000);
    auto const before = gallery.thumbnails.requests.size();
    gallery.grid.scrollTo(20'000);
    gallery.frame();
    for (std::size_t i = 0; i < before; ++i)
        CHECK(*gallery.thumbnails.requests[i].dropped);
    CHECK(gallery.thumbnails.wanted() == gallery.thumbnails.requests.size() - before);
    CHECK(gallery.thumbnails.wanted() < 100);
}

TEST_CASE("the columns reach the model when the width or the thumbnail size changes")
{
    Gallery gallery(50);
    auto& model = gallery.desk.model();
    auto const width = [&] { return gallery.grid.viewport()->width(); };
    CHECK(model.columns() == columnCount(width(), 170));
    gallery.grid.resize(500, 600);
    gallery.frame();
    CHECK(model.columns() == columnCount(width(), 170));
    CHECK(model.columns() == 2);
    model.setThumbSize(80);
    gallery.frame();
    CHECK(model.columns() == columnCount(width(), 80));
}

TEST_CASE("a picture of the drawn size is painted pixel by pixel")
{
    Gallery gallery(200);
    auto const edge = pictureEdge(gallery, 170);
    auto const picture = speckledPicture(edge, edge);
    auto const expected = imageOf(picture->image);
    for (double const top : { 0.0, 33.0, 100.5, 1000.0 }) {
        gallery.grid.scrollTo(top);
        gallery.frame();
        gallery.answerAll(picture);
        auto const frame = gallery.frame();
        int compared = 0;
        auto const inView = gallery.grid.view().inView();
        for (auto index = inView.first; index < inView.last; ++index) {
            auto const area = gallery.area(index);
            auto const inset = (area.width() - edge) / 2;
            QRect const place(area.topLeft() + QPoint(inset, inset), expected.size());
            if (!frame.rect().contains(place))
                continue;
            CHECK(frame.copy(place) == expected);
            ++compared;
        }
        CHECK(compared >= 5);
    }
}

TEST_CASE("pictures are exact wherever the gallery stands in its window")
{
    Gallery gallery(20);
    auto const edge = pictureEdge(gallery, 170);
    auto const picture = speckledPicture(edge, edge);
    QWidget window;
    window.resize(1100, 700);
    for (auto const corner : { QPoint(1, 1), QPoint(3, 7), QPoint(2, 30) }) {
        gallery.grid.setParent(&window);
        gallery.grid.move(corner);
        gallery.grid.show();
        gallery.desk.settle();
        gallery.answerAll(picture);
        gallery.desk.settle();
        auto const frame = window.grab().toImage().convertToFormat(QImage::Format_RGB32);
        auto const pixel
            = [&](int points) { return static_cast<int>(std::lround(points * gallery.scale())); };
        auto const area = gallery.area(0).translated(pixel(corner.x()), pixel(corner.y()));
        auto const inset = (area.width() - edge) / 2;
        QRect const place(area.topLeft() + QPoint(inset, inset), QSize(edge, edge));
        CHECK(frame.copy(place) == imageOf(picture->image));
    }
    gallery.grid.setParent(nullptr);
}

TEST_CASE("a picture of another size is made anew off the main thread and fills its square")
{
    Gallery gallery(3);
    gallery.answerAll(plainPicture(256, 128, Qt::red));
    CHECK(gallery.desk.background.pending() == 3);
    CHECK_FALSE(gallery.grid.isComplete());
    auto const frame = gallery.frame();
    CHECK(gallery.completes());
    auto const edge = pictureEdge(gallery, 170);
    auto const area = gallery.area(1);
    auto const half = drawnSize({ 256, 128 }, edge).height / 2;
    auto const centre = area.center();
    auto const red = QColor(Qt::red).rgb();
    CHECK(frame.pixel(centre) == red);
    CHECK(frame.pixel(area.left() + (area.width() - edge) / 2, centre.y()) == red);
    CHECK(frame.pixel(centre.x(), centre.y() + half - 1) == red);
    CHECK(frame.pixel(centre.x(), centre.y() + half + 2) != red);
}

TEST_CASE("a photo without a picture shows its placeholder and the others go on")
{
    Gallery gallery(2);
    auto const before = gallery.frame();
    auto const& requests = gallery.thumbnails.requests;
    for (std::size_t i = 0; i < requests.size(); ++i)
        if (requests[i].maxPixel > 0)
            gallery.thumbnails.answer(i,
                requests[i].url.name() == "IMG_1.jpg" ? nullptr : plainPicture(64, 64, Qt::green));
    auto const after = gallery.frame();
    CHECK(gallery.completes());
    CHECK(after.copy(gallery.area(0)) != before.copy(gallery.area(0)));
    CHECK(after.pixel(gallery.area(1).center()) == QColor(Qt::green).rgb());
    // The placeholder is a symbol in the middle, not a picture that fills the square.
    auto const corner = gallery.area(0).topLeft() + QPoint(20, 20);
    CHECK(after.pixel(corner) == before.pixel(corner));
}

TEST_CASE(
    "the small picture of a file stands softly in the place of its thumbnail until that is there")
{
    Gallery gallery(3);
    ImageMeta const meta { PixelSize { 6000, 4000 }, false };
    auto const look = [&](ImageRef const& small) {
        for (std::size_t i = 0; i < gallery.thumbnails.requests.size(); ++i)
            gallery.thumbnails.answerLook(i, { meta, small });
    };
    look(plainPicture(160, 107, Qt::red));
    gallery.frame();
    auto const early = gallery.frame();
    CHECK(gallery.grid.isFilled());
    CHECK_FALSE(gallery.grid.isComplete());
    CHECK_FALSE(gallery.grid.hasShownPicture());
    auto const size = redrawnSize(*meta.size, gallery.grid.view().cell(0).pixel);
    gallery.answerAll(plainPicture(size.width, size.height, Qt::blue));
    // Until it is made, the small one stays: there is no frame without a picture.
    auto const between = gallery.grid.grab().toImage().convertToFormat(QImage::Format_RGB32);
    CHECK(between.pixel(gallery.area(0).center()) == QColor(Qt::red).rgb());
    REQUIRE(gallery.completes());
    auto const late = gallery.frame();
    CHECK(gallery.grid.hasShownPicture());
    // To the pixel in the same place.
    auto const area = gallery.area(0);
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x) {
            bool const wasThere = early.pixel(x, y) == QColor(Qt::red).rgb();
            bool const isThere = late.pixel(x, y) == QColor(Qt::blue).rgb();
            REQUIRE(wasThere == isThere);
        }
}

TEST_CASE("a file that has a small picture and no other shows its placeholder in the end")
{
    Gallery gallery(1);
    gallery.thumbnails.answerLook(0, { std::nullopt, plainPicture(160, 107, Qt::red) });
    gallery.frame();
    gallery.thumbnails.answer(0, nullptr);
    REQUIRE(gallery.completes());
    auto const frame = gallery.frame();
    CHECK(frame.pixel(gallery.area(0).center() + QPoint(30, 30)) != QColor(Qt::red).rgb());
}

TEST_CASE("small pictures that went out of view are not kept")
{
    Gallery gallery(1000);
    std::weak_ptr<CGImageBox const> small;
    {
        auto const picture = plainPicture(160, 107, Qt::red);
        small = picture;
        for (std::size_t i = 0; i < gallery.thumbnails.requests.size(); ++i)
            gallery.thumbnails.answerLook(i, { std::nullopt, picture });
    }
    gallery.frame();
    CHECK_FALSE(small.expired());
    gallery.grid.scrollTo(20'000);
    gallery.frame();
    CHECK(small.expired());
    gallery.grid.scrollTo(0);
    CHECK(gallery.frame().pixel(gallery.area(0).center()) != QColor(Qt::red).rgb());
}

TEST_CASE("a gallery that is stopped on its way begins all that it shows")
{
    Gallery gallery(1000);
    QTest::keyClick(&gallery.grid, Qt::Key_PageDown);
    QTest::keyClick(&gallery.grid, Qt::Key_PageDown);
    REQUIRE(eventually([&] { return gallery.grid.top() > 0; }));
    gallery.grid.scrollTo(gallery.grid.top());
    gallery.desk.loop.advance(std::chrono::milliseconds(200));
    for (auto const& request : gallery.thumbnails.requests)
        if (!*request.dropped)
            CHECK(request.turn.place().wish != Turn::Wish::nothing);
}

TEST_CASE("photos that are still there after a rescan keep their pictures")
{
    Gallery gallery(6);
    gallery.answerAll(plainPicture(64, 64, Qt::blue));
    gallery.frame();
    auto const asked = gallery.thumbnails.requests.size();
    gallery.desk.files.addFile(FileUrl("/Fotos/IMG_0.jpg"));
    gallery.desk.model().reload();
    auto const frame = gallery.frame();
    REQUIRE(gallery.desk.model().items->size() == 7);
    for (std::size_t index = 1; index < 7; ++index)
        CHECK(frame.pixel(gallery.area(index).center()) == QColor(Qt::blue).rgb());
    CHECK(gallery.thumbnails.requests.size() == asked + 1);
}

TEST_CASE("another thumbnail size keeps the old picture until the better one is there")
{
    Gallery gallery(3);
    gallery.answerAll(plainPicture(256, 256, Qt::blue));
    gallery.frame();
    gallery.desk.model().setThumbSize(380);
    auto const frame = gallery.frame();
    CHECK(frame.pixel(gallery.area(0).center()) == QColor(Qt::blue).rgb());
    CHECK_FALSE(gallery.grid.isComplete());
    gallery.answerAll(plainPicture(512, 512, Qt::green));
    CHECK(gallery.frame().pixel(gallery.area(0).center()) == QColor(Qt::green).rgb());
    CHECK(gallery.completes());
}

TEST_CASE("scrolling back shows a picture that memory still has in the first frame")
{
    Gallery gallery(1000);
    auto const picture = plainPicture(256, 256, Qt::blue);
    gallery.answerAll(picture);
    gallery.frame();
    auto const pixel = thumbnailPixelSize(170, gallery.scale());
    gallery.grid.scrollTo(20'000);
    gallery.frame();
    gallery.thumbnails.pictures[{ FileUrl("/Fotos/IMG_1.jpg"), pixel }] = picture;
    gallery.grid.scrollTo(0);
    auto const frame = gallery.grid.grab().toImage();
    CHECK(frame.pixel(gallery.area(0).center()) == QColor(Qt::blue).rgb());
}

TEST_CASE("a new folder starts at its top, the same one stays where it is")
{
    Gallery gallery(1000);
    gallery.grid.scrollTo(5000);
    gallery.desk.model().reload();
    gallery.frame();
    CHECK(gallery.grid.top() == doctest::Approx(5000).epsilon(0.001));
    gallery.desk.open("/Andere", Gallery::names(500));
    gallery.frame();
    CHECK(gallery.grid.top() == 0);
}

TEST_CASE("the photo at the top stays there when the columns change")
{
    Gallery gallery(1000);
    gallery.grid.scrollTo(8000);
    gallery.frame();
    auto const first = gallery.grid.view().inView().first;
    gallery.grid.resize(600, 600);
    gallery.frame();
    auto const inView = gallery.grid.view().inView();
    CHECK(inView.contains(first));
    CHECK(first - inView.first < static_cast<std::size_t>(gallery.desk.model().columns()));
}

TEST_CASE("a window made narrow step by step and wide again shows what it showed")
{
    Gallery gallery(1000);
    REQUIRE(gallery.desk.model().columns() == 5);
    gallery.grid.scrollTo(gallery.grid.view().layout().cell(187).y + 20);
    auto const before = gallery.grid.top();
    auto const first = gallery.grid.view().inView().first;
    REQUIRE(first == 185);
    for (auto const width : { 900, 750, 600, 420, 300, 420, 600, 750, 900 }) {
        gallery.grid.resize(width, 600);
        gallery.frame();
        CHECK(gallery.grid.view().inView().contains(first));
    }
    gallery.grid.resize(Gallery::width, 600);
    gallery.frame();
    CHECK(gallery.grid.top() == doctest::Approx(before));
}

TEST_CASE("a search is shown from its first photo on, and its end is back where it began")
{
    Gallery gallery(1000);
    auto& model = gallery.desk.model();
    gallery.grid.scrollTo(8000);
    gallery.frame();
    auto const first = gallery.grid.view().inView().first;
    for (auto const* text : { "IMG_1", "IMG_12" }) {
        model.setSearchText(text);
        gallery.frame();
        CHECK(gallery.grid.top() == 0);
        gallery.grid.scrollTo(300);
        gallery.frame();
    }
    SUBCASE("with the same columns")
    {
        model.setSearchText("");
        gallery.frame();
        CHECK(gallery.grid.top() == doctest::Approx(8000).epsilon(0.001));
    }
    SUBCASE("with others")
    {
        gallery.grid.resize(600, 600);
        gallery.frame();
        model.setSearchText(" ");
        gallery.frame();
        CHECK(gallery.grid.view().inView().contains(first));
    }
}

TEST_CASE("a search of another folder is not where the last one ended")
{
    Gallery gallery(1000);
    gallery.grid.scrollTo(8000);
    gallery.desk.model().setSearchText("IMG_1");
    gallery.frame();
    gallery.desk.open("/Andere", Gallery::names(500));
    gallery.frame();
    CHECK(gallery.grid.top() == 0);
}

TEST_CASE("the photo at the top is another one after each scroll")
{
    Gallery gallery(1000);
    gallery.grid.scrollTo(8000);
    gallery.frame();
    gallery.grid.scrollTo(15000);
    auto const first = gallery.grid.view().inView().first;
    gallery.grid.resize(600, 600);
    gallery.frame();
    CHECK(gallery.grid.view().inView().contains(first));
}

TEST_CASE("the last of very many photos can be reached with the scroll bar")
{
    Gallery gallery(100'000);
    gallery.grid.resize(300, 500);
    gallery.desk.model().setThumbSize(400);
    gallery.frame();
    auto* bar = gallery.grid.verticalScrollBar();
    CHECK(bar->maximum() > 0);
    bar->setValue(bar->maximum());
    gallery.frame();
    CHECK(gallery.grid.view().inView().last == 100'000);
    bar->setValue(0);
    CHECK(gallery.grid.top() == 0);
}

TEST_CASE("a wheel notch glides, a touchpad moves at once")
{
    Gallery gallery(1000);
    turnWheel(gallery.grid, -15, -40);
    CHECK(gallery.grid.top() == doctest::Approx(40).epsilon(0.02));
    gallery.grid.scrollTo(0);
    turnWheel(gallery.grid, -120);
    CHECK(gallery.grid.top() == 0);
    turnWheel(gallery.grid, -120);
    auto const goal = 2.0 * QApplication::wheelScrollLines() * 40;
    CHECK(eventually([&] { return std::abs(gallery.grid.top() - goal) < 1; }));
}

TEST_CASE("the page keys turn pages, Home and End go to the ends")
{
    Gallery gallery(1000);
    auto const height = gallery.grid.viewport()->height();
    QTest::keyClick(&gallery.grid, Qt::Key_PageDown);
    CHECK(eventually([&] { return gallery.grid.top() > height * 0.9; }));
    CHECK(gallery.grid.top() < height);
    QTest::keyClick(&gallery.grid, Qt::Key_End);
    gallery.frame();
    CHECK(gallery.grid.view().inView().last == 1000);
    QTest::keyClick(&gallery.grid, Qt::Key_Home);
    CHECK(gallery.grid.top() == 0);
}

TEST_CASE("the page keys take the cursor along, and mark with Shift")
{
    Gallery gallery(1000);
    auto& model = gallery.desk.model();
    model.moveCursor(+1, Extend::no);
    gallery.frame();
    QTest::keyClick(&gallery.grid, Qt::Key_PageDown);
    gallery.frame();
    auto const cursor = model.cursor->value_or(0);
    auto const columns = static_cast<std::size_t>(model.columns());
    CHECK(cursor >= 2 * columns);
    CHECK(cursor % columns == 0);
    auto const goal
        = static_cast<double>(cursor / columns) * gallery.grid.view().layout().rowStep();
    CHECK(eventually([&] { return std::abs(gallery.grid.top() - goal) < 1; }));
    QTest::keyClick(&gallery.grid, Qt::Key_PageDown, Qt::ShiftModifier);
    gallery.frame();
    CHECK(model.selection->size() == cursor + 1);
    QTest::keyClick(&gallery.grid, Qt::Key_PageUp);
    QTest::keyClick(&gallery.grid, Qt::Key_PageUp);
    gallery.frame();
    CHECK(*model.cursor == 0U);
}

TEST_CASE("after the viewer closes, the cursor's photo stands in the middle")
{
    Gallery gallery(1000);
    gallery.desk.model().openViewer(500);
    gallery.frame();
    gallery.desk.model().closeViewer();
    gallery.frame();
    auto const cell = gallery.grid.view().layout().cell(500);
    auto const middle = cell.y + cell.height / 2 - gallery.grid.top();
    CHECK(middle == doctest::Approx(gallery.grid.viewport()->height() / 2.0).epsilon(0.01));
}

TEST_CASE("the captions of a whole new page are there after a few frames")
{
    Gallery gallery(1000);
    gallery.answerAll(plainPicture(64, 64, Qt::blue));
    CHECK(gallery.completes());
}

TEST_CASE("captions that still wait for a new size stay within their cells")
{
    Gallery gallery(1000);
    gallery.desk.model().setThumbSize(200);
    REQUIRE(eventually([&] {
        gallery.answerAll(plainPicture(64, 64, Qt::blue));
        gallery.frame();
        return gallery.grid.isComplete();
    }));
    gallery.desk.model().setThumbSize(80);
    auto const frame = gallery.frame();
    auto const first = gallery.area(0);
    auto const second = gallery.area(1);
    REQUIRE(second.top() == first.top());
    auto const ground = frame.pixel(0, 0);
    for (int y = 0; y < frame.height(); ++y)
        for (int x = first.right() + 1; x < second.left(); ++x)
            REQUIRE(frame.pixel(x, y) == ground);
}

TEST_CASE("a picture for the row ahead leaves what is in view complete")
{
    Gallery gallery(1000);
    auto const& requests = gallery.thumbnails.requests;
    auto const picture = plainPicture(64, 64, Qt::blue);
    auto const inView = gallery.grid.view().inView().last;
    auto const asked = requests.size();
    std::vector<std::size_t> ahead;
    for (std::size_t i = 0, index = 0; i < asked; ++i)
        if (requests[i].maxPixel > 0) {
            if (index++ < inView)
                gallery.thumbnails.answer(i, picture);
            else
                ahead.push_back(i);
        }
    REQUIRE_FALSE(ahead.empty());
    REQUIRE(gallery.completes());
    for (auto const request : ahead)
        gallery.thumbnails.answer(request, picture);
    gallery.desk.settle();
    CHECK(gallery.grid.isComplete());
    CHECK(gallery.grid.isIdle());
}
