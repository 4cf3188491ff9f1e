#include "qt/window/Gallery.h"
#include "qt/window/GridWidget.h"
#include <QDrag>
#include <QHelpEvent>
#include <QMenu>
#include <QMimeData>
#include <QToolTip>
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

// A gallery on the screen, and a hand on the mouse.
struct Hand : Gallery {
    std::vector<QMimeData*> drags; ///< of drags that are over by now; owned by `over`
    std::vector<std::unique_ptr<QDrag>> over;
    std::vector<QSize> pixmaps;

    explicit Hand(int count = 40)
        : Gallery(count)
    {
        grid.show();
        grid.runDrag = [this](QDrag* drag) {
            drags.push_back(drag->mimeData());
            pixmaps.push_back(drag->pixmap().deviceIndependentSize().toSize());
            over.emplace_back(drag);
        };
        frame();
    }

    QPoint at(std::size_t index, double x, double y) const
    {
        auto const area = grid.view().layout().thumbnailArea(index);
        return QPointF(area.x + x, area.y + y - grid.top()).toPoint();
    }
    QPoint middle(std::size_t index) const { return at(index, 85, 85); }
    QPoint circle(std::size_t index) const { return at(index, 18, 18); }

    void click(QPoint place, Qt::KeyboardModifiers held = {})
    {
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, held, place);
        desk.settle();
    }
    void drag(QPoint from, QPoint to)
    {
        auto* const page = grid.viewport();
        QTest::mousePress(page, Qt::LeftButton, {}, from);
        move((from + to) / 2, Qt::LeftButton);
        move(to, Qt::LeftButton);
        QTest::mouseRelease(page, Qt::LeftButton, {}, to);
        desk.settle();
    }
    void move(QPoint to, Qt::MouseButtons held = {})
    {
        QMouseEvent event(QEvent::MouseMove, to, grid.viewport()->mapToGlobal(to), Qt::NoButton,
            held, Qt::NoModifier);
        QApplication::sendEvent(grid.viewport(), &event);
        desk.settle();
    }

    std::vector<std::string> marked()
    {
        std::vector<std::string> names;
        for (auto const& url : desk.model().actionTargets())
            names.emplace_back(url.name());
        return names;
    }

    QMenu* menu() { return grid.findChild<QMenu*>(); }
    void openMenu(QPoint place, QContextMenuEvent::Reason reason)
    {
        QContextMenuEvent event(reason, place, grid.viewport()->mapToGlobal(place));
        QApplication::sendEvent(grid.viewport(), &event);
    }
    QStringList titles()
    {
        QStringList all;
        for (auto const* action : menu()->actions())
            all += action->text().remove(QLatin1Char('&'));
        return all;
    }
};

} // namespace

TEST_CASE("a plain click opens the photo, the next one elsewhere opens that")
{
    Hand hand;
    auto const focused = hand.desk.window.focusCount;
    hand.click(hand.middle(3));
    CHECK(*hand.desk.model().viewerIndex == 3U);
    CHECK(*hand.desk.model().cursor == 3U);
    CHECK(hand.desk.model().selection->empty());
    CHECK(hand.desk.window.focusCount == focused + 1);
    hand.click(hand.middle(4));
    CHECK(*hand.desk.model().viewerIndex == 4U);
}

TEST_CASE("Ctrl-clicks mark, a Shift-click marks the range from there")
{
    Hand hand;
    hand.click(hand.middle(2), Qt::ControlModifier);
    CHECK(hand.marked() == Names { "IMG_3.jpg" });
    hand.click(hand.middle(5), Qt::ShiftModifier);
    CHECK(hand.marked() == Names { "IMG_3.jpg", "IMG_4.jpg", "IMG_5.jpg", "IMG_6.jpg" });
    hand.click(hand.middle(3), Qt::ControlModifier);
    CHECK(hand.marked() == Names { "IMG_3.jpg", "IMG_5.jpg", "IMG_6.jpg" });
    CHECK_FALSE(hand.desk.model().viewerIndex->has_value());
}

TEST_CASE("a click on a name opens its photo, one between cells does nothing")
{
    Hand hand;
    auto const line = hand.grid.view().layout().nameLine(1);
    hand.click(QPointF(line.x + 20, line.y + 3).toPoint());
    CHECK(*hand.desk.model().viewerIndex == 1U);
    hand.desk.model().closeViewer();
    hand.click(hand.at(1, -5, 20));
    CHECK_FALSE(hand.desk.model().viewerIndex->has_value());
}

TEST_CASE("the circle marks and unmarks and does not open")
{
    Hand hand;
    hand.move(hand.circle(2));
    hand.click(hand.circle(2));
    CHECK(hand.marked() == Names { "IMG_3.jpg" });
    hand.click(hand.circle(2));
    CHECK(hand.desk.model().selection->empty());
    CHECK_FALSE(hand.desk.model().viewerIndex->has_value());
    CHECK_FALSE(hand.desk.model().cursor->has_value());
}

TEST_CASE("the circle shows under the pointer, and on all cells once a photo is marked")
{
    Hand hand;
    auto const corner = [&](QImage const& image, std::size_t index) {
        auto const edge = static_cast<int>(std::lround(34 * hand.scale()));
        return image.copy(QRect(hand.area(index).topLeft(), QSize(edge, edge)));
    };
    auto const before = hand.frame();
    CHECK(corner(before, 0) == corner(before, 1));
    hand.move(hand.middle(1));
    auto const hovering = hand.frame();
    CHECK(corner(hovering, 0) == corner(before, 0));
    CHECK(corner(hovering, 1) != corner(before, 1));
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(hand.grid.viewport(), &leave);
    CHECK(corner(hand.frame(), 1) == corner(before, 1));
    hand.desk.model().toggle(7);
    CHECK(corner(hand.frame(), 0) == corner(hovering, 1));
}

TEST_CASE("cells that scroll under a pointer at rest show and lose their circles")
{
    Hand hand(1000);
    hand.move(hand.middle(1));
    CHECK(hand.grid.view().hovered() == 1U);
    auto const columns = static_cast<std::size_t>(hand.desk.model().columns());
    auto const& layout = hand.grid.view().layout();
    hand.grid.scrollTo(layout.cell(3 * columns).y - layout.cell(0).y);
    CHECK(hand.grid.view().hovered() == 3 * columns + 1);
}

TEST_CASE("a press that is let go elsewhere is no click")
{
    Hand hand;
    auto* const page = hand.grid.viewport();
    QTest::mousePress(page, Qt::LeftButton, {}, hand.middle(1));
    QTest::mouseRelease(page, Qt::LeftButton, {}, hand.middle(2));
    CHECK_FALSE(hand.desk.model().viewerIndex->has_value());
    hand.move(hand.circle(1));
    QTest::mousePress(page, Qt::LeftButton, {}, hand.circle(1));
    QTest::mouseRelease(page, Qt::LeftButton, {}, hand.middle(1));
    CHECK_FALSE(hand.desk.model().viewerIndex->has_value());
    CHECK(hand.desk.model().selection->empty());
}

TEST_CASE("a photo that went from under the button is not opened, nor the one that came there")
{
    Hand hand;
    QTest::mousePress(hand.grid.viewport(), Qt::LeftButton, {}, hand.middle(1));
    hand.desk.model().setAscending(false);
    hand.frame();
    QTest::mouseRelease(hand.grid.viewport(), Qt::LeftButton, {}, hand.middle(1));
    CHECK_FALSE(hand.desk.model().viewerIndex->has_value());
}

TEST_CASE("a photo that is dragged goes alone, with the data of the clipboard, and is not opened")
{
    Hand hand;
    hand.desk.model().toggle(7);
    hand.drag(hand.middle(2), hand.middle(3));
    REQUIRE(hand.drags.size() == 1);
    CHECK(hand.drags[0]->data(QStringLiteral("text/uri-list")) == "file:///Fotos/IMG_3.jpg\r\n");
    CHECK(hand.drags[0]->data(QStringLiteral("x-special/gnome-copied-files"))
        == "copy\nfile:///Fotos/IMG_3.jpg");
    CHECK_FALSE(hand.desk.model().viewerIndex->has_value());
    CHECK(hand.desk.model().selection->size() == 1);
}

TEST_CASE("a marked photo takes all marked ones along")
{
    Hand hand;
    hand.answerAll(plainPicture(300, 200, Qt::green));
    hand.frame();
    for (std::size_t const index : { 4U, 2U, 9U })
        hand.desk.model().toggle(index);
    hand.drag(hand.middle(2), hand.middle(3));
    REQUIRE(hand.drags.size() == 1);
    CHECK(hand.drags[0]->data(QStringLiteral("text/uri-list"))
        == "file:///Fotos/IMG_3.jpg\r\nfile:///Fotos/IMG_5.jpg\r\nfile:///Fotos/IMG_10.jpg\r\n");
    CHECK(hand.pixmaps[0].width() > 100);
    CHECK(hand.pixmaps[0].width() < 140);
}

TEST_CASE("a small movement of the hand is still a click")
{
    Hand hand;
    auto const place = hand.middle(2);
    QTest::mousePress(hand.grid.viewport(), Qt::LeftButton, {}, place);
    hand.move(place + QPoint(2, 2), Qt::LeftButton);
    QTest::mouseRelease(hand.grid.viewport(), Qt::LeftButton, {}, place + QPoint(2, 2));
    CHECK(hand.drags.empty());
    CHECK(*hand.desk.model().viewerIndex == 2U);
}

TEST_CASE("a drag from the circle drags nothing and marks nothing")
{
    Hand hand;
    hand.move(hand.circle(2));
    hand.drag(hand.circle(2), hand.middle(3));
    CHECK(hand.drags.empty());
    CHECK(hand.desk.model().selection->empty());
    CHECK_FALSE(hand.desk.model().viewerIndex->has_value());
}

TEST_CASE("other buttons do not click")
{
    Hand hand;
    QTest::mouseClick(hand.grid.viewport(), Qt::RightButton, {}, hand.middle(2));
    QTest::mouseClick(hand.grid.viewport(), Qt::MiddleButton, {}, hand.middle(2));
    CHECK_FALSE(hand.desk.model().viewerIndex->has_value());
}

TEST_CASE("the menu of a cell opens under the pointer and acts on the marked photos")
{
    Hand hand;
    for (std::size_t const index : { 4U, 2U, 9U })
        hand.desk.model().toggle(index);
    hand.openMenu(hand.middle(4), QContextMenuEvent::Mouse);
    REQUIRE(hand.menu());
    CHECK(hand.titles()
        == QStringList { QStringLiteral("Öffnen"), QStringLiteral("Auswahl entfernen"), QString(),
            QStringLiteral("3 Fotos in den Papierkorb"), QStringLiteral("Im Finder zeigen"),
            QStringLiteral("Mit Standard-App öffnen"), QStringLiteral("Teilen …") });
    hand.menu()->actions().at(4)->trigger();
    REQUIRE(hand.desk.workspace.revealed.size() == 1);
    CHECK(hand.desk.workspace.revealed.front().size() == 3);
    auto* const share = hand.menu()->actions().last()->menu();
    REQUIRE(share);
    emit share->aboutToShow();
    REQUIRE(share->actions().size() == 1);
    share->actions().first()->trigger();
    CHECK(hand.desk.clipboard.contents.size() == 3);
}

TEST_CASE("between the cells no menu opens")
{
    Hand hand;
    hand.openMenu(hand.at(4, -5, -5), QContextMenuEvent::Mouse);
    CHECK_FALSE(hand.menu());
}

TEST_CASE("the menu key opens the cursor's menu and brings its cell into view")
{
    Hand hand(1000);
    hand.openMenu({}, QContextMenuEvent::Keyboard);
    CHECK_FALSE(hand.menu());
    hand.desk.model().openViewer(500);
    hand.desk.model().closeViewer();
    hand.frame();
    hand.grid.scrollTo(0);
    hand.openMenu({}, QContextMenuEvent::Keyboard);
    REQUIRE(hand.menu());
    CHECK(hand.grid.view().inView().contains(500));
    hand.menu()->actions().at(1)->trigger();
    CHECK(hand.marked() == Names { "IMG_501.jpg" });
}

TEST_CASE("the circle tells what it does")
{
    Hand hand;
    auto const tipAt = [&](QPoint place) {
        hand.move(place);
        QHelpEvent help(QEvent::ToolTip, place, hand.grid.viewport()->mapToGlobal(place));
        QApplication::sendEvent(hand.grid.viewport(), &help);
        return QToolTip::text();
    };
    CHECK(tipAt(hand.circle(2)) == QStringLiteral("Auswählen (X)"));
    hand.desk.model().toggle(2);
    CHECK(tipAt(hand.circle(2)) == QStringLiteral("Auswahl entfernen (X)"));
    QToolTip::hideText();
}

TEST_CASE("the cursor's cell comes into view with the least scrolling")
{
    Hand hand(1000);
    auto& model = hand.desk.model();
    auto const height = hand.grid.viewport()->height();
    model.moveCursor(+1, Extend::no);
    for (int i = 0; i < 4; ++i)
        model.moveCursor(+model.columns(), Extend::no);
    hand.frame();
    auto const cell = hand.grid.view().layout().cell(*model.cursor.get());
    CHECK(hand.grid.top() == doctest::Approx(cell.bottom() - height).epsilon(0.002));
    model.moveCursor(-model.columns(), Extend::no);
    auto const before = hand.grid.top();
    hand.frame();
    CHECK(hand.grid.top() == before);
}

TEST_CASE("whatever comes between a change of the list and the news of it, nothing breaks")
{
    Hand hand(1000);
    auto& grid = hand.grid;
    auto const press = hand.middle(1);
    for (int step = 0; step < 6; ++step) {
        hand.desk.model().setSearchText("");
        hand.frame();
        grid.scrollTo(1e6);
        hand.frame();
        hand.desk.model().setSearchText("IMG_1.jpg");
        REQUIRE(hand.desk.model().items->size() == 1);
        if (step == 0)
            (void)grid.grab();
        else if (step == 1)
            QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, press);
        else if (step == 2)
            hand.openMenu(press, QContextMenuEvent::Mouse);
        else if (step == 3)
            grid.scrollTo(5000);
        else if (step == 4)
            hand.answerAll(plainPicture(64, 64, Qt::green));
        else
            grid.resize(700, 500);
    }
    hand.frame();
    CHECK(grid.view().isCurrent());
    CHECK(grid.top() == 0);
}
