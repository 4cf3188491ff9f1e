#include "qt/contactsheet/ContactSheetDialogWidget.h"
#include "contactsheet/ContactSheetExport.h"
#include "model/BrowserModel.h"
#include "qt/ports/FileUrlText.h"
#include "qt/window/PlainDialog.h"
#include "qt/window/Tones.h"
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

namespace pixelhain {

namespace {

QLabel* makeLabel(std::string_view text, QFont const& font)
{
    auto* const label = new QLabel(shownText(text));
    label->setTextFormat(Qt::PlainText);
    label->setFont(font);
    return label;
}

QFont headlineFont(QFont font)
{
    font.setBold(true);
    return font;
}

} // namespace

ContactSheetDialogWidget::ContactSheetDialogWidget(
    BrowserModel& model, ContactSheetExport& sheets, QWidget* parent)
    : QDialog(parent)
    , dialog_(model, sheets)
{
    setWindowTitle(shownText(ContactSheetDialog::heading));
    setWindowModality(Qt::WindowModal);
    setWindowFlags(plainDialogFlags);
    auto* const stack = new QVBoxLayout(this);
    constexpr int padding = static_cast<int>(ContactSheetDialog::padding);
    // As high as its parts are, also with another font; there is nothing to be had by more.
    stack->setSizeConstraint(QLayout::SetFixedSize);
    stack->addStrut(static_cast<int>(ContactSheetDialog::width) - 2 * padding);
    stack->setContentsMargins(padding, padding, padding, padding);
    stack->setSpacing(static_cast<int>(ContactSheetDialog::spacing));
    stack->addWidget(makeLabel(ContactSheetDialog::heading, headlineFont(font())));
    stack->addWidget(makeLabel(dialog_.countText(), scaledFont(font(), calloutScale)));
    auto* const form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    addOptions(*form);
    stack->addLayout(form);
    stack->addLayout(makeButtons());
}

void ContactSheetDialogWidget::addOptions(QFormLayout& form)
{
    auto const& options = dialog_.options();
    auto* const title = new QLineEdit(shownText(options.title));
    title->setAcceptDrops(false); // a file would be taken from where it is, for its path
    title->selectAll();
    connect(title, &QLineEdit::textChanged, this,
        [this](QString const& text) { dialog_.setTitle(text.toStdString()); });
    form.addRow(shownText(ContactSheetDialog::titleLabel), title);

    auto* const columns = new QSpinBox;
    auto const number = QString::number(options.columns);
    columns->setRange(ContactSheetOptions::leastColumns, ContactSheetOptions::mostColumns);
    columns->setPrefix(shownText(dialog_.columnsText()).chopped(number.size()));
    columns->setValue(options.columns);
    columns->setAccessibleName(shownText(ContactSheetDialog::columnsName));
    connect(
        columns, &QSpinBox::valueChanged, this, [this](int value) { dialog_.setColumns(value); });
    form.addRow(QString(), columns);

    auto* const paper = new QComboBox;
    for (auto const size : paperSizes)
        paper->addItem(shownText(titleOf(size)), static_cast<int>(size));
    paper->setCurrentIndex(paper->findData(static_cast<int>(options.paper)));
    connect(paper, &QComboBox::currentIndexChanged, this,
        [this](int index) { dialog_.setPaper(paperSizes.at(static_cast<std::size_t>(index))); });
    form.addRow(shownText(ContactSheetDialog::paperLabel), paper);

    auto* const landscape = new QCheckBox(shownText(ContactSheetDialog::landscapeTitle));
    landscape->setChecked(options.landscape);
    connect(landscape, &QCheckBox::toggled, this, [this](bool on) { dialog_.setLandscape(on); });
    form.addRow(QString(), landscape);

    auto* const names = new QCheckBox(shownText(ContactSheetDialog::namesTitle));
    names->setChecked(options.showNames);
    connect(names, &QCheckBox::toggled, this, [this](bool on) { dialog_.setShowNames(on); });
    form.addRow(QString(), names);
}

QLayout* ContactSheetDialogWidget::makeButtons()
{
    auto* const row = new QHBoxLayout;
    auto* const cancel = new QPushButton(shownText(ContactSheetDialog::cancelTitle));
    auto* const create = new QPushButton(shownText(ContactSheetDialog::createTitle));
    cancel->setAutoDefault(false);
    create->setDefault(true);
    connect(cancel, &QPushButton::clicked, this, [this] { reject(); });
    connect(create, &QPushButton::clicked, this, [this] { accept(); });
    row->addStretch();
    row->addWidget(cancel);
    row->addWidget(create);
    return row;
}

void ContactSheetDialogWidget::accept()
{
    QDialog::accept();
    dialog_.create();
}

void ContactSheetDialogWidget::reject()
{
    QDialog::reject();
    dialog_.cancel();
}

ContactSheetPresenter::ContactSheetPresenter(
    BrowserModel& model, ContactSheetExport& sheets, QWidget& window)
    : model_(model)
    , sheets_(sheets)
    , window_(window)
    , observation_(model.observe([this] { modelChanged(); }))
{
}

ContactSheetPresenter::~ContactSheetPresenter()
{
    delete shown_;
}

void ContactSheetPresenter::modelChanged()
{
    if (model_.showContactSheetDialog && !shown_) {
        shown_ = new ContactSheetDialogWidget(model_, sheets_, &window_);
        shown_->open();
    } else if (!model_.showContactSheetDialog && shown_) {
        shown_->hide();
        shown_->deleteLater();
        shown_ = nullptr;
    }
}

} // namespace pixelhain
