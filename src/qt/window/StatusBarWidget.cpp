#include "qt/window/StatusBarWidget.h"
#include "qt/ports/FileUrlText.h"
#include "qt/window/Accessibility.h"
#include "qt/window/ActivityIndicator.h"
#include "qt/window/PlainTip.h"
#include "qt/window/Tones.h"
#include <QHBoxLayout>
#include <QHelpEvent>
#include <QLabel>
#include <QPainter>
#include <QToolButton>
#include <QToolTip>
#include <utility>

namespace pixelhain {

namespace {

void setRole(QWidget& widget, QPalette::ColorRole role, QColor const& color)
{
    auto palette = widget.palette();
    palette.setColor(role, color);
    widget.setPalette(palette);
}

// A message that is too long for its place. Folder names are long; what became of the photos, and
// how many failed, stands at the end.
class MessageLabel final : public QLabel {
public:
    using QLabel::QLabel;

    // One line, whatever a file's name holds.
    QSize sizeHint() const override { return { 0, fontMetrics().height() }; }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, shown());
    }

    bool event(QEvent* event) override
    {
        if (event->type() != QEvent::ToolTip)
            return QLabel::event(event);
        auto const whole = shown() == text() ? QString() : plainTip(text());
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), whole, this);
        return true;
    }

private:
    QString shown() const { return fontMetrics().elidedText(text(), Qt::ElideMiddle, width()); }
};

} // namespace

StatusBarWidget::StatusBarWidget(BrowserModel& model, QWidget* parent)
    : QWidget(parent)
    , bar_(model)
    , activity_(new ActivityIndicator(this))
    , count_(new QLabel(this))
    , dot_(new QLabel(shownText(StatusBar::messageDot), this))
    , message_(new MessageLabel(this))
    , progress_(new QLabel(this))
    , cancelHint_(new QLabel(shownText(StatusBar::cancelHint), this))
    , selectNone_(new QToolButton(this))
    , marks_(new QWidget(this))
    , toldMarks_(bar_.spokenMarks())
{
    auto* row = new QHBoxLayout(this);
    constexpr int x = static_cast<int>(StatusBar::paddingX);
    constexpr int y = static_cast<int>(StatusBar::paddingY);
    row->setContentsMargins(x, y, x, y);
    row->setSpacing(static_cast<int>(StatusBar::itemSpacing));
    for (auto* label : { count_, dot_, message_, progress_, cancelHint_ })
        label->setTextFormat(Qt::PlainText);
    setAccessibleRole(*this, QAccessible::StatusBar);
    setAccessibleRole(*message_, QAccessible::Notification);
    setAccessibleRole(*marks_, QAccessible::Notification);
    marks_->setAttribute(Qt::WA_TransparentForMouseEvents);
    marks_->setGeometry(0, 0, 1, 1); // nothing is drawn there
    setAccessibleName(shownText(StatusBar::name));
    message_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    selectNone_->setObjectName(QStringLiteral("selectNone"));
    selectNone_->setText(shownText(StatusBar::selectNoneTitle));
    selectNone_->setAutoRaise(true);
    selectNone_->setCursor(Qt::PointingHandCursor);
    connect(selectNone_, &QToolButton::clicked, this, [this] { bar_.selectNone(); });
    row->addWidget(activity_);
    row->addWidget(count_);
    row->addWidget(dot_);
    row->addWidget(message_, 1);
    row->addWidget(progress_);
    row->addWidget(cancelHint_);
    row->addWidget(selectNone_);
    setMinimumWidth(1); // what it says never widens the window's column
    useTones();
    modelChanged();
}

void StatusBarWidget::modelChanged()
{
    auto const message = bar_.message();
    if (auto const name = shownText(bar_.activityName()); activity_->accessibleName() != name)
        activity_->setAccessibleName(name);
    activity_->setVisible(bar_.showsActivity());
    count_->setText(shownText(bar_.countText()));
    showMessage(message ? shownText(*message) : QString());
    auto const progress = bar_.progress();
    progress_->setVisible(progress.has_value());
    progress_->setText(progress ? shownText(*progress) : QString());
    cancelHint_->setVisible(progress.has_value());
    fit();
    tellMarks();
}

// A message is there for seconds only, and comes before what can be seen afterwards.
void StatusBarWidget::fit()
{
    selectNone_->setVisible(bar_.showsSelectNone());
    count_->show();
    dot_->setVisible(bar_.message().has_value());
    if (!bar_.message() || missingWidth() <= 0)
        return;
    selectNone_->setVisible(selectNone_->hasFocus());
    if (missingWidth() <= 0)
        return;
    count_->hide();
    dot_->hide();
}

int StatusBarWidget::missingWidth() const
{
    auto needed = 2 * static_cast<int>(StatusBar::paddingX)
        + message_->fontMetrics().horizontalAdvance(message_->text());
    for (auto const* part : std::initializer_list<QWidget const*> {
             activity_, count_, dot_, progress_, cancelHint_, selectNone_ })
        if (!part->isHidden())
            needed += part->sizeHint().width() + static_cast<int>(StatusBar::itemSpacing);
    return needed - width();
}

// The label beside it says more than has changed.
void StatusBarWidget::tellMarks()
{
    auto marks = bar_.spokenMarks();
    if (marks == toldMarks_)
        return;
    toldMarks_ = std::move(marks);
    setSpokenText(*marks_, shownText(toldMarks_));
    announceAppearance(*marks_);
}

void StatusBarWidget::showMessage(QString const& text)
{
    if (text == message_->text())
        return;
    message_->setText(text);
    setSpokenText(*message_, text);
    if (!text.isEmpty())
        announceAppearance(*message_);
}

void StatusBarWidget::useTones()
{
    Tones const tones(palette());
    auto const font = scaledFont(this->font(), calloutScale);
    for (auto* part : std::initializer_list<QWidget*> {
             count_, dot_, message_, progress_, cancelHint_, selectNone_ })
        part->setFont(font);
    setRole(*count_, QPalette::WindowText, tones.of(ColorRole::secondary));
    setRole(*progress_, QPalette::WindowText, tones.of(ColorRole::secondary));
    for (auto* part : { dot_, cancelHint_ })
        setRole(*part, QPalette::WindowText, tones.of(ColorRole::tertiary));
    setRole(*selectNone_, QPalette::ButtonText, tones.link());
    // The bar keeps its height when the link comes and goes.
    auto const line = QFontMetrics(font).height();
    selectNone_->setMaximumHeight(line + 4);
    setFixedHeight(line + 4 + 2 * static_cast<int>(StatusBar::paddingY));
}

void StatusBarWidget::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange)
        useTones();
}

void StatusBarWidget::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    fit();
}

void StatusBarWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(0, 0, width(), 1, Tones(palette()).separator());
}

} // namespace pixelhain
