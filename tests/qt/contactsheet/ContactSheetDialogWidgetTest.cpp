#include "qt/contactsheet/ContactSheetDialogWidget.h"
#include "../../contactsheet/ExportDesk.h"
#include "qt/Wait.h"
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMainWindow>
#include <QPushButton>
#include <QSpinBox>
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

/// The dialog over a window with 40 photos.
struct Sheet {
    ExportDesk desk;
    QMainWindow window;
    ContactSheetPresenter presenter { desk.model(), desk.sheets, window };

    Sheet()
    {
        window.resize(900, 600);
        window.show();
        desk.openPhotos(40);
    }

    ContactSheetDialogWidget& open()
    {
        desk.model().setShowContactSheetDialog(true);
        desk.loop.settle();
        auto* const dialog = shown();
        REQUIRE(dialog);
        REQUIRE(QTest::qWaitForWindowExposed(dialog));
        return *dialog;
    }

    ContactSheetDialogWidget* shown() const
    {
        for (auto* const child : window.children())
            if (auto* const dialog = dynamic_cast<ContactSheetDialogWidget*>(child))
                return dialog;
        return nullptr;
    }

    bool isOpen()
    {
        desk.loop.settle();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return shown() != nullptr;
    }
};

QStringList labelsOf(QWidget const& widget)
{
    QStringList texts;
    for (auto const* label : widget.findChildren<QLabel*>())
        texts += label->text();
    return texts;
}

QPushButton* button(QWidget const& widget, QString const& text)
{
    for (auto* each : widget.findChildren<QPushButton*>())
        if (each->text() == text)
            return each;
    return nullptr;
}

} // namespace

TEST_CASE("the dialog can be closed, but not be made an icon of or fill the screen")
{
    Sheet test;
    auto const flags = test.open().windowFlags();
    CHECK(flags.testFlag(Qt::WindowCloseButtonHint));
    CHECK(flags.testFlag(Qt::CustomizeWindowHint));
    CHECK_FALSE(flags.testAnyFlags(Qt::WindowMinMaxButtonsHint));
}

TEST_CASE("the dialog shows what a sheet can be made of, in exact words and sizes")
{
    Sheet sheet;
    auto const& dialog = sheet.open();
    CHECK(dialog.windowModality() == Qt::WindowModal);
    CHECK(dialog.width() == 380);
    CHECK(dialog.layout()->spacing() == 14);
    CHECK(dialog.layout()->contentsMargins() == QMargins(20, 20, 20, 20));
    auto const labels = labelsOf(dialog);
    for (auto const* text : { "Kontaktabzug erstellen", "Alle 40 Fotos", "Titel", "Papier" })
        CHECK_MESSAGE(labels.contains(QString::fromUtf8(text)), text);
    CHECK(dialog.findChild<QLineEdit*>()->text() == QStringLiteral("Urlaub"));
    auto const* const columns = dialog.findChild<QSpinBox*>();
    CHECK(columns->text() == QStringLiteral("Spalten: 5"));
    CHECK(columns->accessibleName() == QStringLiteral("Spalten"));
    CHECK(columns->minimum() == 2);
    CHECK(columns->maximum() == 10);
    auto const* const paper = dialog.findChild<QComboBox*>();
    REQUIRE(paper->count() == 3);
    CHECK(paper->itemText(0) == QStringLiteral("A4"));
    CHECK(paper->itemText(1) == QStringLiteral("A3"));
    CHECK(paper->itemText(2) == QStringLiteral("US Letter"));
    CHECK(paper->currentIndex() == 0);
    auto const boxes = dialog.findChildren<QCheckBox*>();
    REQUIRE(boxes.size() == 2);
    CHECK(boxes[0]->text() == QStringLiteral("Querformat"));
    CHECK_FALSE(boxes[0]->isChecked());
    CHECK(boxes[1]->text() == QStringLiteral("Dateinamen anzeigen"));
    CHECK(boxes[1]->isChecked());
    auto const* const create = button(dialog, QStringLiteral("Erstellen …"));
    auto const* const cancel = button(dialog, QStringLiteral("Abbrechen"));
    REQUIRE(create);
    REQUIRE(cancel);
    CHECK(create->isDefault());
    CHECK(cancel->x() < create->x());
    CHECK(create->geometry().right() == 380 - 20 - 1);
}

TEST_CASE("the dialog is as high as its parts, and cannot be drawn apart")
{
    Sheet sheet;
    auto& dialog = sheet.open();
    auto const usual = dialog.size();
    CHECK(dialog.height() == dialog.sizeHint().height());
    dialog.resize(600, 900);
    CHECK(dialog.size() == usual);
    auto font = dialog.font();
    font.setPixelSize(30);
    for (auto* const part : dialog.findChildren<QWidget*>())
        part->setFont(font);
    CHECK(eventually([&] { return dialog.height() > usual.height(); }));
    CHECK(dialog.height() == dialog.sizeHint().height());
}

TEST_CASE("Escape and the cancel button close the dialog and do nothing else")
{
    for (bool const byKey : { true, false }) {
        Sheet sheet;
        auto& dialog = sheet.open();
        if (byKey)
            QTest::keyClick(&dialog, Qt::Key_Escape);
        else
            button(dialog, QStringLiteral("Abbrechen"))->click();
        CHECK_FALSE(sheet.isOpen());
        CHECK_FALSE(sheet.desk.model().showContactSheetDialog);
        CHECK(sheet.desk.panels.saveRequests.empty());
    }
}

TEST_CASE("Return in any control creates the sheet with what was chosen")
{
    Sheet sheet;
    auto& dialog = sheet.open();
    auto* const title = dialog.findChild<QLineEdit*>();
    title->selectAll();
    QTest::keyClicks(title, QStringLiteral("Sommer"));
    auto* const columns = dialog.findChild<QSpinBox*>();
    QTest::keyClick(columns, Qt::Key_Up);
    CHECK(columns->text() == QStringLiteral("Spalten: 6"));
    dialog.findChild<QComboBox*>()->setCurrentIndex(2);
    for (auto* const box : dialog.findChildren<QCheckBox*>())
        box->click();
    QTest::keyClick(columns, Qt::Key_Return);
    CHECK_FALSE(sheet.desk.model().showContactSheetDialog);
    CHECK_FALSE(sheet.isOpen());
    REQUIRE(sheet.desk.panels.saveRequests.size() == 1);
    sheet.desk.panels.choose(FileUrl("/Urlaub/a.pdf"));
    sheet.desk.settle();
    auto const& written = *sheet.desk.pdf().written.at(0);
    CHECK(written.document.title == "Sommer");
    CHECK(written.document.page == PageSize { 792, 612 });
    CHECK(written.pages[0].labels.empty());
    CHECK(written.pages[0].fills.at(0).width == doctest::Approx((720 - 50) / 6.0));
}

TEST_CASE("each opening begins anew")
{
    Sheet sheet;
    auto& first = sheet.open();
    first.findChild<QSpinBox*>()->setValue(9);
    first.reject();
    CHECK_FALSE(sheet.isOpen());
    CHECK(sheet.open().findChild<QSpinBox*>()->value() == 5);
}

TEST_CASE("closing the dialog's window is cancelling")
{
    Sheet sheet;
    sheet.open().close();
    CHECK_FALSE(sheet.isOpen());
    CHECK_FALSE(sheet.desk.model().showContactSheetDialog);
}
