#include "qt/ports/QtPanels.h"
#include "qt/Wait.h"
#include "support/TemporaryFolder.h"
#include <QApplication>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <doctest/doctest.h>
#include <optional>
#include <utility>

using namespace pixelhain;

namespace {

struct PanelDesk {
    QWidget window;
    QtPanels panels;
    TemporaryFolder folder;
    std::optional<FileUrl> chosen;

    PanelDesk()
    {
        window.show();
        panels.setParent(&window);
    }

    QFileDialog* ask(bool mayCreateFolders)
    {
        panels.chooseFolder(
            { "Hierher verschieben", "3 Fotos verschieben nach …", folder.url(), mayCreateFolders },
            [this](FileUrl const& url) { chosen = url; });
        return window.findChild<QFileDialog*>();
    }
};

} // namespace

TEST_CASE("the panel asks in the given words for a folder, starting in the given one")
{
    PanelDesk desk;
    auto* const dialog = desk.ask(true);
    REQUIRE(dialog);
    CHECK(dialog->windowTitle() == QStringLiteral("3 Fotos verschieben nach …"));
    CHECK(dialog->labelText(QFileDialog::Accept) == QStringLiteral("Hierher verschieben"));
    CHECK(dialog->fileMode() == QFileDialog::Directory);
    CHECK(dialog->testOption(QFileDialog::ShowDirsOnly));
    CHECK(dialog->directory().absolutePath() == QString::fromUtf8(desk.folder.url().cString()));
    CHECK(dialog->windowModality() == Qt::WindowModal);
}

TEST_CASE("folders can be made in the panel only where that is allowed")
{
    PanelDesk moving;
    CHECK_FALSE(moving.ask(true)->testOption(QFileDialog::ReadOnly));
    PanelDesk opening;
    CHECK(opening.ask(false)->testOption(QFileDialog::ReadOnly));
}

TEST_CASE("the chosen folder is told, a panel that is dismissed tells nothing")
{
    PanelDesk desk;
    auto* dialog = desk.ask(true);
    dialog->reject();
    CHECK(eventually([&] { return !desk.window.findChild<QFileDialog*>(); }));
    CHECK_FALSE(desk.chosen.has_value());
    auto const inner = desk.folder.url().child("Urlaub");
    std::filesystem::create_directory(std::filesystem::path(inner.path()));
    dialog = desk.ask(true);
    dialog->selectFile(QStringLiteral("Urlaub"));
    static_cast<QDialog*>(dialog)->accept();
    CHECK(desk.chosen == inner);
}

namespace {

struct SaveDesk : PanelDesk {
    QFileDialog* ask()
    {
        panels.chooseSaveFile({ "Kontaktabzug Urlaub.pdf", "PDF", "pdf", folder.url() },
            [this](FileUrl const& url) { chosen = url; });
        return window.findChild<QFileDialog*>();
    }

    /// Types a name into the panel and presses its button.
    void save(QString const& name)
    {
        auto* const dialog = ask();
        REQUIRE(dialog);
        dialog->selectFile(dialog->directory().filePath(name));
        static_cast<QDialog*>(dialog)->accept();
        CHECK(eventually([&] { return chosen || question(); }));
    }

    QMessageBox* question() const
    {
        for (auto* const widget : QApplication::topLevelWidgets())
            if (auto* const box = qobject_cast<QMessageBox*>(widget); box && box->isVisible())
                return box;
        return nullptr;
    }
};

} // namespace

TEST_CASE("the panel for a new file proposes name, type and folder, and lets folders be made")
{
    SaveDesk desk;
    auto* const dialog = desk.ask();
    REQUIRE(dialog);
    CHECK(dialog->acceptMode() == QFileDialog::AcceptSave);
    CHECK(dialog->nameFilters() == QStringList { QStringLiteral("PDF (*.pdf)") });
    CHECK(dialog->defaultSuffix() == QStringLiteral("pdf"));
    CHECK_FALSE(dialog->testOption(QFileDialog::ReadOnly));
    CHECK_FALSE(dialog->testOption(QFileDialog::DontConfirmOverwrite));
    CHECK(dialog->windowModality() == Qt::WindowModal);
    CHECK(dialog->directory().absolutePath() == QString::fromUtf8(desk.folder.url().cString()));
    REQUIRE(!dialog->selectedFiles().isEmpty());
    CHECK(dialog->selectedFiles().first().endsWith(QStringLiteral("/Kontaktabzug Urlaub.pdf")));
    dialog->reject();
    CHECK_FALSE(desk.chosen.has_value());
}

TEST_CASE("what is chosen ends in the type's ending, whatever other ending it has")
{
    for (auto const& [typed, chosen] : { std::pair("a.pdf", "a.pdf"), std::pair("b", "b.pdf"),
             std::pair("Sommer 1.5", "Sommer 1.5.pdf"), std::pair("c.PDF", "c.PDF") }) {
        SaveDesk desk;
        desk.save(QString::fromUtf8(typed));
        REQUIRE(desk.chosen.has_value());
        CHECK(desk.chosen->name() == chosen);
    }
}

TEST_CASE("a file that only the added ending would hit is replaced only after asking")
{
    for (bool const agrees : { false, true }) {
        SaveDesk desk;
        desk.folder.file("Sommer 1.5.pdf", "old");
        desk.save(QStringLiteral("Sommer 1.5"));
        auto* const question = desk.question();
        REQUIRE(question);
        CHECK(question->text()
            == QStringLiteral("„Sommer 1.5.pdf“ ist schon vorhanden. Soll die Datei ersetzt "
                              "werden?"));
        CHECK_FALSE(desk.chosen.has_value());
        for (auto* const button : question->buttons())
            if ((question->buttonRole(button) == QMessageBox::AcceptRole) == agrees) {
                button->click();
                break;
            }
        CHECK(eventually([&] { return !desk.question(); }));
        CHECK(desk.chosen.has_value() == agrees);
    }
}
