#include "qt/app/AboutDialog.h"
#include "qt/app/MissingHoldsNote.h"
#include "qt/window/ProgramIcon.h"
#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <algorithm>
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

QStringList texts(QWidget const& dialog)
{
    QStringList texts;
    for (auto const* label : dialog.findChildren<QLabel*>())
        if (!label->text().isEmpty())
            texts += label->text();
    return texts;
}

} // namespace

TEST_CASE(
    "the program tells its name, version and licence, and what the system lacks only if it does")
{
    QCoreApplication::setApplicationVersion(QStringLiteral("1.2.3"));
    AboutDialog const plain({}, nullptr);
    CHECK(plain.windowTitle() == QStringLiteral("Über Pixelhain"));
    REQUIRE(texts(plain).size() == 4);
    CHECK(texts(plain)[0] == QStringLiteral("Pixelhain"));
    CHECK(texts(plain)[1] == QStringLiteral("Version 1.2.3"));
    CHECK(texts(plain)[3].contains(QStringLiteral("GPL-3.0-or-later")));
    AboutDialog const lacking("Landlock", nullptr);
    REQUIRE(texts(lacking).size() == 5);
    CHECK(texts(lacking)[4].endsWith(QStringLiteral("Dem Kernel fehlt: Landlock.")));
}

TEST_CASE("what tells about the program shows its mark")
{
    AboutDialog const dialog({}, nullptr);
    auto const labels = dialog.findChildren<QLabel*>();
    auto const mark = std::ranges::find_if(
        labels, [](QLabel const* label) { return !label->pixmap().isNull(); });
    REQUIRE(mark != labels.end());
    auto const shown = (*mark)->pixmap().toImage();
    CHECK(shown == programIcon().pixmap(QSize(64, 64), dialog.devicePixelRatio()).toImage());
}

TEST_CASE("nothing of what the program tells about itself is cut off")
{
    AboutDialog dialog("Landlock, seccomp", nullptr);
    dialog.show();
    for (auto const* label : dialog.findChildren<QLabel*>())
        if (!label->text().isEmpty())
            CHECK(label->height() >= label->heightForWidth(label->width()));
}

TEST_CASE(
    "what is told about the program opens once over its window and goes with Escape or Return")
{
    for (auto const key : { Qt::Key_Escape, Qt::Key_Return }) {
        QWidget window;
        window.show();
        AboutDialog::open(window, {});
        AboutDialog::open(window, {});
        auto const dialogs = window.findChildren<QDialog*>();
        REQUIRE(dialogs.size() == 1);
        CHECK(dialogs[0]->isVisible());
        CHECK(QApplication::activeModalWidget() == dialogs[0]);
        QTest::keyClick(dialogs[0], key);
        CHECK_FALSE(dialogs[0]->isVisible());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        CHECK(window.findChildren<QDialog*>().empty());
    }
}

TEST_CASE("what a thread notes of the system can be read by another")
{
    MissingHoldsNote note;
    CHECK(note.text().empty());
    note.write("Landlock");
    CHECK(note.text() == "Landlock");
}
