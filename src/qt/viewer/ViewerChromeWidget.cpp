#include "qt/viewer/ViewerChromeWidget.h"
#include "qt/ports/FileUrlText.h"
#include "qt/viewer/ChromeButton.h"
#include "qt/viewer/DarkLook.h"
#include "qt/viewer/ElidedLabel.h"
#include "qt/window/Tones.h"
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <algorithm>

namespace pixelhain {

namespace {

// Room that the buttons have around their symbols counts as part of the spacing.
constexpr int buttonReach = 5;

// Digits of one width, so that nothing moves from photo to photo; the font may not know how, then
// the widest digit stands for all.
int positionWidth(QFontMetrics const& metrics, QString const& text)
{
    int widest = 0;
    for (char digit = '0'; digit <= '9'; ++digit)
        widest = std::max(widest, metrics.horizontalAdvance(QLatin1Char(digit)));
    auto const digits
        = std::count_if(text.begin(), text.end(), [](QChar letter) { return letter.isDigit(); });
    QString rest;
    for (auto const letter : text)
        if (!letter.isDigit())
            rest += letter;
    return static_cast<int>(digits) * widest + metrics.horizontalAdvance(rest) + 1;
}

} // namespace

ViewerChromeWidget::ViewerChromeWidget(Perform perform, QWidget* parent)
    : QWidget(parent)
    , position_(new QLabel(this))
    , name_(new ElidedLabel(this))
{
    auto* const row = new QHBoxLayout(this);
    constexpr int x = static_cast<int>(ViewerChrome::paddingX) - buttonReach;
    constexpr int y = static_cast<int>(ViewerChrome::paddingY) - buttonReach;
    row->setContentsMargins(x, y, x, y);
    row->setSpacing(0);
    constexpr int spacing = static_cast<int>(ViewerChrome::spacing);
    for (std::size_t i = 0; i < buttons_.size(); ++i) {
        auto const action = ViewerChrome::order[i];
        auto* const button = buttons_[i] = new ChromeButton(this);
        connect(button, &QAbstractButton::clicked, this, [perform, action, button] {
            perform(action, button->mapToGlobal(QPoint(0, button->height())));
        });
        if (i > 1)
            row->addSpacing(spacing - 2 * buttonReach);
        row->addWidget(button);
        if (i > 0)
            continue;
        row->addSpacing(spacing - buttonReach);
        row->addWidget(position_);
        row->addSpacing(spacing);
        row->addWidget(name_); // all of it, where there is room
        row->addSpacing(spacing);
        row->addStretch(1);
    }
    position_->setAttribute(Qt::WA_TransparentForMouseEvents);
    useFonts();
    useColors();
}

void ViewerChromeWidget::useFonts()
{
    position_->setFont(viewerFont(font(), ViewerChrome::fontSize));
    name_->setFont(viewerFont(font(), ViewerChrome::fontSize, QFont::Medium));
}

void ViewerChromeWidget::useColors()
{
    auto colors = palette();
    colors.setColor(QPalette::WindowText, Tones(palette()).of(ViewerChrome::positionTint));
    position_->setPalette(colors);
}

void ViewerChromeWidget::show(ViewerChrome const& chrome)
{
    for (std::size_t i = 0; i < buttons_.size(); ++i)
        buttons_[i]->show(chrome.button(ViewerChrome::order[i]));
    auto const position = shownText(chrome.position());
    position_->setText(position);
    position_->setFixedWidth(positionWidth(position_->fontMetrics(), position));
    name_->setText(shownText(chrome.name()));
}

ChromeButton* ViewerChromeWidget::button(ViewerChrome::Action action) const
{
    for (std::size_t i = 0; i < buttons_.size(); ++i)
        if (ViewerChrome::order[i] == action)
            return buttons_[i];
    return nullptr;
}

void ViewerChromeWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintMaterial(painter, rect(), 0);
}

void ViewerChromeWidget::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        useColors();
    else if (event->type() == QEvent::FontChange)
        useFonts();
}

} // namespace pixelhain
