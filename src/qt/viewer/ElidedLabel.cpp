#include "qt/viewer/ElidedLabel.h"
#include "qt/viewer/DarkLook.h"
#include "qt/window/Accessibility.h"
#include <QPainter>

namespace pixelhain {

ElidedLabel::ElidedLabel(QWidget* parent)
    : QWidget(parent)
{
    setAccessibleRole(*this, QAccessible::StaticText);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Preferred);
}

void ElidedLabel::setText(QString const& text)
{
    if (text == text_)
        return;
    text_ = text;
    setAccessibleName(text);
    updateGeometry();
    update();
}

QString ElidedLabel::shownText() const
{
    return fontMetrics().elidedText(text_, Qt::ElideMiddle, width());
}

QSize ElidedLabel::sizeHint() const
{
    return { fontMetrics().horizontalAdvance(text_) + 1, fontMetrics().height() };
}

QSize ElidedLabel::minimumSizeHint() const
{
    return { 0, fontMetrics().height() };
}

// What was cut is still to be read somewhere.
void ElidedLabel::resizeEvent(QResizeEvent*)
{
    setToolTip(shownText() == text_ ? QString() : text_);
}

bool ElidedLabel::event(QEvent* event)
{
    return showViewerTip(*this, *event) || QWidget::event(event);
}

void ElidedLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(rect(), Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, shownText());
}

} // namespace pixelhain
