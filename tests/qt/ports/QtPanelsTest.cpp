#include "qt/ports/QtPanels.h"
#include "qt/Wait.h"
#include "support/TemporaryFolder.h"
#include <QApplication>
#include <QFileDialog>
#include <QLabel>
#include <QPushButton>
#include <doctest/doctest.h>
#include <optional>

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
