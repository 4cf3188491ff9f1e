#include "qt/app/HelpTopicList.h"
#include "app/HelpView.h"
#include "qt/ports/FileUrlText.h"
#include "qt/window/Symbols.h"
#include "qt/window/Tones.h"
#include <QEvent>
#include <QPainter>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QStyledItemDelegate>
#include <algorithm>
#include <climits>
#include <cmath>

namespace pixelhain {

namespace {

constexpr int idRole = Qt::UserRole;
constexpr int symbolRole = Qt::UserRole + 1;

constexpr double inset = 6; // of the selection from the column's edges
constexpr double corner = 5;
constexpr double padding = 8; // of the content from the selection's edges
constexpr double symbolSize = 18;
constexpr double spacing = 8;
constexpr double besideTitle = 2 * (inset + padding) + symbolSize + spacing;
constexpr double selectedShare = 0.14; // of the primary colour, without the focus

// Whether the scroll bar is there or not, so that a title is broken in the same way when it comes.
double titleWidth(QListView const& list)
{
    auto const bar = list.verticalScrollBar()->sizeHint().width();
    return std::max(1.0, list.maximumViewportSize().width() - bar - besideTitle);
}

class TopicRows final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(QStyleOptionViewItem const& option, QModelIndex const& index) const override
    {
        constexpr int least = 30;
        constexpr int around = 12;
        auto const* const list = qobject_cast<QListView const*>(option.widget);
        auto const width = list ? titleWidth(*list) : 1;
        auto const title
            = option.fontMetrics.boundingRect(QRect(0, 0, static_cast<int>(width), INT_MAX),
                Qt::TextWordWrap, index.data().toString());
        return { 0, std::max(least, title.height() + around) };
    }

    void paint(QPainter* painter, QStyleOptionViewItem const& option,
        QModelIndex const& index) const override
    {
        auto const& palette = option.palette;
        Tones const tones(palette);
        bool const isSelected = option.state.testFlag(QStyle::State_Selected);
        bool const hasFocus = option.state.testFlag(QStyle::State_Active) && option.widget
            && option.widget->hasFocus();
        auto const area = QRectF(option.rect).adjusted(inset, 0, -inset, -1);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(Qt::NoPen);
        if (isSelected) {
            painter->setBrush(hasFocus ? tones.selection()
                                       : tones.of(Tint { ColorRole::primary, selectedShare }));
            painter->drawRoundedRect(area, corner, corner);
        }
        bool const onAccent = isSelected && hasFocus;
        auto const strong = tones.selectedText();
        auto const scale = painter->device()->devicePixelRatioF();
        auto const snapped = [&](double points) { return std::round(points * scale) / scale; };
        auto symbol = symbolImage(index.data(symbolRole).toString().toStdString(),
            static_cast<int>(std::lround(symbolSize * scale)), onAccent ? strong : tones.link());
        symbol.setDevicePixelRatio(scale);
        auto const left = area.left() + padding;
        painter->drawImage(
            QPointF(snapped(left), snapped(area.center().y() - symbolSize / 2)), symbol);
        auto place = area.adjusted(padding + symbolSize + spacing, 0, -padding, 0);
        if (auto const* const list = qobject_cast<QListView const*>(option.widget))
            place.setWidth(std::floor(titleWidth(*list)));
        painter->setPen(onAccent ? strong : tones.of(ColorRole::primary));
        painter->setFont(option.font);
        painter->drawText(
            place, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextWordWrap, index.data().toString());
        painter->restore();
    }
};

} // namespace

HelpTopicList::HelpTopicList(QWidget* parent)
    : QListWidget(parent)
{
    setAccessibleName(shownText(HelpView::listName));
    setFrameShape(QFrame::NoFrame);
    setItemDelegate(new TopicRows(this));
    setResizeMode(QListView::Adjust);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAutoFillBackground(false);
    connect(this, &QListWidget::itemSelectionChanged, this, [this] {
        auto const items = selectedItems();
        if (selected)
            selected(items.isEmpty()
                    ? std::nullopt
                    : std::optional(items.front()->data(idRole).toString().toStdString()));
    });
}

void HelpTopicList::showTopics(
    std::vector<HelpTopic const*> const& topics, std::optional<std::string> const& id)
{
    QSignalBlocker const quiet(this);
    if (topics != topics_) {
        topics_ = topics;
        clear();
        for (auto const* topic : topics) {
            auto* const item = new QListWidgetItem(shownText(topic->title), this);
            item->setData(idRole, shownText(topic->id));
            item->setData(symbolRole, shownText(topic->symbol));
        }
    }
    clearSelection();
    for (std::size_t row = 0; row < topics.size(); ++row)
        if (topics[row]->id == id)
            setCurrentRow(static_cast<int>(row));
}

// The toolkit puts off breaking the titles anew, and as long as the width keeps changing: until
// then those of several lines would lie over each other.
bool HelpTopicList::event(QEvent* event)
{
    auto const isDone = QListWidget::event(event);
    if (event->type() == QEvent::Resize)
        doItemsLayout();
    return isDone;
}

} // namespace pixelhain
