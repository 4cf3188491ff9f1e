#include "qt/app/AboutDialog.h"
#include "app/AboutText.h"
#include "qt/ports/FileUrlText.h"
#include "qt/window/PlainDialog.h"
#include "qt/window/ProgramIcon.h"
#include <QApplication>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

namespace pixelhain {

namespace {

constexpr int iconEdge = 64; // points
constexpr int textWidth = 340;

QLabel* line(std::string_view text, QWidget* parent)
{
    auto* const label = new QLabel(shownText(text), parent);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setWordWrap(true);
    label->setFixedWidth(textWidth);
    return label;
}

QLabel* heading(std::string_view text, QWidget* parent)
{
    auto* const label = line(text, parent);
    auto font = label->font();
    font.setPointSizeF(font.pointSizeF() * 1.6);
    font.setBold(true);
    label->setFont(font);
    return label;
}

QLabel* icon(QWidget* parent)
{
    auto* const label = new QLabel(parent);
    label->setPixmap(programIcon().pixmap(QSize(iconEdge, iconEdge), parent->devicePixelRatio()));
    return label;
}

} // namespace

AboutDialog::AboutDialog(std::string const& missingHolds, QWidget* parent)
    : QDialog(parent)
{
    setWindowTitle(shownText(about::windowTitle));
    setWindowModality(Qt::WindowModal);
    setWindowFlags(plainDialogFlags);
    auto* const grid = new QGridLayout(this);
    grid->setSizeConstraint(QLayout::SetFixedSize);
    grid->setHorizontalSpacing(18);
    grid->addWidget(icon(this), 0, 0, 3, 1, Qt::AlignTop);
    int row = 0;
    grid->addWidget(heading(about::name, this), row++, 1);
    auto const version = QCoreApplication::applicationVersion().toStdString();
    grid->addWidget(line(about::version(version), this), row++, 1);
    grid->addWidget(line(about::purpose, this), row++, 1);
    grid->addWidget(line(about::licence, this), row++, 1);
    if (auto const missing = about::missingHolds(missingHolds); !missing.empty())
        grid->addWidget(line(missing, this), row++, 1);
    auto* const buttons = new QDialogButtonBox(this);
    auto* const close
        = buttons->addButton(shownText(about::closeButton), QDialogButtonBox::RejectRole);
    close->setDefault(true);
    close->setFocus();
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    grid->addWidget(buttons, row, 0, 1, 2);
}

void AboutDialog::open(QWidget& window, std::string const& missingHolds)
{
    for (auto* const child : window.children())
        if (auto* const dialog = dynamic_cast<AboutDialog*>(child)) {
            dialog->raise();
            dialog->activateWindow();
            return;
        }
    auto* const dialog = new AboutDialog(missingHolds, &window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->show();
}

} // namespace pixelhain
