#include "qt/sidebar/SidebarWidget.h"
#include "qt/Contrast.h"
#include "qt/Wait.h"
#include "qt/app/DesktopColors.h"
#include "qt/sidebar/FolderRowPainter.h"
#include "qt/sidebar/FolderTreeWidget.h"
#include "qt/sidebar/SymbolButton.h"
#include "qt/window/EdgeStyle.h"
#include "qt/window/Gallery.h"
#include "qt/window/MainWindowWidget.h"
#include <QAccessible>
#include <QDropEvent>
#include <QMenu>
#include <QMimeData>
#include <QScrollBar>
#include <QSplitter>
#include <QTest>
#include <QToolButton>
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

// A window over a drive in memory: /r with a (two photos), b (one photo, with b/innen) and c.
struct Window {
    Desk desk;
    FakeThumbnails thumbnails;
    MainWindowWidget window { { desk.model(), thumbnails, desk.background, desk.loop },
        desk.sidebarPorts() };
    SidebarWidget& sidebar = window.content().sidebar();
    FolderTreeWidget& tree = sidebar.tree();

    Window()
    {
        desk.folder("/r/a", { "1.jpg", "2.jpg" });
        desk.folder("/r/b", { "3.jpg" });
        desk.folder("/r/b/innen", { "4.jpg" });
        desk.folder("/r/c");
        window.show();
        REQUIRE(QTest::qWaitForWindowExposed(&window)); // only rows that are drawn are listed
        desk.model().open(FileUrl("/r"));
        draw();
    }

    // Paints and lets work end until nothing changes any more.
    void draw()
    {
        do {
            desk.settle();
            QCoreApplication::processEvents();
            tree.viewport()->repaint();
        } while (desk.background.pending() > 0);
    }

    QModelIndex index(char const* path)
    {
        auto* const node = sidebar.view().find(FileUrl(path));
        REQUIRE(node);
        auto const* const model = dynamic_cast<FolderTreeModel const*>(tree.model());
        return model->indexOf(*node);
    }

    // So many that they do not fit on the screen.
    void addMany()
    {
        for (int i = 0; i < 200; ++i)
            desk.folder("/r/z" + std::to_string(i));
        desk.model().refreshTree();
        draw();
    }

    bool isOnScreen(char const* path)
    {
        // The last line of a row is empty, and the toolkit leaves it out.
        return tree.viewport()->rect().contains(tree.visualRect(index(path)).adjusted(0, 0, 0, -1));
    }

    QPoint middle(char const* path) { return tree.visualRect(index(path)).center(); }

    void click(char const* path, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::mouseClick(tree.viewport(), Qt::LeftButton, modifiers, middle(path));
        draw();
    }

    void clickTriangle(char const* path)
    {
        auto row = tree.visualRect(index(path));
        row.setWidth(tree.viewport()->width());
        auto const level = sidebar.view().find(FileUrl(path))->level();
        QTest::mouseClick(
            tree.viewport(), Qt::LeftButton, {}, FolderRowPainter::triangle(row, level).center());
        draw();
    }

    void press(int key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(&tree, static_cast<Qt::Key>(key), modifiers);
        draw();
    }

    Names rows()
    {
        Names names;
        for (auto const* node : tree.visibleNodes())
            names.push_back(node->name());
        return names;
    }

    Names shown()
    {
        Names paths;
        for (auto const& url : *desk.model().folders)
            paths.emplace_back(url.path());
        return paths;
    }

    Names selected()
    {
        Names names;
        for (auto const& row : tree.selectionModel()->selectedIndexes())
            names.push_back(FolderTreeModel::nodeAt(row)->name());
        std::ranges::sort(names);
        return names;
    }
};

} // namespace

TEST_CASE("keys go to the gallery until the user turns to the tree")
{
    Window w;
    CHECK_FALSE(w.sidebar.isAncestorOf(w.window.focusWidget()));
    w.click("/r/c");
    CHECK(w.window.focusWidget() == &w.tree);
    w.desk.model().open(FileUrl("/r/a"));
    w.draw();
    CHECK(w.window.focusWidget() == &w.window.content().grid());
}

TEST_CASE("a click shows one folder, and the gallery follows")
{
    Window w;
    CHECK(w.rows() == Names { "r", "a", "b", "c" });
    CHECK(w.selected() == Names { "r" });
    w.click("/r/a");
    CHECK(w.shown() == Names { "/r/a" });
    CHECK(w.desk.names() == Names { "1.jpg", "2.jpg" });
    CHECK(w.selected() == Names { "a" });
    CHECK(w.window.focusWidget() == &w.tree);
}

TEST_CASE("a click with Ctrl adds a folder and takes it away again")
{
    Window w;
    w.click("/r/a");
    w.click("/r/b", Qt::ControlModifier);
    CHECK(w.shown() == Names { "/r/a", "/r/b" });
    CHECK(w.desk.names() == Names { "1.jpg", "2.jpg", "3.jpg" });
    w.click("/r/a", Qt::ControlModifier);
    CHECK(w.shown() == Names { "/r/b" });
}

TEST_CASE("the last folder cannot be taken away")
{
    Window w;
    w.click("/r/a");
    auto const scan = w.desk.model().scanGeneration();
    w.click("/r/a", Qt::ControlModifier);
    CHECK(w.shown() == Names { "/r/a" });
    CHECK(w.selected() == Names { "a" });
    w.click("/r/a");
    CHECK(w.desk.model().scanGeneration() == scan);
}

TEST_CASE("a click with Shift shows all rows in between, open branches included")
{
    Window w;
    w.clickTriangle("/r/b");
    CHECK(w.rows() == Names { "r", "a", "b", "innen", "c" });
    CHECK(w.shown() == Names { "/r" });
    w.click("/r/a");
    w.click("/r/c", Qt::ShiftModifier);
    CHECK(w.shown() == Names { "/r/a", "/r/b", "/r/b/innen", "/r/c" });
    CHECK(w.desk.names().size() == 4);
}

TEST_CASE("arrow keys move through the tree, and the gallery follows")
{
    Window w;
    w.click("/r/a");
    w.press(Qt::Key_Down);
    CHECK(w.shown() == Names { "/r/b" });
    w.press(Qt::Key_Right);
    CHECK(w.rows() == Names { "r", "a", "b", "innen", "c" });
    CHECK(w.shown() == Names { "/r/b" });
    w.press(Qt::Key_Right);
    CHECK(w.shown() == Names { "/r/b/innen" });
    w.press(Qt::Key_Left);
    CHECK(w.shown() == Names { "/r/b" });
    w.press(Qt::Key_Left);
    CHECK(w.rows() == Names { "r", "a", "b", "c" });
    w.press(Qt::Key_Up);
    CHECK(w.shown() == Names { "/r/a" });
    w.press(Qt::Key_Up);
    CHECK(w.shown() == Names { "/r" });
    w.press(Qt::Key_Down, Qt::ShiftModifier);
    CHECK(w.shown() == Names { "/r", "/r/a" });
    CHECK(w.window.focusWidget() == &w.tree);
}

TEST_CASE("Home and End go to the first and the last row where the gallery leaves them")
{
    Window w;
    w.click("/r/c"); // no photos, so the gallery has no use for these keys
    w.press(Qt::Key_Home);
    CHECK(w.shown() == Names { "/r" });
    w.press(Qt::Key_End);
    CHECK(w.shown() == Names { "/r/c" });
}

TEST_CASE("typing a name goes to the folder")
{
    Window w;
    w.click("/r/a");
    QTest::keyClicks(&w.tree, QStringLiteral("c"));
    w.draw();
    CHECK(w.shown() == Names { "/r/c" });
}

TEST_CASE("rows come into sight as the keyboard reaches them")
{
    Window w;
    w.addMany();
    w.click("/r/c");
    REQUIRE(!w.isOnScreen("/r/z199"));
    w.press(Qt::Key_End);
    CHECK(w.shown() == Names { "/r/z199" });
    CHECK(w.isOnScreen("/r/z199"));
    w.tree.verticalScrollBar()->setValue(0);
    w.press(Qt::Key_Up);
    CHECK(w.shown() == Names { "/r/z198" });
    CHECK(w.isOnScreen("/r/z198"));
    w.press(Qt::Key_Home);
    CHECK(w.isOnScreen("/r"));
    QTest::keyClicks(&w.tree, QStringLiteral("z150"));
    w.draw();
    CHECK(w.shown() == Names { "/r/z150" });
    CHECK(w.isOnScreen("/r/z150"));
}

TEST_CASE("the folder that was the root stays in sight among those beside it")
{
    Window w;
    w.addMany();
    w.desk.model().open(FileUrl("/r/z150"));
    w.draw();
    w.sidebar.view().goUp();
    w.draw();
    CHECK(w.selected() == Names { "z150" });
    CHECK(w.isOnScreen("/r/z150"));
    w.tree.verticalScrollBar()->setValue(0);
    w.desk.model().refreshTree();
    w.draw();
    CHECK(w.isOnScreen("/r"));
}

TEST_CASE("keys that mean all photos or the clipboard are left to the gallery")
{
    Window w;
    w.click("/r/a");
    w.press(Qt::Key_A, Qt::ControlModifier);
    CHECK(w.shown() == Names { "/r/a" });
}

TEST_CASE("a triangle opens and closes its branch and chooses nothing")
{
    Window w;
    w.clickTriangle("/r/b");
    CHECK(w.rows() == Names { "r", "a", "b", "innen", "c" });
    w.clickTriangle("/r/b");
    CHECK(w.rows() == Names { "r", "a", "b", "c" });
    CHECK(w.shown() == Names { "/r" });
}

TEST_CASE("dragging over rows chooses no more than the first")
{
    Window w;
    QTest::mousePress(w.tree.viewport(), Qt::LeftButton, {}, w.middle("/r/a"));
    QTest::mouseMove(w.tree.viewport(), w.middle("/r/c"));
    QMouseEvent move(
        QEvent::MouseMove, w.middle("/r/c"), w.middle("/r/c"), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(w.tree.viewport(), &move);
    QTest::mouseRelease(w.tree.viewport(), Qt::LeftButton, {}, w.middle("/r/c"));
    w.draw();
    CHECK(w.shown() == Names { "/r/a" });
}

TEST_CASE("a refresh keeps selection, keyboard and focus where they are")
{
    Window w;
    w.click("/r/a");
    w.click("/r/c", Qt::ControlModifier);
    w.desk.folder("/r/a0");
    w.desk.model().refreshTree();
    w.draw();
    CHECK(w.rows() == Names { "r", "a", "a0", "b", "c" });
    CHECK(w.selected() == Names { "a", "c" });
    CHECK(w.tree.currentIndex() == w.index("/r/c"));
    CHECK(w.window.focusWidget() == &w.tree);
    w.press(Qt::Key_Up);
    CHECK(w.shown() == Names { "/r/b" });
}

TEST_CASE("a refresh leaves the rows where they were scrolled to")
{
    Window w;
    w.addMany();
    auto* const bar = w.tree.verticalScrollBar();
    int const between = w.tree.visualRect(w.index("/r/z0")).height() * 100 + 7;
    bar->setValue(between);
    w.draw();
    auto const before = w.rows();
    w.desk.model().refreshTree();
    w.draw();
    CHECK(w.rows() == before);
    CHECK(bar->value() == between);
    w.desk.files.remove(FileUrl("/r/a"));
    w.desk.model().refreshTree();
    w.draw();
    CHECK(w.rows() == before);
}

TEST_CASE("only rows on the screen are listed and counted")
{
    Window w;
    for (int i = 0; i < 1000; ++i)
        w.desk.folder("/r/z" + std::to_string(i));
    w.desk.model().refreshTree();
    auto const before = w.desk.files.listings().size();
    w.draw();
    CHECK(w.rows().size() < 60);
    CHECK(w.desk.files.listings().size() - before < 2 * 60 + 2);
}

TEST_CASE("a hidden sidebar lists and counts nothing")
{
    Window w;
    w.window.content().toggleSidebar();
    w.draw();
    auto const before = w.desk.files.listings().size();
    w.desk.model().refreshTree();
    w.draw();
    CHECK(w.desk.files.listings().size() == before + 1);
}

TEST_CASE("the menu has the entries of its row, and a right click chooses nothing")
{
    Window w;
    QTest::mouseClick(w.tree.viewport(), Qt::RightButton, {}, w.middle("/r/b"));
    w.draw();
    CHECK(w.shown() == Names { "/r" });
    auto* const menu = w.tree.showMenu(w.index("/r/b"), {});
    QStringList titles;
    QString letters;
    for (auto* const action : menu->actions()) {
        titles += action->isSeparator() ? QStringLiteral("-")
                                        : action->text().remove(QLatin1Char('&'));
        if (action->isSeparator())
            continue;
        auto const letter = action->text().section(QLatin1Char('&'), 1, 1).left(1).toLower();
        CHECK(letter.size() == 1);
        CHECK_FALSE(letters.contains(letter));
        letters += letter;
    }
    CHECK(titles
        == QStringList { QStringLiteral("Nur diesen Ordner anzeigen"),
            QStringLiteral("Zur Auswahl hinzufügen"), QStringLiteral("Als oberste Ebene festlegen"),
            QStringLiteral("-"), QStringLiteral("Im Finder zeigen"),
            QStringLiteral("Ordnerbaum neu laden") });
    // The row may be gone by the time that the user has decided.
    auto* const add = menu->actions().at(1);
    w.desk.model().refreshTree();
    w.draw();
    add->trigger();
    w.draw();
    CHECK(w.shown() == Names { "/r", "/r/b" });
}

TEST_CASE("the row that an open menu is about is marked, selected or not")
{
    Window w;
    w.click("/r/a");
    w.tree.clearFocus(); // not every platform gives it back after a menu
    auto const look = [&](char const* path) {
        return w.tree.viewport()->grab(w.tree.visualRect(w.index(path))).toImage();
    };
    for (auto const* path : { "/r/a", "/r/c" }) {
        auto const before = look(path);
        auto const other = look("/r/b");
        auto* const menu = w.tree.showMenu(w.index(path), {});
        CHECK(look(path) != before);
        CHECK(look("/r/b") == other);
        menu->close();
        w.draw();
        CHECK(look(path) == before);
    }
}

TEST_CASE("a symbol that cannot be used now can be seen")
{
    EdgeStyle style;
    auto light = style.standardPalette();
    style.polish(light);
    for (auto const& palette : { light, darkPalette() }) {
        SymbolButton button(SidebarView::goUpSymbol, QString(), nullptr);
        button.setPalette(palette);
        button.setDisabled(true);
        button.resize(button.sizeHint());
        QImage image(button.size() * 2, QImage::Format_RGB32);
        image.setDevicePixelRatio(2);
        image.fill(palette.color(QPalette::Window));
        button.render(&image, {}, {}, {});
        double strongest = 1;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                strongest = std::max(
                    strongest, contrast(image.pixelColor(x, y), palette.color(QPalette::Window)));
        CHECK(strongest >= 2.5);
        CHECK(strongest < 5);
    }
}

TEST_CASE("the header's buttons and the one below do what their tips say")
{
    Window w;
    auto* const refresh = w.sidebar.findChild<QToolButton*>(QStringLiteral("refreshFolders"));
    auto* const goUp = w.sidebar.findChild<QToolButton*>(QStringLiteral("showParentFolder"));
    auto* const open = w.sidebar.findChild<QToolButton*>(QStringLiteral("openFolder"));
    REQUIRE(refresh);
    REQUIRE(goUp);
    REQUIRE(open);
    CHECK(refresh->toolTip() == QStringLiteral("Ordnerliste aktualisieren"));
    CHECK(goUp->toolTip() == QStringLiteral("Übergeordneten Ordner anzeigen (⌘↑)"));
    CHECK(open->text() == QStringLiteral("Ordner öffnen …"));
    auto const name = [](QWidget* button) {
        return QAccessible::queryAccessibleInterface(button)->text(QAccessible::Name);
    };
    CHECK(name(refresh) == QStringLiteral("Ordnerliste aktualisieren"));
    CHECK(name(goUp) == QStringLiteral("Übergeordneten Ordner anzeigen"));
    int const version = w.desk.model().treeVersion;
    QTest::mouseClick(refresh, Qt::LeftButton);
    CHECK(w.desk.model().treeVersion == version + 1);
    CHECK(goUp->isEnabled());
    QTest::mouseClick(goUp, Qt::LeftButton);
    w.draw();
    CHECK(w.rows() == Names { "/", "r" });
    CHECK(w.shown() == Names { "/r" });
    CHECK_FALSE(goUp->isEnabled());
    QTest::mouseClick(open, Qt::LeftButton);
    CHECK(w.desk.panels.requests.size() == 1);
}

TEST_CASE("without a folder the list is empty and only its button works")
{
    Desk desk;
    FakeThumbnails thumbnails;
    MainWindowWidget window { { desk.model(), thumbnails, desk.background, desk.loop },
        desk.sidebarPorts() };
    window.show();
    desk.settle();
    auto const& sidebar = window.content().sidebar();
    CHECK(window.content().sidebar().tree().model()->rowCount() == 0);
    CHECK_FALSE(sidebar.findChild<QToolButton*>(QStringLiteral("showParentFolder"))->isEnabled());
    CHECK(sidebar.findChild<QToolButton*>(QStringLiteral("openFolder"))->isEnabled());
}

TEST_CASE("tips are plain text whatever a folder is called")
{
    Window w;
    w.desk.folder("/r/<b>fett<b>");
    w.desk.model().refreshTree();
    w.draw();
    auto const tip
        = [&](char const* path) { return w.index(path).data(Qt::ToolTipRole).toString(); };
    CHECK(tip("/r/b") == QStringLiteral("/r/b\n1 Foto direkt in diesem Ordner"));
    CHECK(tip("/r/c") == QStringLiteral("/r/c\n0 Fotos direkt in diesem Ordner"));
    CHECK(tip("/r/<b>fett<b>").contains(QStringLiteral("&lt;b&gt;fett")));
}

TEST_CASE("screen readers find a tree with names, counts, levels and states")
{
    Window w;
    auto* const tree = QAccessible::queryAccessibleInterface(&w.tree);
    REQUIRE(tree);
    CHECK(tree->role() == QAccessible::Tree);
    CHECK(tree->text(QAccessible::Name) == QStringLiteral("Ordner"));
    auto* const table = tree->tableInterface();
    REQUIRE(table);
    CHECK(table->rowCount() == 4);
    auto* const row = table->cellAt(2, 0);
    REQUIRE(row);
    CHECK(row->role() == QAccessible::TreeItem);
    CHECK(row->text(QAccessible::Name) == QStringLiteral("b"));
    CHECK(row->text(QAccessible::Description)
        == QStringLiteral("1 Foto direkt in diesem Ordner, Ebene 2"));
    CHECK(row->state().expandable);
    CHECK_FALSE(row->state().expanded);
    CHECK(table->cellAt(0, 0)->state().expanded);
    CHECK(table->cellAt(0, 0)->state().selected);
    CHECK(table->columnDescription(0) == QStringLiteral("Ordner"));
}

TEST_CASE("a folder let go over the tree is opened")
{
    Window w;
    w.desk.folder("/q", { "5.jpg" });
    auto* receiver = w.tree.viewport();
    while (receiver && !receiver->acceptDrops())
        receiver = receiver->parentWidget();
    REQUIRE(receiver == &w.window.content());
    QMimeData data;
    data.setData(QStringLiteral("text/uri-list"), "file:///q\r\n");
    auto const at = w.tree.viewport()->mapTo(receiver, w.middle("/r/b"));
    QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(receiver, &enter);
    QDropEvent drop(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(receiver, &drop);
    w.draw();
    CHECK(w.shown() == Names { "/q" });
    CHECK(w.rows() == Names { "q" });
}

TEST_CASE("the sidebar is as wide as it should be, and no wider or narrower than it may be")
{
    Window w;
    CHECK(w.sidebar.width() == 230);
    auto* const columns = w.window.findChild<QSplitter*>();
    REQUIRE(columns);
    columns->setSizes({ 10, 1190 });
    CHECK(w.sidebar.width() == 170);
    columns->setSizes({ 900, 300 });
    CHECK(w.sidebar.width() == 420);
    columns->setSizes({ 300, 900 });
    w.window.resize(900, 700);
    w.draw();
    CHECK(w.sidebar.width() == 300);
    columns->setSizes({ 0, 900 });
    CHECK(w.sidebar.isVisible());
}

TEST_CASE("F9 and Meta+Ctrl+S hide and show the sidebar, and the keyboard goes to the gallery")
{
    Window w;
    QAction* toggle = nullptr;
    for (auto* const action : w.window.findChildren<QAction*>())
        if (action->shortcuts().contains(QKeySequence(Qt::Key_F9)))
            toggle = action;
    REQUIRE(toggle);
    CHECK(toggle->shortcuts().contains(QKeySequence(Qt::META | Qt::CTRL | Qt::Key_S)));
    CHECK(toggle->text() == QStringLiteral("&Seitenleiste ausblenden"));
    w.click("/r/a");
    toggle->trigger();
    CHECK_FALSE(w.sidebar.isVisible());
    CHECK(w.window.focusWidget() != &w.tree);
    CHECK(toggle->text() == QStringLiteral("&Seitenleiste einblenden"));
    toggle->trigger();
    CHECK(w.sidebar.isVisible());
    CHECK(w.sidebar.width() == 230);
}

TEST_CASE("twenty levels and very long names stay within the column")
{
    Window w;
    std::string path = "/r";
    for (int level = 0; level < 20; ++level)
        path += "/Ebene " + std::to_string(level) + " mit einem recht langen Namen \xff";
    w.desk.folder(path, { "1.jpg" });
    w.desk.model().selectFolders({ FileUrl(path) }, FocusGallery::no);
    w.desk.model().refreshTree();
    w.draw();
    CHECK(w.rows().size() > 20);
    CHECK(w.tree.horizontalScrollBar()->maximum() == 0);
    CHECK(w.sidebar.view().find(FileUrl(path))->level() == 20);
}

TEST_CASE("every row has the same height")
{
    Window w;
    auto const first = w.tree.visualRect(w.index("/r"));
    auto const second = w.tree.visualRect(w.index("/r/a"));
    CHECK(first.height() >= 24);
    CHECK(second.top() == first.top() + first.height());
    CHECK(second.height() == first.height());
}

TEST_CASE("a count that arrives later stands at the right and moves nothing else")
{
    Window w;
    auto const look = [&] { return w.tree.viewport()->grab().toImage(); };
    auto const before = look();
    w.desk.folder("/r/c", { "5.jpg" });
    w.desk.model().refreshTree();
    w.draw();
    auto const after = look();
    REQUIRE(after.size() == before.size());
    auto const row = w.tree.visualRect(w.index("/r/c"));
    auto const scale = w.tree.devicePixelRatioF();
    QRect changed;
    for (int y = 0; y < after.height(); ++y)
        for (int x = 0; x < after.width(); ++x)
            if (after.pixel(x, y) != before.pixel(x, y))
                changed |= QRect(x, y, 1, 1);
    REQUIRE_FALSE(changed.isEmpty());
    CHECK(changed.top() >= row.top() * scale);
    CHECK(changed.bottom() <= (row.bottom() + 1) * scale);
    CHECK(changed.left() > w.tree.viewport()->width() * scale * 0.8);
}
