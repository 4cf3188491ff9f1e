#include "qt/window/HiddenPointer.h"
#include "qt/window/Gallery.h"
#include "qt/window/MainWindowWidget.h"
#include <QApplication>
#include <QCursor>
#include <QEnterEvent>
#include <QMouseEvent>
#include <QWindow>
#include <doctest/doctest.h>
#include <memory>

using namespace pixelhain;

namespace {

bool isPointerHidden()
{
    auto const* const cursor = QGuiApplication::overrideCursor();
    return cursor && cursor->shape() == Qt::BlankCursor;
}

struct PointerDesk {
    QWindow window;
    HiddenPointer pointer;
    QPointF const start = QCursor::pos();

    PointerDesk() { pointer.hideUntilMoved(); }

    void move(QObject& receiver, QPointF place)
    {
        QMouseEvent event(
            QEvent::MouseMove, place, place, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&receiver, &event);
    }
    void move(QPointF place) { move(window, place); }
    void enter(QObject& receiver, QPointF place)
    {
        QEnterEvent event(place, place, place);
        QCoreApplication::sendEvent(&receiver, &event);
    }
};

} // namespace

TEST_CASE("the pointer is hidden until it is moved")
{
    PointerDesk desk;
    CHECK(isPointerHidden());
    desk.move(desk.start + QPointF(4, 0));
    CHECK_FALSE(isPointerHidden());
    CHECK_FALSE(desk.pointer.isHidden());
    desk.move(desk.start);
    CHECK_FALSE(isPointerHidden());
}

TEST_CASE("being told of the same place, or of a rounded one, is no movement")
{
    PointerDesk desk;
    desk.move(desk.start);
    desk.move(desk.start + QPointF(0.6, -0.6));
    CHECK(isPointerHidden());
    desk.move(desk.start + QPointF(0, 2));
    CHECK_FALSE(isPointerHidden());
}

TEST_CASE("a window that comes below the pointer is entered without a movement")
{
    PointerDesk desk;
    desk.enter(desk.window, { 300, 200 });
    desk.move({ 300, 200 });
    CHECK(isPointerHidden());
    desk.move({ 310, 200 });
    CHECK_FALSE(isPointerHidden());
}

TEST_CASE("widgets are told of the pointer when they change below it: that is no movement")
{
    PointerDesk desk;
    QWidget child;
    desk.enter(child, { 300, 200 });
    desk.move(child, { 300, 200 });
    CHECK(isPointerHidden());
    desk.move(desk.start);
    CHECK(isPointerHidden());
}

TEST_CASE("a slow movement point by point shows the pointer too")
{
    PointerDesk desk;
    for (int i = 1; i <= 2; ++i)
        desk.move(desk.start + QPointF(i, 0));
    CHECK_FALSE(isPointerHidden());
}

TEST_CASE("hiding a hidden pointer again leaves nothing behind")
{
    PointerDesk desk;
    desk.pointer.hideUntilMoved();
    desk.move(desk.start + QPointF(9, 9));
    CHECK(QGuiApplication::overrideCursor() == nullptr);
    desk.pointer.hideUntilMoved();
    CHECK(isPointerHidden());
}

TEST_CASE("whoever hid the pointer shows it again when it goes")
{
    auto pointer = std::make_unique<HiddenPointer>();
    pointer->hideUntilMoved();
    CHECK(isPointerHidden());
    pointer.reset();
    CHECK(QGuiApplication::overrideCursor() == nullptr);
}

TEST_CASE("a slideshow hides the pointer over the whole window and fills the screen")
{
    Desk desk;
    desk.open("/b", { "1.jpg", "2.jpg" });
    FakeThumbnails thumbnails;
    MainWindowWidget window(
        { desk.model(), thumbnails, desk.background, desk.loop }, desk.sidebarPorts());
    window.show();
    desk.settle();
    desk.model().setWindow(&window);
    CHECK_FALSE(isPointerHidden());
    desk.model().startSlideshow();
    CHECK(isPointerHidden());
    CHECK(window.MainWindowWidget::isFullScreen());
    desk.model().stopSlideshow();
    CHECK_FALSE(window.MainWindowWidget::isFullScreen());
}

// A real display tells of the pointer when the window below it changes.
TEST_CASE("a window that grows below a pointer at rest leaves it hidden, moving it does not")
{
    if (QGuiApplication::platformName() != QStringLiteral("xcb"))
        return;
    QCursor::setPos(600, 500);
    QWidget window;
    window.resize(400, 300);
    window.move(0, 0);
    window.show();
    REQUIRE(QTest::qWaitForWindowExposed(&window));
    HiddenPointer pointer;
    pointer.hideUntilMoved();
    window.resize(1200, 900);
    REQUIRE(eventually([&] { return window.underMouse(); }));
    CHECK(pointer.isHidden());
    QCursor::setPos(640, 500);
    CHECK(eventually([&] { return !pointer.isHidden(); }));
}
