#include "qt/window/EmptyStateWidget.h"
#include "qt/ports/FileUrlText.h"
#include "qt/window/Accessibility.h"
#include "qt/window/Symbols.h"
#include "qt/window/Tones.h"
#include <QEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>
#include <cmath>

namespace pixelhain {

namespace {

// A symbol's drawing is somewhat larger than the letters of its size.
constexpr double symbolEdgePerSize = 1.25;

} // namespace

EmptyStateWidget::EmptyStateWidget(std::function<void()> chooseFolder, QWidget* parent)
    : QWidget(parent)
    , symbol_(new QWidget(this))
    , text_(new QLabel(this))
    , button_(new QPushButton(this))
    , hint_(new QLabel(this))
{
    auto* column = new QVBoxLayout(this);
    setAccessibleRole(*this, QAccessible::Grouping);
    column->addStretch(1);
    column->addWidget(symbol_, 0, Qt::AlignHCenter);
    column->addWidget(text_, 0, Qt::AlignHCenter);
    column->addWidget(button_, 0, Qt::AlignHCenter);
    column->addWidget(hint_, 0, Qt::AlignHCenter);
    column->addStretch(1);
    for (auto* label : { text_, hint_ })
        label->setTextFormat(Qt::PlainText);
    button_->setDefault(true);
    button_->setAutoDefault(true);
    connect(button_, &QPushButton::clicked, this, [choose = std::move(chooseFolder)] { choose(); });
    for (auto const key : { Qt::Key_Return, Qt::Key_Enter }) {
        auto* shortcut = new QShortcut(QKeySequence(key), this);
        connect(shortcut, &QShortcut::activated, button_, [this] {
            if (button_->isVisible())
                button_->animateClick();
        });
    }
}

void EmptyStateWidget::show(EmptyStateView const& view)
{
    if (view == view_)
        return;
    view_ = view;
    auto const edge = static_cast<int>(std::lround(view.symbolSize * symbolEdgePerSize));
    symbol_->setFixedSize(edge, edge);
    text_->setText(shownText(view.text));
    button_->setVisible(view.button.has_value());
    button_->setText(view.button ? shownText(*view.button) : QString());
    hint_->setVisible(view.hint.has_value());
    hint_->setText(view.hint ? shownText(*view.hint) : QString());
    auto const spoken = text_->text() + (hint_->text().isEmpty() ? "" : "\n") + hint_->text();
    setSpokenText(*this, spoken);
    layout()->setSpacing(static_cast<int>(view.spacing));
    useTones();
    update();
}

void EmptyStateWidget::useTones()
{
    Tones const tones(palette(), Tones::Ground::gallery);
    auto const color = [&](QLabel& label, ColorRole role) {
        auto palette = label.palette();
        palette.setColor(QPalette::WindowText, tones.of(role));
        label.setPalette(palette);
    };
    color(*text_, view_.isTextSecondary ? ColorRole::secondary : ColorRole::primary);
    color(*hint_, ColorRole::tertiary);
    hint_->setFont(scaledFont(font(), calloutScale));
    // The one thing to do here: larger than a button among others.
    constexpr int paddingX = 20;
    constexpr int paddingY = 8;
    auto const metrics = button_->fontMetrics();
    button_->setMinimumSize(
        metrics.horizontalAdvance(button_->text()) + 2 * paddingX, metrics.height() + 2 * paddingY);
}

void EmptyStateWidget::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange)
        useTones();
}

void EmptyStateWidget::paintEvent(QPaintEvent*)
{
    Tones const tones(palette(), Tones::Ground::gallery);
    QPainter painter(this);
    painter.fillRect(rect(), tones.ground());
    auto const scale = devicePixelRatioF();
    auto const edge = static_cast<int>(std::lround(symbol_->width() * scale));
    auto image = symbolImage(view_.symbol, edge, tones.of(ColorRole::secondary));
    image.setDevicePixelRatio(scale);
    painter.drawImage(symbol_->geometry().topLeft(), image);
}

} // namespace pixelhain
