#include "qt/window/MainWindowWidget.h"
#include "qt/Heard.h"
#include "qt/sidebar/FolderTreeWidget.h"
#include "qt/sidebar/SidebarWidget.h"
#include "qt/window/Gallery.h"
#include "qt/window/StatusBarWidget.h"
#include "support/FakeSharing.h"
#include <QDropEvent>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QPushButton>
#include <QTest>
#include <QToolButton>
#include <doctest/doctest.h>
#include <functional>

using namespace pixelhain;

namespace {

struct WindowDesk {
    Desk desk;
    FakeThumbnails thumbnails;
    FakeSharing sharing;
    ThumbnailMenu menu { { desk.model(), desk.workspace, sharing, desk.clipboard } };
    MainWindowWidget window { { desk.model(), thumbnails, desk.background, desk.loop, &menu },
        desk.sidebarPorts() };

    WindowDesk()
    {
        window.show();
        desk.settle();
    }

    QStringList shownTexts() const
    {
        QStringList texts;
        for (auto const* label : window.findChildren<QLabel*>())
            if (label->isVisible() && !label->text().isEmpty()
                && !window.content().sidebar().isAncestorOf(label))
                texts += label->text();
        return texts;
    }

    QPushButton* openButton() const
    {
        return window.findChild<QPushButton*>(QString(), Qt::FindChildrenRecursively);
    }

    bool dragAndDrop(QByteArray const& uriList, Qt::DropActions offered = Qt::CopyAction)
    {
        QMimeData data;
        data.setData(QStringLiteral("text/uri-list"), uriList);
        auto& content = window.content();
        QDragEnterEvent enter(QPoint(9, 9), offered, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&content, &enter);
        wasHighlighted = content.view().dropTargeted;
        if (!enter.isAccepted())
            return false;
        QDropEvent drop(QPointF(9, 9), offered, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&content, &drop);
        action = drop.dropAction();
        desk.settle();
        return drop.isAccepted();
    }

    bool wasHighlighted = false;
    Qt::DropAction action = Qt::IgnoreAction;
};

} // namespace

TEST_CASE("without a folder the window says how to open one, and Return does it")
{
    WindowDesk w;
    CHECK(w.shownTexts()
        == QStringList {
            QStringLiteral("Ordner wählen oder hierher ziehen"), QStringLiteral("0 Fotos") });
    REQUIRE(w.openButton());
    CHECK(w.openButton()->isVisible());
    CHECK(w.openButton()->text() == QStringLiteral("Ordner öffnen …"));
    CHECK(w.openButton()->isDefault());
    w.openButton()->click();
    CHECK(w.desk.panels.requests.size() == 1);
}

TEST_CASE("the window is not complete while a folder is being looked for")
{
    WindowDesk w;
    CHECK(w.window.isComplete());
    w.desk.model().open(w.desk.folder("/Leer"));
    CHECK_FALSE(w.window.isComplete());
    w.desk.settle();
    CHECK(w.window.isComplete());
}

TEST_CASE("a folder without photos says so and where subfolders are")
{
    WindowDesk w;
    w.desk.open("/Leer", {});
    CHECK(w.shownTexts()
        == QStringList { QStringLiteral("Keine Fotos in diesem Ordner"),
            QStringLiteral("Unterordner findest du links in der Seitenleiste."),
            QStringLiteral("0 Fotos") });
    CHECK_FALSE(w.openButton()->isVisible());
    w.desk.model().setIncludeSubfolders(true);
    w.desk.settle();
    CHECK_FALSE(w.shownTexts().contains(
        QStringLiteral("Unterordner findest du links in der Seitenleiste.")));
}

TEST_CASE("a search without hits says so")
{
    WindowDesk w;
    w.desk.open("/Fotos", { "a.jpg" });
    w.desk.model().setSearchText("zzz");
    w.desk.settle();
    CHECK(w.shownTexts()
        == QStringList { QStringLiteral("Keine Treffer"), QStringLiteral("0 Fotos") });
}

TEST_CASE("the title names the folder and counts its photos")
{
    WindowDesk w;
    CHECK(w.window.windowTitle() == QStringLiteral("Pixelhain"));
    w.desk.open("/Urlaub", { "a.jpg" });
    CHECK(w.window.windowTitle() == QStringLiteral("Urlaub – 1 Fotos"));
    CHECK(w.shownTexts() == QStringList { QStringLiteral("1 Fotos") });
}

TEST_CASE("a name of two lines in a message does not make the status bar higher")
{
    Desk desk;
    StatusBarWidget bar(desk.model());
    desk.model().showStatus("Kontaktabzug gespeichert: a.pdf");
    bar.modelChanged();
    auto const height = bar.sizeHint().height();
    desk.model().showStatus("Kontaktabzug gespeichert: a\nb\nc.pdf");
    bar.modelChanged();
    CHECK(bar.sizeHint().height() == height);
}

TEST_CASE("the status bar shows count, marks and message")
{
    WindowDesk w;
    w.desk.open("/Fotos", Gallery::names(40));
    auto& model = w.desk.model();
    auto const* link = w.window.findChild<QToolButton*>(QStringLiteral("selectNone"));
    REQUIRE(link);
    CHECK_FALSE(link->isVisible());
    for (std::size_t const index : { 1U, 5U, 7U })
        model.toggle(index);
    model.showStatus("Fertig");
    w.desk.settle();
    CHECK(w.shownTexts()
        == QStringList { QStringLiteral("40 Fotos · 3 ausgewählt"), QStringLiteral("·"),
            QStringLiteral("Fertig") });
    CHECK(link->isVisible());
    CHECK(link->text() == QStringLiteral("Auswahl aufheben"));
    QTest::mouseClick(const_cast<QToolButton*>(link), Qt::LeftButton);
    w.desk.settle();
    CHECK(model.selection->empty());
    CHECK_FALSE(link->isVisible());
}

TEST_CASE("a message that is too long for the bar keeps its beginning and its end")
{
    WindowDesk w;
    w.desk.open("/Fotos", Gallery::names(40));
    w.window.resize(w.window.minimumSize());
    auto const show = [&](QString const& text) {
        w.desk.model().showStatus(text.toStdString());
        w.desk.settle();
    };
    auto const folder = QStringLiteral("Urlaub ").repeated(30);
    auto const text = QStringLiteral("3 Fotos nach „%1“ verschoben (1 fehlgeschlagen)").arg(folder);
    show(text);
    QLabel* message = nullptr;
    for (auto* label : w.window.findChildren<QLabel*>())
        if (label->text() == text)
            message = label;
    REQUIRE(message);
    auto const painted = message->grab().toImage();
    auto const cut = message->fontMetrics().elidedText(text, Qt::ElideMiddle, message->width());
    CHECK(cut.endsWith(QStringLiteral("(1 fehlgeschlagen)")));
    show(cut);
    CHECK(painted == message->grab().toImage());
    show(QString());
    CHECK(painted != message->grab().toImage());
}

TEST_CASE("a dropped folder is opened")
{
    WindowDesk w;
    w.desk.folder("/Fotos", { "a.jpg", "b.jpg" });
    CHECK(w.dragAndDrop("file:///Fotos\r\n"));
    CHECK(w.wasHighlighted);
    CHECK_FALSE(w.window.content().view().dropTargeted);
    CHECK(*w.desk.model().folder == FileUrl("/Fotos"));
    CHECK(w.desk.model().items->size() == 2);
}

TEST_CASE("a dropped image opens its folder and itself, further files are left alone")
{
    WindowDesk w;
    w.desk.folder("/Fotos", { "a.jpg", "b.jpg" });
    CHECK(w.dragAndDrop("file:///Fotos/b.jpg\r\nfile:///Fotos/a.jpg\r\n"));
    CHECK(*w.desk.model().folder == FileUrl("/Fotos"));
    CHECK(*w.desk.model().viewerIndex == 1U);
}

TEST_CASE("a drop is a copy even when the sender proposes to move")
{
    WindowDesk w;
    w.desk.folder("/Fotos", { "a.jpg" });
    CHECK(w.dragAndDrop("file:///Fotos", Qt::MoveAction | Qt::CopyAction));
    CHECK(w.action == Qt::CopyAction);
}

TEST_CASE("a drag without files is refused")
{
    WindowDesk w;
    CHECK_FALSE(w.dragAndDrop("https://example.org/a.jpg\r\n"));
    CHECK_FALSE(w.wasHighlighted);
}

TEST_CASE("the window opens in its default size and knows its smallest one")
{
    WindowDesk w;
    CHECK(w.window.size() == QSize(1200, 800));
    CHECK(w.window.minimumSize() == QSize(640, 420));
    CHECK(w.desk.model().window() == &w.window);
}

TEST_CASE("the file menu opens and reloads")
{
    WindowDesk w;
    w.desk.open("/Fotos", { "a.jpg" });
    auto const trigger = [&](QKeySequence const& key) {
        for (auto* action : w.window.findChildren<QAction*>())
            if (action->shortcuts().contains(key))
                action->trigger();
        w.desk.settle();
    };
    trigger(QKeySequence(Qt::CTRL | Qt::Key_O));
    CHECK(w.desk.panels.requests.size() == 1);
    auto const generation = w.desk.model().scanGeneration();
    trigger(QKeySequence(Qt::CTRL | Qt::Key_R));
    trigger(QKeySequence(Qt::Key_F5));
    CHECK(w.desk.model().scanGeneration() == generation + 2);
    trigger(QKeySequence(Qt::CTRL | Qt::Key_W));
    CHECK_FALSE(w.window.isVisible());
}

TEST_CASE("how many photos are marked is read out when it changes, and only then")
{
    Heard heard;
    WindowDesk w;
    w.desk.open("/Fotos", { "a.jpg", "b.jpg", "c.jpg" });
    heard.events.clear();
    auto const spoken = [&] {
        QStringList texts;
        for (auto const& event : heard.events)
            if (event.type == QAccessible::ObjectShow && event.role == QAccessible::Notification)
                texts += event.name;
        heard.events.clear();
        return texts;
    };
    w.desk.model().toggle(1);
    w.desk.settle();
    CHECK(spoken() == QStringList { QStringLiteral("1 ausgewählt") });
    w.desk.model().moveCursor(+1, Extend::no);
    w.desk.settle();
    CHECK(spoken().isEmpty());
    w.desk.model().selectAll();
    w.desk.settle();
    CHECK(spoken() == QStringList { QStringLiteral("3 ausgewählt") });
    w.desk.model().selectNone();
    w.desk.settle();
    CHECK(spoken() == QStringList { QStringLiteral("0 ausgewählt") });
}

TEST_CASE("screen readers find the folders before the photos")
{
    WindowDesk w;
    w.desk.open("/Fotos", { "a.jpg" });
    QStringList found;
    std::function<void(QAccessibleInterface*)> const walk = [&](QAccessibleInterface* thing) {
        if (thing->role() == QAccessible::Tree || thing->role() == QAccessible::List)
            found += thing->text(QAccessible::Name);
        for (int i = 0; i < thing->childCount(); ++i)
            walk(thing->child(i));
    };
    walk(QAccessible::queryAccessibleInterface(&w.window));
    CHECK(found == QStringList { QStringLiteral("Ordner"), QStringLiteral("Galerie") });
}

TEST_CASE("Tab stops at the folders only while there are some")
{
    WindowDesk w;
    auto const& folders = w.window.content().sidebar().tree();
    CHECK(folders.focusPolicy() == Qt::NoFocus);
    w.desk.open("/Fotos", { "a.jpg" });
    CHECK(folders.focusPolicy() == Qt::StrongFocus);
}

TEST_CASE("a message of the status bar is read out, also the same one once more")
{
    Heard heard;
    WindowDesk w;
    w.desk.open("/Fotos", { "a.jpg", "b.jpg" });
    w.desk.model().moveCursor(+1, Extend::no);
    w.desk.settle();
    heard.events.clear();
    auto const spoken = [&] {
        QStringList texts;
        for (auto const& event : heard.events)
            if (event.type == QAccessible::ObjectShow && event.role == QAccessible::Notification)
                texts += event.name;
        return texts;
    };
    auto const message = QStringLiteral("1 Foto in die Zwischenablage kopiert");
    w.desk.model().copyToClipboard();
    w.desk.settle();
    CHECK(spoken() == QStringList { message });
    w.desk.loop.advance(std::chrono::minutes(1));
    w.desk.settle();
    CHECK(spoken().size() == 1);
    w.desk.model().copyToClipboard();
    w.desk.settle();
    CHECK(spoken() == QStringList { message, message });
}

TEST_CASE("an empty gallery says why it is empty to who comes to it")
{
    WindowDesk w;
    auto const spoken = [&] {
        auto* const focused = QApplication::focusWidget();
        return focused ? focused->accessibleName() : QString();
    };
    w.window.activateWindow();
    REQUIRE(eventually([&] { return !spoken().isEmpty(); }));
    CHECK(spoken() == QStringLiteral("Ordner wählen oder hierher ziehen"));
    w.desk.open("/leer", {});
    w.desk.settle();
    CHECK(spoken()
        == QStringLiteral("Keine Fotos in diesem Ordner\n"
                          "Unterordner findest du links in der Seitenleiste."));
}
