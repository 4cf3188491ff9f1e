#include "qt/window/SizeSlider.h"
#include "qt/window/Tones.h"
#include "window/MainToolbar.h"
#include <QMouseEvent>
#include <QPainter>
#include <cmath>

namespace pixelhain {

namespace {

constexpr double knobDiameter = 14;
constexpr double grooveHeight = 4;
constexpr double ringWidth = 2;
constexpr int barHeight = 22;
constexpr int keyStep = 10; // points of a thumbnail
constexpr int pageLength = 30; // as the keys of the gallery
constexpr double grooveShare = 0.22; // of the primary colour
constexpr double outlineShare = 0.35;

} // namespace

SizeSlider::SizeSlider(QWidget* parent)
    : QSlider(Qt::Horizontal, parent)
{
    setFixedSize(sizeHint());
    setFocusPolicy(Qt::TabFocus);
    setSingleStep(keyStep);
    setPageStep(pageLength);
    connect(this, &QSlider::valueChanged, this, [this](int value) {
        if (chosen)
            chosen(value);
    });
}

void SizeSlider::follow(double value)
{
    auto const shown = static_cast<int>(std::lround(value));
    if (shown == this->value())
        return;
    QSignalBlocker const blocker(this);
    setValue(shown);
}

QSize SizeSlider::sizeHint() const
{
    return { static_cast<int>(MainToolbar::sliderWidth), barHeight };
}

double SizeSlider::knobCentre() const
{
    auto const share = double(value() - minimum()) / (maximum() - minimum());
    return knobDiameter / 2 + share * (width() - knobDiameter);
}

void SizeSlider::moveTo(double x)
{
    auto const share = (x - knobDiameter / 2) / (width() - knobDiameter);
    setValue(static_cast<int>(std::lround(minimum() + share * (maximum() - minimum()))));
}

void SizeSlider::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    setSliderDown(true);
    // Whoever takes the knob beside its middle does not move it by that.
    if (std::abs(event->position().x() - knobCentre()) > knobDiameter / 2)
        moveTo(event->position().x());
    update();
}

void SizeSlider::mouseMoveEvent(QMouseEvent* event)
{
    if (isSliderDown())
        moveTo(event->position().x());
}

void SizeSlider::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        setSliderDown(false);
    update();
}

void SizeSlider::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    Tones const tones(palette());
    auto const middle = height() / 2.0;
    auto const centre = knobCentre();
    QRectF groove(
        knobDiameter / 2, middle - grooveHeight / 2, width() - knobDiameter, grooveHeight);
    painter.setBrush(tones.of(Tint { ColorRole::primary, grooveShare }));
    painter.drawRoundedRect(groove, grooveHeight / 2, grooveHeight / 2);
    groove.setRight(centre);
    painter.setBrush(tones.of(ColorRole::accent));
    painter.drawRoundedRect(groove, grooveHeight / 2, grooveHeight / 2);
    if (hasFocus()) {
        painter.setPen(QPen(tones.of(ColorRole::accent), ringWidth));
        painter.setBrush(Qt::NoBrush);
        auto const radius = knobDiameter / 2 + 2;
        painter.drawEllipse(QPointF(centre, middle), radius, radius);
    }
    painter.setPen(QPen(tones.of(Tint { ColorRole::primary, outlineShare }), 1));
    painter.setBrush(isSliderDown() ? QColor(0xe4, 0xe4, 0xe4) : QColor(Qt::white));
    painter.drawEllipse(QPointF(centre, middle), knobDiameter / 2 - 0.5, knobDiameter / 2 - 0.5);
}

} // namespace pixelhain
