#include "qt/window/ToolbarWidget.h"
#include "qt/viewer/ViewerDesk.h"
#include "qt/window/Gallery.h"
#include "qt/window/MainWindowWidget.h"
#include "qt/window/SearchField.h"
#include "qt/window/SizeSlider.h"
#include "qt/window/ToolbarButton.h"
#include <QActionGroup>
#include <QMenu>
#include <QTimer>
#include <doctest/doctest.h>
#include <set>

using namespace pixelhain;

namespace {

using Item = MainToolbar::Item;

// The main window with its toolbar over photos in memory.
struct Window {
    Desk desk;
    FakeThumbnails thumbnails;
    FakeViewerSource source;
    FakeSharing sharing;
    PreparedPictures prepared;
    ThumbnailMenu menu { { desk.model(), desk.workspace, sharing, desk.clipboard } };
    MainWindowWidget window { { desk.model(), thumbnails, desk.background, desk.loop, &menu },
        desk.sidebarPorts() };

    explicit Window(int count = 20)
    {
        window.content().addViewer({ desk.model(), source, desk.background, desk.loop, prepared,
            [](PhotoItem const&) { return std::vector<std::string>(); } });
        window.show();
        window.activateWindow();
        REQUIRE(QTest::qWaitForWindowActive(&window)); // no shortcut works without
        desk.settle();
        desk.open("/Fotos", Gallery::names(count));
        for (auto const& item : *desk.model().items)
            source.pictures[item.url] = plainPicture(90, 50, Qt::red);
        window.content().grid().setFocus();
    }

    BrowserModel& model() { return desk.model(); }
    ToolbarWidget& bar() { return window.content().toolbar(); }
    SearchField& search() { return bar().search(); }
    SizeSlider& slider() { return bar().slider(); }
    bool hasGalleryFocus() { return window.focusWidget() == &window.content().grid(); }

    void type(Qt::Key key, Qt::KeyboardModifiers held = {})
    {
        QTest::keyClick(window.focusWidget() ? window.focusWidget() : &window, key, held);
        desk.settle();
    }

    void write(char const* text)
    {
        QTest::keyClicks(window.focusWidget(), QString::fromUtf8(text));
        desk.settle();
    }

    void press(QWidget& button)
    {
        QTest::mouseClick(&button, Qt::LeftButton);
        desk.settle();
    }

    // Opens the button's menu with the mouse and does something while it is open.
    void inMenuOf(ToolbarButton& button, std::function<void(QMenu&)> act)
    {
        bool hasOpened = false;
        QTimer::singleShot(0, &button, [&] {
            REQUIRE(button.menu()->isVisible());
            hasOpened = true;
            act(*button.menu());
            button.menu()->close();
        });
        QTest::mouseClick(&button, Qt::LeftButton);
        CHECK(hasOpened);
        desk.settle();
    }

    void choose(ToolbarButton& button, char const* title)
    {
        inMenuOf(button, [&](QMenu& opened) {
            auto* const entry = find(opened, title);
            REQUIRE_MESSAGE(entry, title);
            QTest::mouseClick(&opened, Qt::LeftButton, {}, opened.actionGeometry(entry).center());
        });
    }

    static QAction* find(QMenu& opened, char const* title)
    {
        for (auto* action : opened.actions())
            if (action->text().remove(QLatin1Char('&')) == QString::fromUtf8(title))
                return action;
        return nullptr;
    }

    std::vector<QWidget*> controls()
    {
        std::vector<QWidget*> all { &bar().sidebarButton(), &bar().folderButton(), &slider() };
        for (auto const item : MainToolbar::order)
            if (auto* const button = bar().button(item))
                all.push_back(button);
        all.push_back(&bar().moreButton());
        all.push_back(&search());
        std::erase_if(all, [](QWidget const* control) { return !control->isVisible(); });
        return all;
    }

    std::vector<QRect> places()
    {
        std::vector<QRect> all;
        for (auto const* control : controls())
            all.emplace_back(control->mapTo(&bar(), QPoint()), control->size());
        return all;
    }
};

} // namespace

TEST_CASE("what is typed into the search field filters the gallery by name")
{
    Window test;
    test.type(Qt::Key_F, Qt::ControlModifier);
    test.write("mg_1");
    CHECK(test.model().searchText.get() == "mg_1");
    CHECK(test.model().items->size() == 11);
    test.type(Qt::Key_Backspace);
    CHECK(test.model().items->size() == 20);
}

TEST_CASE("names of a long list are made ready for a search while the user gets ready to type")
{
    Window test;
    Names names;
    for (int i = 0; i < 21'000; ++i)
        names.push_back(std::to_string(i) + ".jpg");
    test.desk.open("/many", names);
    auto const before = test.desk.textOrder.folds.load();
    test.type(Qt::Key_F, Qt::ControlModifier);
    CHECK(test.search().hasFocus());
    CHECK(test.desk.textOrder.folds >= before + names.size());
}

TEST_CASE("Ctrl+F goes to the search field and marks its text, so that the next letter replaces it")
{
    Window test;
    test.type(Qt::Key_F, Qt::ControlModifier);
    CHECK(test.search().hasFocus());
    test.write("IMG_1");
    test.window.focusGallery();
    test.type(Qt::Key_F, Qt::ControlModifier);
    CHECK(test.search().selectedText() == QStringLiteral("IMG_1"));
    test.write("2");
    CHECK(test.model().searchText.get() == "2");
}

TEST_CASE("Escape empties the search field, and in an empty one gives the keyboard back")
{
    Window test;
    test.model().toggle(0);
    test.type(Qt::Key_F, Qt::ControlModifier);
    test.write("2");
    test.type(Qt::Key_Escape);
    CHECK(test.model().searchText->empty());
    CHECK(test.search().hasFocus());
    test.type(Qt::Key_Escape);
    CHECK(test.hasGalleryFocus());
    CHECK(test.model().selection->size() == 1);
}

TEST_CASE("down and Return go from the search field to the gallery, the text stays")
{
    for (auto const key : { Qt::Key_Down, Qt::Key_Return, Qt::Key_Enter }) {
        Window test;
        test.type(Qt::Key_F, Qt::ControlModifier);
        test.write("IMG_1");
        test.type(key);
        CHECK(test.hasGalleryFocus());
        CHECK(test.model().searchText.get() == "IMG_1");
        CHECK(test.search().text() == QStringLiteral("IMG_1"));
        CHECK_FALSE(test.model().viewerIndex->has_value());
    }
}

TEST_CASE("who goes from the search field to what was found sees where the keys are")
{
    for (auto const key : { Qt::Key_Down, Qt::Key_Return, Qt::Key_Enter }) {
        Window test;
        test.type(Qt::Key_F, Qt::ControlModifier);
        test.write("IMG_1");
        CHECK_FALSE(test.model().cursor->has_value());
        test.type(key);
        CHECK(*test.model().cursor == 0U);
        CHECK(test.model().selection->empty());
        test.type(Qt::Key_Right);
        CHECK(*test.model().cursor == 1U);
    }
}

TEST_CASE("the photo that had the cursor before a search is in view after it")
{
    Window test(400);
    auto& grid = test.window.content().grid();
    test.type(Qt::Key_End);
    test.type(Qt::Key_F, Qt::ControlModifier);
    test.write("IMG_");
    grid.scrollTo(0);
    test.type(Qt::Key_Return);
    CHECK(*test.model().cursor == 399U);
    CHECK(grid.view().inView().contains(399));
}

TEST_CASE("Escape leaves the search field without a photo for the keys")
{
    Window test;
    test.type(Qt::Key_F, Qt::ControlModifier);
    test.type(Qt::Key_Escape);
    CHECK(test.hasGalleryFocus());
    CHECK_FALSE(test.model().cursor->has_value());
}

TEST_CASE("Return leaves the search field even if nothing is found")
{
    Window test;
    test.type(Qt::Key_F, Qt::ControlModifier);
    test.write("nirgends");
    CHECK(test.model().items->empty());
    CHECK(test.search().hasFocus());
    test.type(Qt::Key_Return);
    CHECK_FALSE(test.search().hasFocus());
    CHECK(test.search().text() == QStringLiteral("nirgends"));
}

TEST_CASE("keys that edit text edit it, whatever else they do in the gallery")
{
    Window test;
    test.model().toggle(0);
    test.type(Qt::Key_F, Qt::ControlModifier);
    test.write("IMG 1");
    test.type(Qt::Key_Backspace, Qt::ControlModifier);
    CHECK(test.search().text() == QStringLiteral("IMG "));
    test.type(Qt::Key_Z, Qt::ControlModifier);
    CHECK(test.search().text() == QStringLiteral("IMG 1"));
    test.type(Qt::Key_A, Qt::ControlModifier);
    CHECK(test.search().selectedText() == QStringLiteral("IMG 1"));
    test.type(Qt::Key_Delete);
    CHECK(test.search().text().isEmpty());
    CHECK(test.model().items->size() == 20);
    CHECK(test.desk.marked() == Names { "IMG_1.jpg" });
}

TEST_CASE("the search field empties itself when other folders are shown")
{
    Window test;
    test.type(Qt::Key_F, Qt::ControlModifier);
    test.write("1");
    test.desk.open("/Andere", { "a.jpg" });
    CHECK(test.search().text().isEmpty());
    CHECK(test.model().items->size() == 1);
}

TEST_CASE("the cross in the search field is there while there is a text, and empties it")
{
    Window test;
    auto const cross = [&]() -> QAbstractButton* {
        for (auto* button : test.search().findChildren<QAbstractButton*>())
            if (button->isVisible() && button->toolTip() == QStringLiteral("Filter löschen"))
                return button;
        return nullptr;
    };
    CHECK_FALSE(cross());
    test.type(Qt::Key_F, Qt::ControlModifier);
    test.write("1");
    REQUIRE(eventually([&] { return cross() != nullptr; }));
    test.press(*cross());
    CHECK(test.model().searchText->empty());
    CHECK(test.search().hasFocus());
}

TEST_CASE("dragging the slider's knob changes the size as it goes")
{
    Window test;
    auto& slider = test.slider();
    CHECK(slider.width() == 110);
    CHECK(slider.value() == 170);
    QTest::mousePress(&slider, Qt::LeftButton, {}, QPoint(34, slider.height() / 2));
    CHECK(test.model().thumbSize == 170); // the knob was taken, not moved
    std::set<double> sizes;
    for (int x = 40; x < 140; x += 5) {
        QTest::mouseMove(&slider, QPoint(x, slider.height() / 2));
        sizes.insert(test.model().thumbSize);
    }
    CHECK(test.model().thumbSize == 400);
    CHECK(sizes.size() > 10);
    QTest::mouseMove(&slider, QPoint(-20, 0));
    QTest::mouseRelease(&slider, Qt::LeftButton);
    CHECK(test.model().thumbSize == 80);
}

TEST_CASE("the slider follows the keys that change the size, and no other value comes of it")
{
    Window test;
    test.model().setThumbSize(150.4);
    test.desk.settle();
    CHECK(test.slider().value() == 150);
    CHECK(test.model().thumbSize == 150.4);
    test.write("+");
    CHECK(test.model().thumbSize == 180.4);
    CHECK(test.slider().value() == 180);
}

TEST_CASE("with the keyboard the slider is moved by its arrows, and the cursor is not")
{
    Window test;
    test.slider().setFocus();
    test.type(Qt::Key_Right);
    CHECK(test.model().thumbSize > 170);
    test.type(Qt::Key_Home);
    CHECK(test.model().thumbSize == 80);
    CHECK_FALSE(test.model().cursor->has_value());
}

TEST_CASE("a choice in the view menu sorts the photos, and the menu shows it the next time")
{
    Window test;
    auto& button = *test.bar().button(Item::view);
    test.choose(button, "Dateigröße");
    CHECK(*test.model().sortKey == SortKey::size);
    test.choose(button, "Aufsteigend");
    CHECK_FALSE(*test.model().ascending);
    test.inMenuOf(button, [&](QMenu& opened) {
        CHECK(Window::find(opened, "Dateigröße")->isChecked());
        CHECK_FALSE(Window::find(opened, "Name")->isChecked());
        CHECK_FALSE(Window::find(opened, "Aufsteigend")->isChecked());
        CHECK(Window::find(opened, "Dateinamen anzeigen")->isChecked());
        CHECK(Window::find(opened, "Name")->actionGroup()->isExclusive());
        auto const* const heading = opened.actions().front();
        CHECK(heading->text() == QStringLiteral("Sortieren nach"));
        CHECK_FALSE(heading->isSeparator()); // it stands in the column of the titles
        CHECK_FALSE(heading->isEnabled());
    });
}

TEST_CASE("the actions and share menus open with what they hold")
{
    Window test;
    test.sharing.installed = { { "mail", "E-Mail" } };
    test.choose(*test.bar().button(Item::actions), "Alle auswählen");
    CHECK(test.model().selection->size() == 20);
    test.choose(*test.bar().button(Item::share), "E-Mail");
    REQUIRE(test.sharing.shared.size() == 1);
    CHECK(test.sharing.shared[0].files.size() == 20);
}

TEST_CASE("a menu opens and its entry is chosen without a mouse")
{
    Window test;
    auto& button = *test.bar().button(Item::actions);
    button.setFocus();
    QTimer::singleShot(0, &button, [&] {
        REQUIRE(button.menu()->isVisible());
        QTest::keyClick(button.menu(), Qt::Key_Up);
        QTest::keyClick(button.menu(), Qt::Key_Return);
    });
    test.type(Qt::Key_Space);
    CHECK(test.model().selection->size() == 20); // "Auswahl umkehren" is the last
    CHECK_FALSE(test.model().viewerIndex->has_value());
}

TEST_CASE("the folder button opens the panel, by the mouse and by the keyboard")
{
    Window test;
    auto& button = test.bar().folderButton();
    CHECK(button.toolTip() == QStringLiteral("Ordner öffnen (⌘O)"));
    test.press(button);
    CHECK(test.desk.panels.requests.size() == 1);
    button.setFocus();
    test.type(Qt::Key_Return);
    CHECK(test.desk.panels.requests.size() == 2);
    CHECK_FALSE(test.model().viewerIndex->has_value());
}

TEST_CASE("the sidebar's button shows and hides the folders, and the menu bar says what comes next")
{
    Window test;
    auto& button = test.bar().sidebarButton();
    auto const says = [&](char const* title, char const* tip) {
        auto const wanted = QString::fromUtf8(title);
        CHECK(button.accessibleName() == wanted);
        CHECK(button.toolTip() == QString::fromUtf8(tip));
        auto const commands = test.window.findChildren<QAction*>();
        CHECK(std::ranges::any_of(commands,
            [&](QAction* command) { return command->text().remove(QLatin1Char('&')) == wanted; }));
    };
    says("Seitenleiste ausblenden", "Seitenleiste ausblenden (⌃⌘S)");
    test.press(button);
    CHECK_FALSE(test.window.content().showsSidebar());
    says("Seitenleiste einblenden", "Seitenleiste einblenden (⌃⌘S)");
    test.type(Qt::Key_F9);
    CHECK(test.window.content().showsSidebar());
    says("Seitenleiste ausblenden", "Seitenleiste ausblenden (⌃⌘S)");
    button.setFocus();
    test.type(Qt::Key_Return);
    CHECK_FALSE(test.window.content().showsSidebar());
    CHECK(test.window.focusWidget() == &button);
}

TEST_CASE("the tips follow the selection")
{
    Window test;
    auto const tip = [&](Item item) { return test.bar().button(item)->toolTip(); };
    CHECK(test.slider().toolTip() == QStringLiteral("Vorschaugröße (+ / −)"));
    CHECK(test.slider().parentWidget()->toolTip() == test.slider().toolTip());
    CHECK(tip(Item::slideshow) == QStringLiteral("Diashow aller Fotos (⇧⌘D)"));
    for (std::size_t i : { 1U, 2U, 3U })
        test.model().toggle(i);
    test.desk.settle();
    CHECK(tip(Item::slideshow) == QStringLiteral("Diashow der Auswahl (⇧⌘D)"));
    CHECK(tip(Item::trash)
        == QStringLiteral("3 ausgewählte Fotos in den Papierkorb (⌘⌫, rückgängig mit ⌘Z)"));
    test.model().selectNone();
    test.desk.settle();
    CHECK(tip(Item::trash) == QStringLiteral("In den Papierkorb (⌘⌫, rückgängig mit ⌘Z)"));
}

TEST_CASE("the trash button trashes what is marked, also when a text was being edited before")
{
    Window test;
    test.model().toggle(4);
    test.search().setFocus();
    test.press(*test.bar().button(Item::trash));
    CHECK(test.model().items->size() == 19);
    CHECK(test.hasGalleryFocus());
}

TEST_CASE("the actions menu trashes what is marked, also when a text was being edited before")
{
    Window test;
    test.model().toggle(4);
    test.search().setFocus();
    test.choose(*test.bar().button(Item::actions), "In den Papierkorb legen  (⌘⌫)");
    CHECK(test.model().items->size() == 19);
    CHECK(test.hasGalleryFocus());
}

TEST_CASE("a file that is dropped onto the search field is the window's, not its path the text's")
{
    Window test;
    CHECK_FALSE(test.search().acceptDrops());
    CHECK(test.window.content().acceptDrops());
}

TEST_CASE("menus that are opened again and again leave nothing behind")
{
    Window test;
    auto& button = *test.bar().button(Item::actions);
    auto const open = [&] { test.inMenuOf(button, [](QMenu&) {}); };
    open();
    auto const children = test.window.findChildren<QObject*>().size();
    for (int i = 0; i < 5; ++i)
        open();
    CHECK(test.window.findChildren<QObject*>().size() == children);
}

TEST_CASE("the toolbar is hidden while the viewer shows a photo, and nothing below it moves")
{
    Window test;
    auto& grid = test.window.content().grid();
    auto const place = QRect(grid.mapTo(&test.window, QPoint()), grid.size());
    auto const placeNow = [&] { return QRect(grid.mapTo(&test.window, QPoint()), grid.size()); };
    test.type(Qt::Key_Return);
    REQUIRE(test.model().viewerIndex->has_value());
    test.type(Qt::Key_F, Qt::ControlModifier); // while it fades in already
    CHECK_FALSE(test.search().hasFocus());
    CHECK(eventually([&] { return !test.bar().isVisible(); }));
    CHECK(placeNow() == place);
    test.type(Qt::Key_Escape);
    CHECK(test.bar().isVisible());
    CHECK(placeNow() == place);
    CHECK(eventually([&] { return !test.window.content().viewer()->isVisible(); }));
    CHECK(placeNow() == place);
    CHECK(test.bar().isVisible());
}

TEST_CASE("a viewer that is left while it fades in leaves the toolbar")
{
    Window test;
    test.type(Qt::Key_Return);
    test.type(Qt::Key_Escape);
    CHECK(eventually([&] { return !test.window.content().viewer()->isVisible(); }));
    CHECK(test.bar().isVisible());
}

TEST_CASE("in the smallest window everything has its place, side by side")
{
    Window test;
    for (int width : { 640, 800, 1000, 1200, 1920 }) {
        CAPTURE(width);
        test.window.resize(width, 420);
        REQUIRE(eventually([&] { return test.bar().width() == width; }));
        int right = 0;
        for (auto const& place : test.places()) {
            CHECK(place.left() >= right);
            CHECK(place.top() >= 0);
            CHECK(place.bottom() < test.bar().height());
            right = place.right();
        }
        CHECK(right < width);
        CHECK(test.controls().size() == 9); // nothing had to go
    }
}

TEST_CASE("what has no room is behind a button at the end of the group")
{
    Window test;
    ToolbarWidget bar(test.model(), nullptr, nullptr);
    bar.resize(300, bar.sizeHint().height());
    bar.show();
    CHECK(bar.moreButton().isVisible());
    CHECK(bar.slider().isVisible());
    CHECK_FALSE(bar.button(Item::share)->isVisible());
    test.inMenuOf(bar.moreButton(), [&](QMenu& opened) { CHECK(Window::find(opened, "Teilen")); });
    test.choose(bar.moreButton(), "Diashow");
    CHECK(*test.model().isSlideshow);
}

TEST_CASE("nothing in the bar moves, whatever is marked, typed and shown")
{
    Window test(1000);
    auto const before = test.places();
    test.model().selectAll();
    test.model().setSearchText(std::string(300, 'x'));
    test.model().showStatus(std::string(500, 'w'));
    test.desk.settle();
    CHECK(test.places() == before);
}

TEST_CASE("every control has a name, and Tab leads from one to the next")
{
    Window test;
    for (auto const* control : test.controls())
        CHECK_FALSE(control->accessibleName().isEmpty());
    test.bar().sidebarButton().setFocus();
    for (auto const* control : test.controls()) {
        CAPTURE(control->accessibleName().toStdString());
        CHECK(test.window.focusWidget() == control);
        test.type(Qt::Key_Tab);
    }
}
