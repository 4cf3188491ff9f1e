#include "qt/sidebar/SidebarWidget.h"
#include "qt/ports/FileUrlText.h"
#include "qt/sidebar/FolderTreeWidget.h"
#include "qt/sidebar/SymbolButton.h"
#include "qt/window/Tones.h"
#include "window/ContentView.h"
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>

namespace pixelhain {

namespace {

SymbolButton* iconButton(
    std::string_view symbol, std::string_view name, std::string_view tip, QWidget* parent)
{
    auto* const button = new SymbolButton(symbol, QString(), parent);
    button->setToolTip(shownText(tip));
    button->setAccessibleName(shownText(name));
    return button;
}

} // namespace

SidebarWidget::SidebarWidget(BrowserModel& model, SidebarPorts const& ports, QWidget* parent)
    : QWidget(parent)
    , model_(model, ports)
    , header_(new QLabel(shownText(SidebarView::header), this))
    , refresh_(iconButton(
          SidebarView::refreshSymbol, SidebarView::refreshTip, SidebarView::refreshTip, this))
    , goUp_(iconButton(SidebarView::goUpSymbol, SidebarView::goUpName, SidebarView::goUpTip, this))
    , tree_(new FolderTreeWidget(model_, this))
    , open_(new SymbolButton(SidebarView::openSymbol, shownText(SidebarView::openTitle), this))
{
    setMinimumWidth(static_cast<int>(ContentView::sidebarMinimumWidth));
    setMaximumWidth(static_cast<int>(ContentView::sidebarMaximumWidth));
    setAutoFillBackground(true);
    refresh_->setObjectName(QStringLiteral("refreshFolders"));
    goUp_->setObjectName(QStringLiteral("showParentFolder"));
    open_->setObjectName(QStringLiteral("openFolder"));
    open_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    open_->setPadding(
        static_cast<int>(SidebarView::openPaddingX), static_cast<int>(SidebarView::openPaddingY));
    connect(refresh_, &QToolButton::clicked, this, [this] { view().refresh(); });
    connect(goUp_, &QToolButton::clicked, this, [this] { view().goUp(); });
    connect(open_, &QToolButton::clicked, this, [this] { view().openFolder(); });

    auto* const head = new QHBoxLayout;
    head->setContentsMargins(12, 8, 8, 4);
    head->setSpacing(2);
    head->addWidget(header_, 1);
    head->addWidget(refresh_);
    head->addWidget(goUp_);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addLayout(head);
    column->addWidget(tree_, 1);
    column->addSpacing(1);
    column->addWidget(open_);
    useTones();
    modelChanged();
}

// The view goes before the tree that it shows.
SidebarWidget::~SidebarWidget()
{
    delete tree_;
}

QSize SidebarWidget::sizeHint() const
{
    return { static_cast<int>(ContentView::sidebarIdealWidth), QWidget::sizeHint().height() };
}

void SidebarWidget::modelChanged()
{
    view().modelChanged();
    goUp_->setEnabled(view().canGoUp());
}

void SidebarWidget::useTones()
{
    auto font = scaledFont(this->font(), captionScale);
    font.setWeight(QFont::DemiBold);
    header_->setFont(font);
    auto colors = header_->palette();
    colors.setColor(QPalette::WindowText, Tones(palette()).of(ColorRole::secondary));
    header_->setPalette(colors);
}

void SidebarWidget::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange)
        useTones();
}

// A thin line parts the button from the list that scrolls above it.
void SidebarWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(0, open_->y() - 1, width(), 1, Tones(palette()).separator());
}

} // namespace pixelhain
