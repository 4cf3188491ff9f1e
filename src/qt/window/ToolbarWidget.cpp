#include "qt/window/ToolbarWidget.h"
#include "qt/ports/FileUrlText.h"
#include "qt/window/SearchField.h"
#include "qt/window/SizeSlider.h"
#include "qt/window/Symbols.h"
#include "qt/window/Tones.h"
#include "qt/window/ToolbarButton.h"
#include "window/ToolbarPlan.h"
#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <QShortcut>
#include <algorithm>
#include <cmath>

namespace pixelhain {

namespace {

constexpr int marginX = 10;
constexpr int marginY = 6;
constexpr int itemSpacing = 4;
constexpr int groupSpacing = 12; // around the group and beside the slider
constexpr int smallSymbolEdge = 13;
constexpr int largeSymbolEdge = 16;

class SymbolWidget final : public QWidget {
public:
    SymbolWidget(std::string_view symbol, int edge, QWidget* parent)
        : QWidget(parent)
        , symbol_(symbol)
    {
        setFixedSize(edge, edge);
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        auto const scale = devicePixelRatioF();
        auto image = symbolImage(symbol_, static_cast<int>(std::lround(width() * scale)),
            Tones(palette()).of(ColorRole::secondary));
        image.setDevicePixelRatio(scale);
        QPainter(this).drawImage(0, 0, image);
    }

private:
    std::string_view symbol_;
};

} // namespace

ToolbarWidget::ToolbarWidget(BrowserModel& model, ShareMenu* share, QWidget* parent)
    : QWidget(parent)
    , toolbar_(model, share)
    , sidebar_(addButton(MainToolbar::sidebarSymbol, MainToolbar::sidebarTitle(true)))
    , folder_(addButton(MainToolbar::folderSymbol, MainToolbar::folderTitle))
    , sizeRow_(new QWidget(this))
    , slider_(nullptr)
    , more_(nullptr)
    , search_(nullptr)
{
    sidebarToggled(true);
    connect(sidebar_, &QToolButton::clicked, this, [this] {
        if (toggleSidebar)
            toggleSidebar();
    });
    folder_->setToolTip(shownText(MainToolbar::folderTip));
    connect(folder_, &QToolButton::clicked, this, [this] { toolbar_.chooseFolder(); });
    for (auto const item : MainToolbar::order)
        addItem(item);
    more_ = addButton(MainToolbar::moreSymbol, MainToolbar::moreTitle);
    more_->setToolTip(more_->text());
    more_->setEntries([this] { return toolbar_.overflow(shown_); });
    search_ = new SearchField(this);
    search_->entered = [this] { toolbar_.expectSearch(); };
    search_->typed = [this](std::string text) { toolbar_.setSearchText(std::move(text)); };
    search_->left = [this] { endEditing(); };
    search_->found = [this] {
        if (goOn)
            goOn();
    };
    auto* const find = new QShortcut(QKeySequence::Find, this);
    connect(find, &QShortcut::activated, this, [this] { focusSearch(); });
    auto policy = sizePolicy();
    policy.setHorizontalPolicy(QSizePolicy::Ignored);
    policy.setVerticalPolicy(QSizePolicy::Fixed);
    policy.setRetainSizeWhenHidden(true);
    setSizePolicy(policy);
    setAccessibleName(shownText(MainToolbar::name));
    modelChanged();
}

ToolbarWidget::~ToolbarWidget() = default;

ToolbarButton* ToolbarWidget::addButton(std::string_view symbol, std::string_view title)
{
    auto* const button = new ToolbarButton(symbol, title, this);
    // Whoever turns from the text to a button has ended editing it. A menu tells for itself: the
    // toolkit opens it before anybody else hears of the press, and comes back when it is closed.
    button->used = [this] {
        if (search_->hasFocus())
            endEditing();
    };
    connect(button, &QToolButton::pressed, this, [button] { button->used(); });
    return button;
}

void ToolbarWidget::addItem(MainToolbar::Item item)
{
    if (item != MainToolbar::Item::thumbnailSize) {
        auto* const button = addButton(MainToolbar::symbol(item), MainToolbar::title(item));
        if (MainToolbar::hasMenu(item))
            button->setEntries([this, item] { return toolbar_.menu(item); });
        else
            connect(button, &QToolButton::clicked, this, [this, item] { toolbar_.perform(item); });
        parts_.push_back({ item, button });
        return;
    }
    auto* const row = new QHBoxLayout(sizeRow_);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(static_cast<int>(MainToolbar::sizeSpacing));
    slider_ = new SizeSlider(sizeRow_);
    slider_->setRange(
        static_cast<int>(MainToolbar::minimumSize()), static_cast<int>(MainToolbar::maximumSize()));
    slider_->setAccessibleName(shownText(MainToolbar::title(item)));
    slider_->chosen = [this](double points) { toolbar_.setThumbSize(points); };
    row->addWidget(new SymbolWidget(MainToolbar::smallerSymbol, smallSymbolEdge, sizeRow_));
    row->addWidget(slider_);
    row->addWidget(new SymbolWidget(MainToolbar::largerSymbol, largeSymbolEdge, sizeRow_));
    parts_.push_back({ item, sizeRow_ });
}

ToolbarButton* ToolbarWidget::button(MainToolbar::Item item) const
{
    auto const found = std::ranges::find(parts_, item, &Part::item);
    return found == parts_.end() ? nullptr : dynamic_cast<ToolbarButton*>(found->widget);
}

void ToolbarWidget::sidebarToggled(bool isShown)
{
    sidebar_->setText(shownText(MainToolbar::sidebarTitle(isShown)));
    sidebar_->setAccessibleName(sidebar_->text());
    sidebar_->setToolTip(shownText(MainToolbar::sidebarTip(isShown)));
}

void ToolbarWidget::endEditing()
{
    if (leave)
        leave();
}

void ToolbarWidget::focusSearch()
{
    if (!toolbar_.isShown())
        return;
    search_->setFocus(Qt::ShortcutFocusReason);
    search_->selectAll();
}

void ToolbarWidget::modelChanged()
{
    for (auto const& part : parts_) {
        auto const tip = shownText(toolbar_.tip(part.item));
        auto* const owner = part.widget == sizeRow_ ? slider_ : part.widget;
        if (owner->toolTip() == tip)
            continue;
        owner->setToolTip(tip);
        part.widget->setToolTip(tip);
    }
    slider_->follow(toolbar_.thumbSize());
    search_->follow(toolbar_.searchText());
}

QSize ToolbarWidget::sizeHint() const
{
    auto const line = std::max(folder_->sizeHint().height(), search_->sizeHint().height());
    return { minimumSizeHint().width(), line + 2 * marginY + 1 };
}

QSize ToolbarWidget::minimumSizeHint() const
{
    return { 0, 0 };
}

ToolbarWidths ToolbarWidget::widths() const
{
    ToolbarWidths all;
    for (auto const& part : parts_) {
        auto const* const button = dynamic_cast<ToolbarButton const*>(part.widget);
        auto const row = part.widget->sizeHint().width() + groupSpacing - itemSpacing;
        all.labelled.push_back(button ? button->wantedWidth(true) : row);
        all.bare.push_back(button ? button->wantedWidth(false) : row);
    }
    all.spacing = itemSpacing;
    all.rest = 2 * marginX + sidebar_->wantedWidth(false) + itemSpacing
        + folder_->wantedWidth(false) + 2 * groupSpacing;
    all.searchIdeal = search_->idealWidth();
    all.searchMinimum = search_->minimumUsefulWidth();
    all.more = itemSpacing + more_->wantedWidth(false);
    return all;
}

// From both ends towards the flexible space in the middle.
void ToolbarWidget::layOut()
{
    auto const plan = toolbarPlan(width(), widths());
    shown_ = plan.shown;
    auto const bar = QRect(0, 0, width(), height() - 1);
    auto const place = [&](QWidget* widget, int x, int width, int height) {
        widget->setGeometry(x, bar.top() + (bar.height() - height) / 2, width, height);
    };
    auto left = marginX;
    for (auto* const button : { sidebar_, folder_ }) {
        place(button, left, button->wantedWidth(false), button->sizeHint().height());
        left += button->width() + itemSpacing;
    }
    auto right = width() - marginX - plan.searchWidth;
    place(search_, right, plan.searchWidth, search_->sizeHint().height());
    right -= groupSpacing;
    more_->setVisible(plan.shown < parts_.size());
    if (plan.shown < parts_.size()) {
        right -= more_->wantedWidth(false);
        place(more_, right, more_->wantedWidth(false), more_->sizeHint().height());
        right -= itemSpacing;
    }
    for (auto at = parts_.size(); at-- > 0;) {
        auto* const widget = parts_[at].widget;
        widget->setVisible(at < plan.shown);
        if (at >= plan.shown)
            continue;
        auto* const button = dynamic_cast<ToolbarButton*>(widget);
        if (button)
            button->setShowsLabel(plan.showsLabels);
        auto const size = widget->sizeHint();
        right -= size.width() + (button ? 0 : groupSpacing - itemSpacing);
        place(widget, right, size.width(), size.height());
        right -= itemSpacing;
    }
}

void ToolbarWidget::resizeEvent(QResizeEvent*)
{
    layOut();
}

void ToolbarWidget::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() != QEvent::FontChange && event->type() != QEvent::StyleChange)
        return;
    updateGeometry();
    if (search_)
        layOut();
}

void ToolbarWidget::paintEvent(QPaintEvent*)
{
    QPainter(this).fillRect(0, height() - 1, width(), 1, Tones(palette()).separator());
}

} // namespace pixelhain
