#include "qt/window/Gallery.h"
#include "qt/window/MainWindowWidget.h"
#include <QClipboard>
#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <array>
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

// The main window with its menus, a field for text in it, and two hands on the keyboard.
struct Menus {
    Desk desk;
    FakeThumbnails thumbnails;
    BrowserModel& model = desk.model();
    MainWindowWidget window { { model, thumbnails, desk.background, desk.loop },
        desk.sidebarPorts() };
    QLineEdit* field = new QLineEdit(&window);

    explicit Menus(int count = 5)
    {
        window.show();
        field->show();
        window.activateWindow();
        REQUIRE(QTest::qWaitForWindowActive(&window)); // no shortcut works without
        desk.settle();
        if (count > 0)
            desk.open("/Fotos", Gallery::names(count));
        window.content().grid().setFocus();
    }

    void type(Qt::Key key, Qt::KeyboardModifiers held = {})
    {
        QTest::keyClick(window.focusWidget() ? window.focusWidget() : &window, key, held);
        desk.settle();
    }

    void edit(char const* text)
    {
        field->setText(QString::fromUtf8(text));
        field->setFocus();
        field->selectAll();
        REQUIRE(window.isEditingText());
    }

    static QString title(QAction const& action)
    {
        auto text = action.text();
        for (auto at = text.indexOf(QLatin1Char('&')); at >= 0;
             at = text.indexOf(QLatin1Char('&'), at + 1))
            text.remove(at, 1);
        return text;
    }

    static QMenu* openMenu() { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); }

    QMenu* menu(char const* name) const
    {
        for (auto* action : window.menuBar()->actions())
            if (title(*action) == QString::fromUtf8(name))
                return action->menu();
        return nullptr;
    }

    QAction* operator[](char const* name) const
    {
        for (auto* bar : window.menuBar()->actions())
            for (auto* action : bar->menu()->actions())
                if (title(*action) == QString::fromUtf8(name))
                    return action;
        FAIL(name);
        return nullptr;
    }

    QStringList lines(char const* submenu) const
    {
        QStringList all;
        for (auto const* action : (*this)[submenu]->menu()->actions())
            all += title(*action);
        return all;
    }

    QStringList checked(char const* submenu) const
    {
        QStringList all;
        for (auto const* action : (*this)[submenu]->menu()->actions())
            if (action->isChecked())
                all += title(*action);
        return all;
    }

    void choose(char const* submenu, int line)
    {
        (*this)[submenu]->menu()->actions().at(line)->trigger();
        desk.settle();
    }

    void choose(char const* command)
    {
        (*this)[command]->trigger();
        desk.settle();
    }
};

QStringList strings(std::initializer_list<char const*> texts)
{
    QStringList all;
    for (auto const* text : texts)
        all += QString::fromUtf8(text);
    return all;
}

} // namespace

TEST_CASE("the bar has five menus with letters of their own, and so has each of their lines")
{
    Menus const menus;
    QStringList titles;
    auto const lettersDiffer = [](QList<QAction*> const& actions) {
        QString letters;
        for (auto const* action : actions) {
            if (action->isSeparator())
                continue;
            auto const letter = action->text().section(QLatin1Char('&'), 1, 1).left(1).toLower();
            CHECK_MESSAGE(!letter.isEmpty(), action->text().toStdString());
            CHECK_MESSAGE(!letters.contains(letter), action->text().toStdString());
            letters += letter;
        }
    };
    lettersDiffer(menus.window.menuBar()->actions());
    for (auto const* action : menus.window.menuBar()->actions()) {
        titles += Menus::title(*action);
        lettersDiffer(action->menu()->actions());
    }
    CHECK(titles == strings({ "Datei", "Bearbeiten", "Ansicht", "Fotos", "Hilfe" }));
}

TEST_CASE("beside a title stands the command's own key, or else that of this desktop")
{
    Menus const menus;
    auto const shown = [&](char const* title) { return menus[title]->shortcut(); };
    CHECK(shown("Neu laden") == QKeySequence(Qt::CTRL | Qt::Key_R));
    CHECK(shown("Ordnerliste aktualisieren") == QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_R));
    CHECK(shown("Übergeordneter Ordner") == QKeySequence(Qt::CTRL | Qt::Key_Up));
    CHECK(shown("Seitenleiste ausblenden") == QKeySequence(Qt::META | Qt::CTRL | Qt::Key_S));
    CHECK(shown("Diashow starten") == QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_D));
    CHECK(shown("Pixelhain-Hilfe") == QKeySequence(Qt::CTRL | Qt::Key_Question));
    CHECK(shown("Vollbild") == QKeySequence(Qt::Key_F11));
    CHECK(shown("Kopieren") == QKeySequence(Qt::CTRL | Qt::Key_C));
    CHECK(shown("Alle auswählen  (⌘A)").isEmpty());
    CHECK(menus["In den Papierkorb legen"]->shortcuts()
        == QList<QKeySequence> {
            QKeySequence(Qt::CTRL | Qt::Key_Backspace), QKeySequence(Qt::Key_Delete) });
}

TEST_CASE("check marks follow the model, and turn it")
{
    Menus menus;
    CHECK(menus["Dateinamen anzeigen"]->isChecked());
    CHECK_FALSE(menus["Diashow zufällig"]->isChecked());
    menus.model.setShowFilenames(false);
    menus.model.setSlideshowShuffle(true);
    menus.desk.settle();
    CHECK_FALSE(menus["Dateinamen anzeigen"]->isChecked());
    CHECK(menus["Diashow zufällig"]->isChecked());
    for (char const* title : { "Diashow zufällig", "Infos einblenden  (I)", "Dateinamen anzeigen",
             "Auflösung anzeigen" }) {
        CHECK(menus[title]->isCheckable());
        bool const before = menus[title]->isChecked();
        menus.choose(title);
        CHECK(menus[title]->isChecked() != before);
    }
    CHECK_FALSE(*menus.model.slideshowShuffle);
    CHECK(*menus.model.showInfo);
    CHECK(*menus.model.showFilenames);
    CHECK_FALSE(*menus.model.showResolution);
}

TEST_CASE("of the intervals the one that is set is checked, or none")
{
    Menus menus;
    constexpr auto* interval = "Diashow-Intervall";
    CHECK(menus.lines(interval)
        == strings({ "2 Sekunden", "3 Sekunden", "4 Sekunden", "6 Sekunden", "10 Sekunden",
            "20 Sekunden" }));
    CHECK(menus.checked(interval) == strings({ "4 Sekunden" }));
    menus.choose(interval, 4);
    CHECK(*menus.model.slideshowInterval == 10.0);
    CHECK(menus.checked(interval) == strings({ "10 Sekunden" }));
    menus.choose(interval, 4);
    CHECK(menus.checked(interval) == strings({ "10 Sekunden" }));
    menus.model.setSlideshowInterval(4.5);
    menus.desk.settle();
    CHECK(menus.checked(interval).isEmpty());
}

TEST_CASE("a command that is disabled cannot be reached by its key")
{
    Menus menus(0);
    menus.type(Qt::Key_D, Qt::ControlModifier | Qt::ShiftModifier);
    CHECK_FALSE(*menus.model.isSlideshow);
    menus.type(Qt::Key_P, Qt::ControlModifier);
    CHECK_FALSE(*menus.model.showContactSheetDialog);
    for (auto const* title : { "Diashow starten", "Kontaktabzug (PDF) …", "Zuletzt geöffnet",
             "Übergeordneter Ordner", "Papierkorb rückgängig" })
        CHECK_FALSE(menus[title]->isEnabled());
    menus.desk.open("/Fotos", Gallery::names(3));
    CHECK(menus["Übergeordneter Ordner"]->isEnabled());
    menus.type(Qt::Key_Up, Qt::AltModifier);
    CHECK(*menus.model.rootFolder == FileUrl("/"));
    CHECK_FALSE(menus["Übergeordneter Ordner"]->isEnabled());
    menus.type(Qt::Key_P, Qt::ControlModifier);
    CHECK(*menus.model.showContactSheetDialog);
    menus.type(Qt::Key_D, Qt::ControlModifier | Qt::ShiftModifier);
    CHECK(*menus.model.isSlideshow);
    CHECK(Menus::title(*menus["Diashow beenden"]) == QStringLiteral("Diashow beenden"));
    menus.type(Qt::Key_D, Qt::ControlModifier | Qt::ShiftModifier);
    CHECK_FALSE(*menus.model.isSlideshow);
}

TEST_CASE("a rule counts that has changed since the menus were last looked at")
{
    Menus menus;
    auto* const sheet = menus["Kontaktabzug (PDF) …"];
    menus.model.selectFolders({ menus.desk.folder("/Leer") }, FocusGallery::no);
    REQUIRE(sheet->isEnabled());
    sheet->trigger();
    CHECK_FALSE(*menus.model.showContactSheetDialog);
}

TEST_CASE("Ctrl+C copies the photos, and the text while that is edited")
{
    Menus menus;
    menus.type(Qt::Key_Right);
    menus.type(Qt::Key_C, Qt::ControlModifier);
    CHECK(menus.desk.clipboard.contents == std::vector { FileUrl("/Fotos/IMG_1.jpg") });
    menus.desk.clipboard.contents.clear();
    menus.edit("Worte");
    menus.type(Qt::Key_C, Qt::ControlModifier);
    CHECK(menus.desk.clipboard.contents.empty());
    CHECK(QGuiApplication::clipboard()->text() == QStringLiteral("Worte"));
}

TEST_CASE("what people press while they type belongs to the text, whatever the field does with it")
{
    Menus menus;
    menus.type(Qt::Key_Right);
    menus.type(Qt::Key_Delete);
    REQUIRE(*menus.model.canUndoTrash);
    constexpr std::array keys { Qt::Key_Z, Qt::Key_A, Qt::Key_C, Qt::Key_X, Qt::Key_V,
        Qt::Key_Backspace };
    for (bool const isReadOnly : { false, true })
        for (auto const* text : { "", "eins zwei" }) {
            menus.field->setReadOnly(isReadOnly);
            for (auto const key : keys) {
                menus.edit(text);
                menus.type(key, Qt::ControlModifier);
            }
            menus.edit(text);
            menus.type(Qt::Key_Delete);
            CHECK(menus.field->text() == QString::fromUtf8(isReadOnly ? text : ""));
        }
    CHECK(menus.model.items->size() == 4);
    CHECK(*menus.model.canUndoTrash);
    CHECK(menus.model.selection->empty());
    CHECK(menus.desk.clipboard.contents.empty());
    menus.window.focusGallery();
    menus.type(Qt::Key_Z, Qt::ControlModifier);
    CHECK(menus.model.items->size() == 5);
}

TEST_CASE("the other keys of the menus work while text is edited")
{
    Menus menus;
    menus.edit("Worte");
    auto const generation = menus.model.scanGeneration();
    menus.type(Qt::Key_F5);
    menus.type(Qt::Key_R, Qt::ControlModifier);
    CHECK(menus.model.scanGeneration() == generation + 2);
    menus.type(Qt::Key_F9);
    CHECK_FALSE(menus.window.content().showsSidebar());
    CHECK(menus["Seitenleiste einblenden"]->isEnabled());
    menus.type(Qt::Key_F9);
    CHECK(menus.window.content().showsSidebar());
}

TEST_CASE(
    "the menu cuts, copies and pastes the text that is edited, also for who walks there by keys")
{
    Menus menus;
    auto* const cut = menus["Ausschneiden"];
    auto* const paste = menus["Einfügen"];
    auto const look = [&] { emit menus.menu("Bearbeiten")->aboutToShow(); };
    look();
    for (auto const* title : { "Ausschneiden", "Einfügen" })
        CHECK_FALSE(menus[title]->isEnabled());
    for (auto const* title : { "Kopieren", "Alles auswählen" })
        CHECK(menus[title]->isEnabled()); // the photos
    menus.edit("Worte");
    look();
    CHECK(cut->isEnabled());
    cut->trigger();
    menus.window.menuBar()->setFocus();
    CHECK(menus.field->text().isEmpty());
    look();
    CHECK_FALSE(cut->isEnabled());
    CHECK_FALSE(menus["Alles auswählen"]->isEnabled());
    paste->trigger();
    paste->trigger();
    CHECK(menus.field->text() == QStringLiteral("WorteWorte"));
    look();
    menus.choose("Alles auswählen");
    CHECK(menus.field->selectedText() == QStringLiteral("WorteWorte"));
    look();
    menus.choose("Kopieren");
    CHECK(QGuiApplication::clipboard()->text() == QStringLiteral("WorteWorte"));
    menus.window.focusGallery();
    look();
    CHECK_FALSE(paste->isEnabled());
}

TEST_CASE("one Escape closes a menu and gives the keyboard back to what had it")
{
    Menus menus;
    auto const hasKeyboard = [&](QWidget& widget) {
        return eventually(
            [&] { return menus.window.focusWidget() == &widget && !menus.openMenu(); });
    };
    for (bool const isTyping : { false, true }) {
        QWidget& before
            = isTyping ? static_cast<QWidget&>(*menus.field) : menus.window.content().grid();
        before.setFocus();
        menus.type(Qt::Key_D, Qt::AltModifier);
        REQUIRE(menus.openMenu() == menus.menu("Datei"));
        QTest::keyClick(menus.openMenu(), Qt::Key_Right);
        REQUIRE(menus.openMenu() == menus.menu("Bearbeiten"));
        QTest::keyClick(menus.openMenu(), Qt::Key_Escape);
        CHECK(hasKeyboard(before));
    }
    menus.window.focusGallery();
    menus.type(Qt::Key_Right);
    CHECK(*menus.model.cursor == 0U);
}

TEST_CASE("F10 opens the first menu at its first line, and Escape gives the keyboard back")
{
    Menus menus;
    menus.type(Qt::Key_F10);
    REQUIRE(menus.openMenu() == menus.menu("Datei"));
    CHECK(menus.openMenu()->activeAction() == menus["Ordner öffnen …"]);
    QTest::keyClick(menus.openMenu(), Qt::Key_Escape);
    CHECK(eventually([&] {
        return !menus.openMenu() && menus.window.focusWidget() == &menus.window.content().grid();
    }));
}

TEST_CASE("a bar that had the keyboard when another window took it does not keep it")
{
    Menus menus;
    menus.window.menuBar()->setFocus();
    CHECK(eventually([&] { return menus.window.focusWidget() == &menus.window.content().grid(); }));
}

TEST_CASE("while a dialog is open no key reaches the menus")
{
    Menus menus;
    auto const generation = menus.model.scanGeneration();
    QDialog dialog(&menus.window);
    dialog.setWindowModality(Qt::WindowModal);
    dialog.open();
    REQUIRE(QTest::qWaitForWindowActive(&dialog));
    QTest::keyClick(&dialog, Qt::Key_F5);
    QTest::keyClick(&dialog, Qt::Key_O, Qt::ControlModifier);
    menus.desk.settle();
    CHECK(menus.model.scanGeneration() == generation);
    CHECK(menus.desk.panels.requests.empty());
}

TEST_CASE("F11 fills the screen with the window and gives it back, and the menu shows it")
{
    Menus menus;
    auto& window = menus.window;
    menus.type(Qt::Key_F11);
    CHECK(eventually([&] { return window.MainWindowWidget::isFullScreen(); }));
    CHECK(menus["Vollbild"]->isChecked());
    menus.type(Qt::Key_F11);
    CHECK(eventually([&] { return !window.MainWindowWidget::isFullScreen(); }));
    CHECK_FALSE(menus["Vollbild"]->isChecked());
}

TEST_CASE("the folders opened last can be opened again and forgotten")
{
    Menus menus(0);
    constexpr auto* recent = "Zuletzt geöffnet";
    menus.desk.open("/m/2023/Urlaub", { "1.jpg" });
    menus.desk.open("/m/2024/Urlaub", { "2.jpg" });
    CHECK(menus[recent]->isEnabled());
    CHECK(menus.lines(recent) == strings({ "2024/Urlaub", "2023/Urlaub", "", "Liste leeren" }));
    menus.choose(recent, 1);
    CHECK(menus.desk.names() == Names { "1.jpg" });
    CHECK(menus.lines(recent) == strings({ "2023/Urlaub", "2024/Urlaub", "", "Liste leeren" }));
    menus.desk.files.remove(FileUrl("/m/2024"));
    menus.choose(recent, 1);
    CHECK(menus.desk.status() == "Der Ordner „Urlaub“ ist nicht da");
    CHECK(menus.lines(recent) == strings({ "2023/Urlaub", "2024/Urlaub", "", "Liste leeren" }));
    menus.choose(recent, 3);
    CHECK(menus.model.recentFolders->empty());
    CHECK_FALSE(menus[recent]->isEnabled());
}

TEST_CASE("two folders that look alike open as what they are")
{
    Menus menus(0);
    menus.desk.open("/m/\xE4", { "1.jpg" });
    menus.desk.open("/m/\xFC", { "2.jpg" });
    menus.choose("Zuletzt geöffnet", 1);
    CHECK(menus.desk.names() == Names { "1.jpg" });
    menus.choose("Zuletzt geöffnet", 1);
    CHECK(menus.desk.names() == Names { "2.jpg" });
}

TEST_CASE("the name of a folder stands in the menu as it is, on one line of bearable length")
{
    Menus menus(0);
    menus.desk.open("/m/Tom & Eva\tF1\n<b>", {});
    menus.desk.open("/m/" + std::string(200, 'w') + "ende", {});
    auto const lines = menus.lines("Zuletzt geöffnet");
    CHECK(lines[1] == QStringLiteral("Tom & Eva F1 <b>"));
    CHECK(lines[0].size() < 60);
    CHECK(lines[0].endsWith(QStringLiteral("ende")));
    auto const* const entry = menus["Zuletzt geöffnet"]->menu()->actions().at(1);
    CHECK(entry->toolTip().contains(QStringLiteral("&lt;b&gt;")));
}

TEST_CASE("the menu of help tells about the program")
{
    Menus menus;
    int told = 0;
    menus.window.openAbout = [&] { ++told; };
    menus.choose("Über Pixelhain");
    CHECK(told == 1);
}

TEST_CASE("quitting is left to the program, which knows its other windows")
{
    Menus menus;
    int times = 0;
    menus.window.quit = [&] { ++times; };
    menus.type(Qt::Key_Q, Qt::ControlModifier);
    CHECK(times == 1);
    CHECK(menus.window.isVisible());
}
