#include "qt/app/HelpTopicWidget.h"
#include "qt/ports/FileUrlText.h"
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <cmath>

namespace pixelhain {

namespace {

using namespace helpMeasures;

int unitsOf(std::string_view text)
{
    return static_cast<int>(shownText(text).size());
}

} // namespace

HelpTopicWidget::HelpTopicWidget(QWidget* parent)
    : QTextEdit(parent)
{
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setFrameShape(QFrame::NoFrame);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setCursorWidth(0);
    setTabChangesFocus(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setLineWrapMode(QTextEdit::FixedPixelWidth);
}

void HelpTopicWidget::showTopic(HelpTopic const& topic)
{
    if (&topic == topic_)
        return;
    topic_ = &topic;
    setAccessibleName(shownText(topic.title));
    matches_.clear();
    write();
    verticalScrollBar()->setValue(0);
}

void HelpTopicWidget::write()
{
    passages_ = writeHelpTopic(*document(), *topic_, font());
    fitHelpTopic(*document(), viewport()->width());
    auto cursor = textCursor();
    cursor.movePosition(QTextCursor::Start);
    setTextCursor(cursor);
}

void HelpTopicWidget::highlight(HelpSearch const& search)
{
    auto const before = std::exchange(matches_, {});
    for (auto const& [position, text] : passages_) {
        std::string_view const whole = text;
        for (auto const& [begin, end] : search.matches(whole))
            matches_.push_back({ position + unitsOf(whole.substr(0, begin)),
                position + unitsOf(whole.substr(0, end)) });
    }
    if (matches_ == before)
        return;
    viewport()->update();
    showFirstMatch();
}

void HelpTopicWidget::showFirstMatch()
{
    QRect first;
    for (auto const& match : matches_) {
        QTextCursor cursor(document());
        cursor.setPosition(match.begin);
        auto const place = cursorRect(cursor);
        if (viewport()->rect().contains(place))
            return;
        if (first.isNull())
            first = place;
    }
    if (first.isNull())
        return;
    auto* const bar = verticalScrollBar();
    bar->setValue(bar->value() + first.top() - viewport()->height() / 4);
}

QPointF HelpTopicWidget::documentOrigin() const
{
    return QPointF(-horizontalScrollBar()->value(), -verticalScrollBar()->value());
}

void HelpTopicWidget::paintEvent(QPaintEvent* event)
{
    auto const origin = documentOrigin();
    auto const area = QRectF(event->rect()).translated(-origin);
    HelpPainter const drawings(*document(), palette(), devicePixelRatioF());
    if (topic_) {
        QPainter painter(viewport());
        painter.translate(origin);
        drawings.drawBelow(painter, area, topic_->symbol, matches_);
    }
    QTextEdit::paintEvent(event);
    QPainter painter(viewport());
    painter.translate(origin);
    drawings.drawAbove(painter, area);
    if (!showsFocus_)
        return;
    painter.resetTransform();
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter.drawRect(QRectF(viewport()->rect()).adjusted(1, 1, -1, -1));
}

// The line at the top stays there when lines become shorter or longer.
void HelpTopicWidget::resizeEvent(QResizeEvent* event)
{
    auto top = cursorForPosition(QPoint(0, 0));
    auto const before = cursorRect(top).top();
    bool const isAtStart = verticalScrollBar()->value() == 0;
    constexpr int most = static_cast<int>(textWidth + 2 * margin);
    fitHelpTopic(*document(), viewport()->width());
    setLineWrapColumnOrWidth(std::min(viewport()->width(), most));
    QTextEdit::resizeEvent(event);
    if (!isAtStart)
        verticalScrollBar()->setValue(
            verticalScrollBar()->value() + cursorRect(top).top() - before);
}

void HelpTopicWidget::changeEvent(QEvent* event)
{
    QTextEdit::changeEvent(event);
    if (event->type() != QEvent::FontChange || !topic_)
        return;
    auto* const bar = verticalScrollBar();
    auto const share = bar->value() / std::max(1.0, double(bar->maximum()));
    write();
    bar->setValue(static_cast<int>(std::lround(share * bar->maximum())));
}

void HelpTopicWidget::turnPage(int direction)
{
    auto* const bar = verticalScrollBar();
    auto const line = fontMetrics().lineSpacing();
    bar->setValue(bar->value() + direction * std::max(line, viewport()->height() - 2 * line));
}

bool HelpTopicWidget::scrollWith(QKeyEvent const& event)
{
    auto* const bar = verticalScrollBar();
    auto const line = 2 * fontMetrics().lineSpacing();
    bool const isShifted = event.modifiers().testFlag(Qt::ShiftModifier);
    if (event.key() == Qt::Key_Space) {
        turnPage(isShifted ? -1 : 1);
        return true;
    }
    if (isShifted || event.modifiers().testFlag(Qt::AltModifier))
        return false;
    switch (event.key()) {
    case Qt::Key_Up:
        bar->setValue(bar->value() - line);
        return true;
    case Qt::Key_Down:
        bar->setValue(bar->value() + line);
        return true;
    case Qt::Key_PageUp:
        turnPage(-1);
        return true;
    case Qt::Key_PageDown:
        turnPage(1);
        return true;
    case Qt::Key_Home:
        bar->setValue(bar->minimum());
        return true;
    case Qt::Key_End:
        bar->setValue(bar->maximum());
        return true;
    default:
        return false;
    }
}

void HelpTopicWidget::keyPressEvent(QKeyEvent* event)
{
    if (scrollWith(*event))
        return;
    if (event->modifiers().testFlag(Qt::ShiftModifier))
        beginSelectionInSight();
    QTextEdit::keyPressEvent(event);
}

// Nobody sees where the cursor was left; what the first key selects has to be in sight.
void HelpTopicWidget::beginSelectionInSight()
{
    if (textCursor().hasSelection() || viewport()->rect().intersects(cursorRect()))
        return;
    setTextCursor(cursorForPosition(QPoint(static_cast<int>(margin), 1)));
}

void HelpTopicWidget::focusInEvent(QFocusEvent* event)
{
    QTextEdit::focusInEvent(event);
    showsFocus_ = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason
        || event->reason() == Qt::ShortcutFocusReason;
    viewport()->update();
}

void HelpTopicWidget::focusOutEvent(QFocusEvent* event)
{
    QTextEdit::focusOutEvent(event);
    showsFocus_ = false;
    viewport()->update();
}

QMimeData* HelpTopicWidget::createMimeDataFromSelection() const
{
    auto* const copied = new QMimeData;
    copied->setText(copiedHelpText(textCursor()));
    return copied;
}

} // namespace pixelhain
