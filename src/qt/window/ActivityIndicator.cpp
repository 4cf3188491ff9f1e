#include "qt/window/ActivityIndicator.h"
#include "qt/window/Accessibility.h"
#include "qt/window/Tones.h"
#include <QPainter>

namespace pixelhain {

namespace {

constexpr int edge = 14;
constexpr int spokes = 8;
constexpr int stepMilliseconds = 90;

} // namespace

ActivityIndicator::ActivityIndicator(QWidget* parent)
    : QWidget(parent)
{
    setFixedSize(edge, edge);
    setAccessibleRole(*this, QAccessible::Animation);
}

void ActivityIndicator::showEvent(QShowEvent*)
{
    timer_.start(stepMilliseconds, this);
}

void ActivityIndicator::hideEvent(QHideEvent*)
{
    timer_.stop();
}

void ActivityIndicator::timerEvent(QTimerEvent*)
{
    step_ = (step_ + 1) % spokes;
    update();
}

void ActivityIndicator::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(edge / 2.0, edge / 2.0);
    auto color = Tones(palette()).of(ColorRole::secondary);
    for (int spoke = 0; spoke < spokes; ++spoke) {
        auto const age = (step_ - spoke + spokes) % spokes;
        color.setAlphaF(1.0F - 0.11F * static_cast<float>(age));
        painter.setPen(QPen(color, 1.6, Qt::SolidLine, Qt::RoundCap));
        painter.save();
        painter.rotate(360.0 / spokes * spoke);
        painter.drawLine(QPointF(0, -3.2), QPointF(0, -6));
        painter.restore();
    }
}

} // namespace pixelhain
