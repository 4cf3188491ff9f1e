#include "Help.h"
#include "qt/window/Gallery.h"
#include "qt/window/MainWindowWidget.h"

using namespace pixelhain;

TEST_CASE("copied steps, bullets and keys read as people write them")
{
    Help help;
    help.window.list().setCurrentRow(3);
    CHECK(help.copied(QStringLiteral("⌘-Klick"), QStringLiteral("bis zu diesem auswählen"))
        == QStringLiteral("⌘-Klick\tEinzelnes Foto aus- oder abwählen\n"
                          "⇧-Klick\tAlle Fotos bis zu diesem auswählen"));
    auto const steps = help.copied(QStringLiteral("Worauf wirken"), QStringLiteral("der Serie."));
    CHECK(steps
        == QStringLiteral("Worauf wirken Aktionen?\n\n"
                          "• In der Vollansicht: auf das gerade angezeigte Foto.\n"
                          "• In der Galerie: auf alle ausgewählten Fotos. Ist nichts ausgewählt, "
                          "auf das umrandete Foto.\n\n"
                          "Schnell aussortieren\n\n"
                          "1. Klicke auf das erste Foto der Serie."));
    CHECK(help.copied(QStringLiteral("das erste Foto"), QStringLiteral("drückst du X"))
        == QStringLiteral("das erste Foto der Serie.\n"
                          "2. Bei jedem Foto, das weg soll, drückst du X"));
}

TEST_CASE("a topic can be copied whole with the keyboard")
{
    Help help;
    help.window.list().setCurrentRow(7);
    help.press(Qt::Key_Return);
    CHECK(help.topic.hasFocus());
    help.press(Qt::Key_A, Qt::ControlModifier);
    help.press(Qt::Key_C, Qt::ControlModifier);
    auto const text = QGuiApplication::clipboard()->text();
    CHECK(text.startsWith(QStringLiteral("Teilen\n\nMit dem Teilen-Knopf")));
    CHECK(text.endsWith(QStringLiteral("bietet Teilen … an.")));
}

TEST_CASE("from the search field the keyboard goes into the list and back")
{
    Help help;
    CHECK(help.window.field().hasFocus());
    help.press(Qt::Key_Down);
    CHECK(help.window.list().hasFocus());
    CHECK(help.shown() == "start");
    help.press(Qt::Key_Down);
    help.press(Qt::Key_Down);
    CHECK(help.shown() == "viewer");
    help.press(Qt::Key_F, Qt::ControlModifier);
    CHECK(help.window.field().hasFocus());
    help.press(Qt::Key_Down);
    help.press(Qt::Key_Home);
    CHECK(help.shown() == "start");
    help.press(Qt::Key_Up);
    CHECK(help.window.field().hasFocus());
}

TEST_CASE("Tab goes through field, list and topic")
{
    Help help;
    help.press(Qt::Key_Tab);
    CHECK(help.window.list().hasFocus());
    help.press(Qt::Key_Tab);
    CHECK(help.topic.hasFocus());
    help.press(Qt::Key_Backtab, Qt::ShiftModifier);
    CHECK(help.window.list().hasFocus());
}

TEST_CASE("page keys scroll the topic wherever the keyboard is")
{
    Help help;
    help.window.resize(860, 400);
    help.window.list().setCurrentRow(1);
    help.window.field().setFocus();
    help.press(Qt::Key_PageDown);
    auto const page = help.scrolled();
    CHECK(page > 200);
    CHECK(page < 400);
    help.press(Qt::Key_PageUp);
    CHECK(help.scrolled() == 0);
    help.press(Qt::Key_Down);
    help.press(Qt::Key_PageDown);
    CHECK(help.scrolled() == page);
    CHECK(help.shown() == "gallery");
    help.press(Qt::Key_Return);
    help.press(Qt::Key_Space);
    CHECK(help.scrolled() > page);
    help.press(Qt::Key_End);
    CHECK(help.scrolled() == help.topic.verticalScrollBar()->maximum());
    help.press(Qt::Key_Up);
    CHECK(help.scrolled() < help.topic.verticalScrollBar()->maximum());
    help.press(Qt::Key_Home);
    CHECK(help.scrolled() == 0);
    help.press(Qt::Key_Down);
    CHECK(help.scrolled() > 0);
}

TEST_CASE("with Shift the keyboard selects what is in sight")
{
    Help help;
    help.window.resize(860, 400);
    help.window.list().setCurrentRow(9);
    help.press(Qt::Key_Return);
    help.press(Qt::Key_End);
    auto const before = help.scrolled();
    help.press(Qt::Key_Down, Qt::ShiftModifier);
    CHECK(help.topic.textCursor().hasSelection());
    CHECK(help.scrolled() == before);
}

TEST_CASE("Escape and Ctrl+W close help from everywhere, and it opens as if new")
{
    Help help;
    auto const reopen = [&] {
        CHECK_FALSE(help.window.isVisible());
        help.window.bringForward();
        REQUIRE(QTest::qWaitForWindowActive(&help.window));
        CHECK(help.window.field().text().isEmpty());
        CHECK(help.listed().size() == 10);
        CHECK(help.shown() == "start");
        CHECK(help.topic.document()->firstBlock().text() == QStringLiteral("Erste Schritte"));
        CHECK(help.scrolled() == 0);
        CHECK(help.window.field().hasFocus());
    };
    help.type("AirDrop");
    help.press(Qt::Key_Escape);
    CHECK(help.window.isVisible()); // it only takes the search back
    CHECK(help.window.field().text().isEmpty());
    CHECK(help.listed().size() == 10);
    help.press(Qt::Key_Escape);
    reopen();
    help.press(Qt::Key_Down);
    help.window.list().setCurrentRow(9);
    help.press(Qt::Key_W, Qt::ControlModifier);
    reopen();
    help.type("gibt es nicht");
    help.press(Qt::Key_Return);
    help.press(Qt::Key_Escape);
    help.press(Qt::Key_Escape);
    reopen();
}

TEST_CASE("the menu of help opens it with F1 and with Ctrl and a question mark")
{
    Desk desk;
    FakeThumbnails thumbnails;
    MainWindowWidget window { { desk.model(), thumbnails, desk.background, desk.loop },
        desk.sidebarPorts() };
    int opened = 0;
    window.openHelp = [&] { ++opened; };
    window.show();
    window.activateWindow();
    REQUIRE(QTest::qWaitForWindowActive(&window));
    desk.settle();
    desk.open("/Fotos", Gallery::names(3));
    QTest::keyClick(window.focusWidget(), Qt::Key_F1);
    CHECK(opened == 1);
    QTest::keyClick(window.focusWidget(), Qt::Key_Question, Qt::ControlModifier);
    CHECK(opened == 2);
}
