#include "qt/viewer/InfoPanelWidget.h"
#include "qt/ports/FileUrlText.h"
#include "qt/viewer/DarkLook.h"
#include "qt/window/Accessibility.h"
#include "qt/window/Tones.h"
#include "viewer/InfoPanel.h"
#include <QEvent>
#include <QPainter>
#include <algorithm>

namespace pixelhain {

namespace {

constexpr int padding = static_cast<int>(InfoPanel::padding);
constexpr int spacing = static_cast<int>(InfoPanel::spacing);

} // namespace

InfoPanelWidget::InfoPanelWidget(QWidget* parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAccessibleRole(*this, QAccessible::StaticText);
}

void InfoPanelWidget::show(std::vector<std::string> const& lines)
{
    QStringList texts;
    for (auto const& line : lines)
        texts += shownText(line);
    if (texts == lines_)
        return;
    lines_ = texts;
    setAccessibleName(lines_.join(QLatin1Char('\n')));
    updateGeometry();
    update();
}

QFont InfoPanelWidget::lineFont(qsizetype index) const
{
    return index == 0 ? viewerFont(font(), InfoPanel::nameSize, QFont::DemiBold)
                      : viewerFont(font(), InfoPanel::lineSize);
}

QSize InfoPanelWidget::sizeHint() const
{
    int width = 0;
    int height = 0;
    for (qsizetype i = 0; i < lines_.size(); ++i) {
        QFontMetrics const metrics(lineFont(i));
        width = std::max(width, metrics.horizontalAdvance(lines_[i]) + 1);
        height += metrics.height() + (i > 0 ? spacing : 0);
    }
    return { width + 2 * padding, height + 2 * padding };
}

void InfoPanelWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintMaterial(painter, rect(), InfoPanel::cornerRadius);
    Tones const tones(palette());
    auto const width = this->width() - 2 * padding;
    int top = padding;
    for (qsizetype i = 0; i < lines_.size(); ++i) {
        painter.setFont(lineFont(i));
        painter.setPen(tones.of(i == 0 ? InfoPanel::nameTint : InfoPanel::lineTint));
        auto const metrics = painter.fontMetrics();
        painter.drawText(QRect(padding, top, width, metrics.height()),
            Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
            metrics.elidedText(lines_[i], Qt::ElideMiddle, width));
        top += metrics.height() + spacing;
    }
}

void InfoPanelWidget::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange) {
        updateGeometry();
        update();
    }
}

} // namespace pixelhain
