#include "qt/viewer/ChromeButton.h"
#include "qt/viewer/ViewerDesk.h"
#include "qt/window/Gallery.h"
#include "qt/window/MainWindowWidget.h"
#include "support/FakeThumbnails.h"
#include <QMenuBar>
#include <doctest/doctest.h>

using namespace pixelhain;
using Action = ViewerChrome::Action;

namespace {

// The whole window with its viewer, and two hands on the keyboard.
struct Keyboard {
    Desk desk;
    FakeThumbnails thumbnails;
    FakeViewerSource source;
    FakeSharing sharing;
    PreparedPictures prepared;
    ShareMenu share { desk.model(), sharing, desk.clipboard };
    MainWindowWidget window { { desk.model(), thumbnails, desk.background, desk.loop, nullptr },
        desk.sidebarPorts() };

    Keyboard()
    {
        window.content().addViewer({ desk.model(), source, desk.background, desk.loop, prepared,
            [](PhotoItem const&) { return std::vector<std::string>(); }, &share });
        window.show();
        window.activateWindow();
        REQUIRE(QTest::qWaitForWindowActive(&window)); // no shortcut works without
        desk.settle();
        desk.open("/Fotos", Gallery::names(20));
        for (auto const& item : *desk.model().items)
            source.pictures[item.url] = plainPicture(90, 50, Qt::red);
        window.content().grid().setFocus();
    }

    ViewerWidget& viewer() { return *window.content().viewer(); }
    std::optional<std::size_t> shown() { return desk.model().viewerIndex; }

    void type(Qt::Key key, Qt::KeyboardModifiers held = {})
    {
        QTest::keyClick(window.focusWidget() ? window.focusWidget() : &window, key, held);
        desk.settle();
    }
};

} // namespace

TEST_CASE("Return opens the photo over the whole window, Escape gives the gallery back its keys")
{
    Keyboard keys;
    keys.type(Qt::Key_Right);
    keys.type(Qt::Key_Return);
    CHECK(keys.shown() == 0U);
    CHECK(keys.viewer().isVisible());
    CHECK(keys.viewer().geometry() == keys.window.content().rect());
    CHECK(keys.window.focusWidget() == &keys.viewer().picture());
    keys.type(Qt::Key_Right);
    CHECK(keys.shown() == 1U);
    keys.type(Qt::Key_X);
    CHECK(keys.desk.marked() == Names { "IMG_2.jpg" });
    CHECK(keys.shown() == 2U);
    keys.type(Qt::Key_I);
    CHECK(keys.desk.model().showInfo);
    keys.type(Qt::Key_Plus, Qt::ControlModifier);
    CHECK(keys.viewer().container().image()->scale() == doctest::Approx(1.25));
    CHECK(keys.desk.model().thumbSize == 170);
    keys.type(Qt::Key_Escape);
    CHECK_FALSE(keys.shown());
    CHECK(keys.window.focusWidget() == &keys.window.content().grid());
    CHECK(eventually([&] { return !keys.viewer().isVisible(); }));
    keys.type(Qt::Key_Right);
    CHECK(*keys.desk.model().cursor == 3U);
}

TEST_CASE("the page keys turn photos as they turn the gallery's pages")
{
    Keyboard keys;
    keys.type(Qt::Key_Return);
    keys.type(Qt::Key_PageDown);
    keys.type(Qt::Key_PageDown);
    CHECK(keys.shown() == 2U);
    keys.type(Qt::Key_PageUp);
    CHECK(keys.shown() == 1U);
}

TEST_CASE("the space key closes the viewer, unless somebody went to a button with Tab")
{
    Keyboard keys;
    keys.type(Qt::Key_Return);
    keys.type(Qt::Key_Tab);
    keys.type(Qt::Key_Tab);
    CHECK(keys.window.focusWidget() == keys.viewer().chrome().button(Action::select));
    QTest::keyClick(keys.window.focusWidget(), Qt::Key_Space);
    keys.desk.settle();
    CHECK(keys.desk.marked() == Names { "IMG_1.jpg" });
    CHECK(keys.shown() == 1U);
    keys.type(Qt::Key_Right); // the other keys go on as ever
    CHECK(keys.shown() == 2U);
    keys.viewer().picture().setFocus();
    keys.type(Qt::Key_Space);
    CHECK_FALSE(keys.shown());
}

TEST_CASE("a photo on the full screen has no menu bar above it")
{
    Keyboard keys;
    keys.window.toggleFullScreen();
    CHECK(eventually([&] { return keys.window.isFullScreen(); }));
    CHECK(keys.window.menuBar()->height() > 0);
    keys.type(Qt::Key_Return);
    CHECK(eventually([&] { return keys.window.menuBar()->height() == 0; }));
    keys.type(Qt::Key_Delete); // a key of the menu still
    CHECK(keys.desk.model().items->size() == 19);
    keys.type(Qt::Key_Escape);
    CHECK(eventually([&] { return keys.window.menuBar()->height() > 0; }));
}

TEST_CASE("the window is complete once the photo is")
{
    Keyboard keys;
    auto const last = keys.desk.model().items->back().url;
    keys.source.pictures.erase(last);
    keys.desk.model().openViewer(19);
    keys.desk.settle();
    CHECK(eventually([&] { return !keys.viewer().graphicsEffect(); }));
    CHECK_FALSE(keys.window.isComplete());
    keys.source.answer(FakeViewerSource::Kind::display, plainPicture(90, 50, Qt::red));
    CHECK(eventually([&] {
        keys.desk.settle();
        return keys.window.isComplete();
    }));
}
