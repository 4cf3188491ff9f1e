#include "qt/viewer/ViewerLabels.h"
#include "qt/ports/FileUrlText.h"
#include "qt/viewer/DarkLook.h"
#include "qt/window/Accessibility.h"
#include "qt/window/Symbols.h"
#include "qt/window/Tones.h"
#include "viewer/ViewerContainer.h"
#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <QTimerEvent>
#include <QVBoxLayout>
#include <cmath>

namespace pixelhain {

namespace {

constexpr double labelSize = 13;
constexpr int pauseSymbolEdge = 14;
constexpr int failureSymbolEdge = 30; // a large title's
constexpr int failureSpacing = 8;
constexpr int spinnerEdge = 44;
constexpr int spokes = 8;
constexpr int stepMilliseconds = 90;

QPixmap symbolPixmap(QWidget const& widget, std::string_view name, int edge, QColor const& color)
{
    auto const scale = widget.devicePixelRatioF();
    auto image = symbolImage(name, static_cast<int>(std::lround(edge * scale)), color);
    image.setDevicePixelRatio(scale);
    return QPixmap::fromImage(image);
}

} // namespace

PauseLabel::PauseLabel(QWidget* parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAccessibleRole(*this, QAccessible::Notification);
    setAccessibleName(shownText(ViewerContainer::pauseText));
    auto* const row = new QHBoxLayout(this);
    constexpr int x = static_cast<int>(ViewerContainer::pausePaddingX);
    constexpr int y = static_cast<int>(ViewerContainer::pausePaddingY);
    row->setContentsMargins(x, y, x, y);
    row->setSpacing(6);
    auto* const symbol = new QLabel(this);
    symbol->setPixmap(symbolPixmap(*this, ViewerContainer::pauseSymbol, pauseSymbolEdge,
        Tones(palette()).of(ColorRole::primary)));
    auto* const text = new QLabel(shownText(ViewerContainer::pauseText), this);
    text->setFont(viewerFont(font(), labelSize));
    row->addWidget(symbol);
    row->addWidget(text);
}

void PauseLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintMaterial(painter, rect(), height() / 2.0);
}

FailureView::FailureView(QWidget* parent)
    : QWidget(parent)
    , symbol_(new QLabel(this))
    , text_(new QLabel(shownText(ViewerImage::failedText), this))
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    auto* const stack = new QVBoxLayout(this);
    stack->setContentsMargins(0, 0, 0, 0);
    stack->setSpacing(failureSpacing);
    stack->addWidget(symbol_, 0, Qt::AlignHCenter);
    stack->addWidget(text_, 0, Qt::AlignHCenter);
    text_->setFont(viewerFont(font(), labelSize));
    useColors();
}

void FailureView::useColors()
{
    auto const color = Tones(palette()).of(ColorRole::secondary);
    auto colors = palette();
    colors.setColor(QPalette::WindowText, color);
    text_->setPalette(colors);
    symbol_->setPixmap(symbolPixmap(*this, ViewerImage::failedSymbol, failureSymbolEdge, color));
}

void FailureView::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        useColors();
}

LargeSpinner::LargeSpinner(QWidget* parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFixedSize(spinnerEdge, spinnerEdge);
    setAccessibleRole(*this, QAccessible::Animation);
    setAccessibleName(shownText(ViewerImage::spinnerName));
}

void LargeSpinner::showEvent(QShowEvent*)
{
    step_ = -1;
    timer_.start(delayMilliseconds, this);
}

void LargeSpinner::hideEvent(QHideEvent*)
{
    timer_.stop();
}

void LargeSpinner::timerEvent(QTimerEvent*)
{
    if (step_ < 0)
        timer_.start(stepMilliseconds, this);
    step_ = (step_ + 1) % spokes;
    update();
}

void LargeSpinner::paintEvent(QPaintEvent*)
{
    if (step_ < 0)
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(spinnerEdge / 2.0, spinnerEdge / 2.0);
    auto color = Tones(palette()).of(ColorRole::secondary);
    for (int spoke = 0; spoke < spokes; ++spoke) {
        auto const age = (step_ - spoke + spokes) % spokes;
        color.setAlphaF(1.0F - 0.11F * static_cast<float>(age));
        painter.setPen(QPen(color, 4, Qt::SolidLine, Qt::RoundCap));
        painter.save();
        painter.rotate(360.0 / spokes * spoke);
        painter.drawLine(QPointF(0, -11), QPointF(0, -19));
        painter.restore();
    }
}

} // namespace pixelhain
