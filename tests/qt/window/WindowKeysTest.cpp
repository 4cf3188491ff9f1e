#include "qt/sidebar/FolderTreeWidget.h"
#include "qt/sidebar/SidebarWidget.h"
#include "qt/window/Gallery.h"
#include "qt/window/MainWindowWidget.h"
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

// The main window over photos in memory, and two hands on the keyboard.
struct Keyboard {
    Desk desk;
    FakeThumbnails thumbnails;
    FakeSharing sharing;
    ThumbnailMenu menu { { desk.model(), desk.workspace, sharing, desk.clipboard } };
    MainWindowWidget window { { desk.model(), thumbnails, desk.background, desk.loop, &menu },
        desk.sidebarPorts() };

    explicit Keyboard(int count = 20)
    {
        window.show();
        window.activateWindow();
        REQUIRE(QTest::qWaitForWindowActive(&window)); // no shortcut works without
        desk.settle();
        desk.open("/Fotos", Gallery::names(count));
        window.content().grid().setFocus();
    }

    // As the display server sends it: menus first, then the control that has the focus.
    void type(Qt::Key key, Qt::KeyboardModifiers held = {})
    {
        QTest::keyClick(window.focusWidget() ? window.focusWidget() : &window, key, held);
        desk.settle();
    }

    bool hasText(QString const& text) const
    {
        for (auto const* label : window.findChildren<QLabel*>())
            if (label->isVisible() && label->text() == text)
                return true;
        return false;
    }
};

} // namespace

TEST_CASE("the arrows move the cursor, X marks, Return opens and Escape closes")
{
    Keyboard keys;
    auto& model = keys.desk.model();
    keys.type(Qt::Key_Right);
    CHECK(*model.cursor == 0U);
    keys.type(Qt::Key_Down);
    CHECK(*model.cursor == static_cast<std::size_t>(model.columns()));
    keys.type(Qt::Key_Right, Qt::ShiftModifier);
    CHECK(model.selection->size() == 2);
    keys.type(Qt::Key_X, Qt::ShiftModifier);
    CHECK(model.selection->size() == 1);
    keys.type(Qt::Key_Return);
    CHECK(model.viewerIndex->has_value());
    keys.type(Qt::Key_Escape);
    CHECK_FALSE(model.viewerIndex->has_value());
    CHECK(keys.hasText(QStringLiteral("20 Fotos · 1 ausgewählt")));
    keys.type(Qt::Key_Escape);
    CHECK(model.selection->empty());
}

TEST_CASE("Ctrl+A marks all, with Shift it unmarks all")
{
    Keyboard keys;
    keys.type(Qt::Key_A, Qt::ControlModifier);
    CHECK(keys.hasText(QStringLiteral("20 Fotos · 20 ausgewählt")));
    keys.type(Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier);
    CHECK(keys.hasText(QStringLiteral("20 Fotos")));
}

TEST_CASE("Home and End move the cursor, and the page follows it")
{
    Keyboard keys(1000);
    keys.type(Qt::Key_End);
    CHECK(*keys.desk.model().cursor == 999U);
    CHECK(keys.window.content().grid().view().inView().contains(999));
    keys.type(Qt::Key_Home);
    CHECK(*keys.desk.model().cursor == 0U);
    CHECK(keys.window.content().grid().view().inView().contains(0));
}

TEST_CASE("keys that are not the model's go on to the control")
{
    Keyboard keys(1000);
    keys.type(Qt::Key_PageDown);
    auto const& grid = keys.window.content().grid();
    CHECK(eventually([&] { return grid.top() > 100; }));
}

TEST_CASE("Delete and Ctrl+Backspace put into the trash, Ctrl+Z brings back, Shift+Delete nothing")
{
    Keyboard keys;
    auto& model = keys.desk.model();
    keys.type(Qt::Key_Right);
    keys.type(Qt::Key_Delete, Qt::ShiftModifier);
    CHECK(model.items->size() == 20);
    keys.type(Qt::Key_Delete);
    CHECK(model.items->size() == 19);
    CHECK(keys.hasText(QStringLiteral("1 Foto in den Papierkorb gelegt – ⌘Z macht es rückgängig")));
    keys.type(Qt::Key_Z, Qt::ControlModifier);
    CHECK(model.items->size() == 20);
    CHECK(keys.hasText(QStringLiteral("1 Foto wiederhergestellt")));
    keys.type(Qt::Key_Z, Qt::ControlModifier);
    CHECK(model.items->size() == 20);
    keys.type(Qt::Key_Backspace, Qt::ControlModifier);
    CHECK(model.items->size() == 19);
}

TEST_CASE("what is typed into a field stays there")
{
    Keyboard keys;
    QLineEdit field(&keys.window);
    field.show();
    field.setFocus();
    REQUIRE(keys.window.isEditingText());
    keys.type(Qt::Key_X);
    keys.type(Qt::Key_A, Qt::ControlModifier);
    CHECK(field.text() == QStringLiteral("x"));
    CHECK(field.selectedText() == QStringLiteral("x"));
    keys.type(Qt::Key_Delete);
    CHECK(field.text().isEmpty());
    CHECK(keys.desk.model().selection->empty());
    CHECK(keys.desk.model().items->size() == 20);
    keys.window.focusGallery();
    CHECK_FALSE(keys.window.isEditingText());
    keys.type(Qt::Key_A, Qt::ControlModifier);
    CHECK(keys.desk.model().selection->size() == 20);
}

TEST_CASE("a list keeps its arrows, other keys go to the gallery")
{
    Keyboard keys;
    QListWidget list(&keys.window);
    list.addItems({ QStringLiteral("eins"), QStringLiteral("zwei") });
    list.setCurrentRow(0);
    list.show();
    list.setFocus();
    keys.type(Qt::Key_Down);
    CHECK(list.currentRow() == 1);
    CHECK_FALSE(keys.desk.model().cursor->has_value());
    keys.type(Qt::Key_End);
    CHECK(*keys.desk.model().cursor == 19U);
}

TEST_CASE("while a dialog is open, and in other windows, keys do nothing to the gallery")
{
    Keyboard keys;
    QWidget other;
    other.show();
    QTest::keyClick(&other, Qt::Key_Right);
    CHECK_FALSE(keys.desk.model().cursor->has_value());
    QDialog dialog(&keys.window);
    dialog.setWindowModality(Qt::WindowModal);
    dialog.open();
    QTest::keyClick(&dialog, Qt::Key_Right);
    keys.type(Qt::Key_Right);
    CHECK_FALSE(keys.desk.model().cursor->has_value());
    dialog.close();
    keys.type(Qt::Key_Right);
    CHECK(keys.desk.model().cursor->has_value());
}

TEST_CASE("Shift+F10 opens the menu of the cursor's photo, or of the folder that the keys are at")
{
    Keyboard keys;
    auto const lines = [] {
        QStringList titles;
        if (auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
            for (auto const* line : menu->actions())
                titles += line->text().remove(QLatin1Char('&'));
            menu->close();
        }
        return titles;
    };
    keys.type(Qt::Key_F10, Qt::ShiftModifier);
    CHECK(lines().isEmpty()); // no cursor yet
    keys.type(Qt::Key_Right);
    keys.type(Qt::Key_F10, Qt::ShiftModifier);
    CHECK(lines().contains(QStringLiteral("Öffnen")));
    // The menu had taken the keyboard; and only rows that are drawn are there.
    keys.window.activateWindow();
    REQUIRE(QTest::qWaitForWindowActive(&keys.window));
    keys.desk.settle();
    keys.window.content().sidebar().tree().setFocus();
    keys.type(Qt::Key_F10, Qt::ShiftModifier);
    CHECK(lines().contains(QStringLiteral("Ordnerbaum neu laden")));
}

TEST_CASE("who walks through the menu bar moves no cursor")
{
    Keyboard keys;
    QTest::keyClick(&keys.window, Qt::Key_Alt);
    REQUIRE(keys.window.focusWidget() == keys.window.menuBar());
    keys.type(Qt::Key_Right);
    CHECK_FALSE(keys.desk.model().cursor->has_value());
    keys.window.focusGallery();
    keys.type(Qt::Key_Right);
    CHECK(keys.desk.model().cursor->has_value());
}

TEST_CASE("F in the viewer turns full screen on and off")
{
    Keyboard keys;
    keys.type(Qt::Key_Return);
    keys.type(Qt::Key_F);
    CHECK(keys.window.MainWindowWidget::isFullScreen());
    keys.type(Qt::Key_F);
    CHECK_FALSE(keys.window.MainWindowWidget::isFullScreen());
}

TEST_CASE("the keys of a window that is gone harm nobody")
{
    Keyboard keys;
    {
        FakeThumbnails thumbnails;
        MainWindowWidget second { { keys.desk.model(), thumbnails, keys.desk.background,
                                      keys.desk.loop },
            keys.desk.sidebarPorts() };
        second.show();
        keys.desk.settle();
    }
    keys.type(Qt::Key_Right);
    CHECK_FALSE(keys.desk.model().cursor->has_value());
    CHECK(keys.desk.model().window() == nullptr);
}

TEST_CASE("the menus hold the commands, each with its keys, and undo only while there is something")
{
    Keyboard keys;
    auto const find = [&](QString const& title) -> QAction* {
        for (auto* action : keys.window.findChildren<QAction*>())
            if (action->text().remove(QLatin1Char('&')) == title)
                return action;
        return nullptr;
    };
    for (char const* title : { "Datei", "Bearbeiten", "Fotos", "Ordner öffnen …", "Schließen",
             "Verschieben nach …", "Alle auswählen  (⌘A)" })
        CHECK_MESSAGE(find(QString::fromUtf8(title)), title);
    auto const* const undo = find(QStringLiteral("Papierkorb rückgängig"));
    REQUIRE(undo);
    CHECK_FALSE(undo->isEnabled());
    auto* const trash = find(QStringLiteral("In den Papierkorb legen"));
    REQUIRE(trash);
    CHECK(trash->shortcuts()
        == QList<QKeySequence> {
            QKeySequence(Qt::CTRL | Qt::Key_Backspace), QKeySequence(Qt::Key_Delete) });
    CHECK_FALSE(trash->autoRepeat());
    keys.type(Qt::Key_Right);
    trash->trigger();
    keys.desk.settle();
    CHECK(undo->isEnabled());
}

TEST_CASE("a window that is closed while files are changed waits for the one under way")
{
    Keyboard keys;
    auto& model = keys.desk.model();
    keys.type(Qt::Key_A, Qt::ControlModifier);
    model.trashTargets();
    REQUIRE(model.isBusyWithFiles());
    keys.window.close();
    keys.window.close();
    CHECK(keys.window.isVisible());
    keys.desk.settle();
    CHECK_FALSE(keys.window.isVisible());
}

TEST_CASE("a long change of files shows how far it is, and Escape ends it")
{
    Keyboard keys;
    auto& model = keys.desk.model();
    keys.type(Qt::Key_A, Qt::ControlModifier);
    model.trashTargets();
    keys.desk.loop.advance(std::chrono::milliseconds(300));
    CHECK(keys.hasText(QStringLiteral("0 von 20")));
    CHECK(keys.hasText(QStringLiteral("Esc bricht ab")));
    QTest::keyClick(keys.window.focusWidget(), Qt::Key_Escape);
    keys.desk.settle();
    CHECK_FALSE(keys.hasText(QStringLiteral("Esc bricht ab")));
    CHECK(model.items->size() > 0);
}
