#include "qt/viewer/ViewerWidget.h"
#include "model/BrowserModel.h"
#include "qt/ports/FileUrlText.h"
#include "qt/viewer/ChromeButton.h"
#include "qt/viewer/DarkLook.h"
#include "qt/viewer/DevicePixels.h"
#include "qt/viewer/InfoPanelWidget.h"
#include "qt/viewer/PreparedPictures.h"
#include "qt/viewer/ViewerChromeWidget.h"
#include "qt/viewer/ViewerImageWidget.h"
#include "qt/viewer/ViewerLabels.h"
#include "qt/window/Accessibility.h"
#include "qt/window/Menus.h"
#include "window/ShareMenu.h"
#include <QApplication>
#include <QGraphicsOpacityEffect>
#include <QKeyEvent>
#include <QMenu>
#include <QNativeGestureEvent>
#include <QToolTip>
#include <QVariantAnimation>
#include <QWheelEvent>
#include <algorithm>
#include <utility>

namespace pixelhain {

ViewerWidget::ViewerWidget(Services const& services, QWidget* parent)
    : QWidget(parent)
    , services_(services)
    , container_(
          { services.model, services.source, services.background, services.loop },
          [this] { photoChanged(); },
          [this](std::chrono::milliseconds time) {
              picture_->pictureChanged(time);
              showContent();
              describePicture();
          })
    , info_(services.infoLines, services.background, services.loop, [this] {
        infoPanel_->show(info_.lines());
        describePicture();
        layOut();
    })
{
    hide();
    setPalette(viewerPalette());
    picture_ = new ViewerImageWidget(
        container_, { services.background, services.loop, services.prepared }, this);
    failure_ = new FailureView(this);
    spinner_ = new LargeSpinner(this);
    chrome_ = new ViewerChromeWidget(
        [this](ViewerChrome::Action action, QPoint below) { perform(action, below); }, this);
    left_ = new SideArrow(ViewerChrome::Side::left, this);
    right_ = new SideArrow(ViewerChrome::Side::right, this);
    pause_ = new PauseLabel(this);
    infoPanel_ = new InfoPanelWidget(this);
    for (auto* const arrow : { left_, right_ }) {
        connect(arrow, &QAbstractButton::clicked, this, [this, arrow] {
            if (auto* const chrome = container_.chrome())
                chrome->step(arrow->side());
        });
        arrow->hovered = [this, arrow](bool isHovered) {
            if (auto* const chrome = container_.chrome())
                (arrow == left_ ? chrome->hoverLeft : chrome->hoverRight) = isHovered;
            showArrows();
        };
    }
    setFocusProxy(picture_);
    setAccessibleRole(*this, QAccessible::Pane);
    setAccessibleRole(*picture_, QAccessible::Graphic);
    setAccessibleName(shownText(ViewerContainer::name));
}

ViewerWidget::~ViewerWidget() = default;

SideArrow& ViewerWidget::arrow(ViewerChrome::Side side)
{
    return side == ViewerChrome::Side::left ? *left_ : *right_;
}

void ViewerWidget::setPlace(QRect const& place)
{
    setGeometry(place);
    services_.prepared.setArea(devicePixels(*this));
}

void ViewerWidget::modelChanged()
{
    container_.modelChanged();
    if (!container_.image())
        return;
    showLayers();
}

void ViewerWidget::photoChanged()
{
    auto const* const image = container_.image();
    if (!image) {
        animation_.reset();
        close();
        return;
    }
    if (auto* const chrome = container_.chrome()) {
        chrome->hoverLeft = left_->underMouse();
        chrome->hoverRight = right_->underMouse();
    }
    picture_->photoChanged(container_.transitionTime());
    playAnimation();
    if (!isOpen_)
        open();
    showContent();
    describePicture();
}

// Name and description of what has the keyboard are read out as they change.
void ViewerWidget::describePicture()
{
    auto const* const chrome = container_.chrome();
    if (!chrome)
        return;
    auto text = failure_->isHidden() ? QString() : shownText(ViewerImage::failedText);
    if (!infoPanel_->isHidden()) {
        text += text.isEmpty() ? QString() : QStringLiteral("\n");
        text += infoPanel_->accessibleName();
    }
    setSpokenText(*picture_, shownText(chrome->spokenName()));
    if (picture_->accessibleDescription() != text)
        picture_->setAccessibleDescription(text);
}

void ViewerWidget::playAnimation()
{
    auto const& image = *container_.image();
    if (!image.isAnimated() || !services_.animate) {
        animation_.reset();
        return;
    }
    if (!animation_)
        animation_ = services_.animate([this] {
            if (!animation_->frame().isEmpty())
                picture_->showFrame(animation_->frame());
        });
    animation_->show(image.item().url);
}

void ViewerWidget::showLayers()
{
    using Layer = ViewerContainer::Layer;
    bool const hasChrome = container_.shows(Layer::chrome);
    chrome_->show(*container_.chrome());
    showArrows();
    bool const hasArrows = hasChrome && container_.chrome()->showsArrows();
    if ((!hasChrome && chrome_->isAncestorOf(QApplication::focusWidget()))
        || (!hasArrows && (left_->hasFocus() || right_->hasFocus())))
        picture_->setFocus();
    chrome_->setVisible(hasChrome);
    left_->setVisible(hasArrows);
    right_->setVisible(hasArrows);
    pause_->setVisible(container_.shows(Layer::pauseLabel));
    bool const hasInfo = container_.shows(Layer::infoPanel);
    if (hasInfo)
        info_.show(*container_.item());
    else
        info_.hide();
    infoPanel_->show(info_.lines());
    infoPanel_->setVisible(hasInfo);
    describePicture();
    layOut();
}

void ViewerWidget::showContent()
{
    auto const* const image = container_.image();
    auto const content = image ? image->content() : ViewerImage::Content::picture;
    failure_->setVisible(content == ViewerImage::Content::failure);
    spinner_->setVisible(image && image->showsSpinner());
}

void ViewerWidget::showArrows()
{
    if (auto const* const chrome = container_.chrome())
        for (auto* const arrow : { left_, right_ })
            arrow->show(chrome->arrow(arrow->side()));
}

void ViewerWidget::layOut()
{
    auto const middle = [this](QSize size) {
        return QRect(QPoint((width() - size.width()) / 2, (height() - size.height()) / 2), size);
    };
    picture_->setGeometry(rect());
    failure_->setGeometry(middle(failure_->sizeHint()));
    spinner_->setGeometry(middle(spinner_->size()));
    chrome_->setGeometry(0, 0, width(), chrome_->sizeHint().height());
    auto const size = left_->sizeHint();
    constexpr int padding = static_cast<int>(ViewerChrome::arrowPadding);
    left_->setGeometry(QRect(QPoint(padding, (height() - size.height()) / 2), size));
    right_->setGeometry(
        QRect(QPoint(width() - padding - size.width(), (height() - size.height()) / 2), size));
    auto const label = pause_->sizeHint();
    pause_->setGeometry(
        QRect(QPoint((width() - label.width()) / 2,
                  height() - static_cast<int>(ViewerContainer::pauseMargin) - label.height()),
            label));
    constexpr int margin = static_cast<int>(InfoPanel::margin);
    auto const panel
        = infoPanel_->sizeHint().boundedTo({ width() - 2 * margin, height() - 2 * margin });
    infoPanel_->setGeometry(QRect(QPoint(margin, height() - margin - panel.height()), panel));
}

void ViewerWidget::resizeEvent(QResizeEvent*)
{
    layOut();
}

void ViewerWidget::open()
{
    isOpen_ = true;
    setAttribute(Qt::WA_TransparentForMouseEvents, false);
    raise();
    showLayers();
    show();
    picture_->setFocus();
    fade(0, 1);
}

void ViewerWidget::close()
{
    if (!std::exchange(isOpen_, false))
        return;
    info_.hide();
    failure_->hide();
    spinner_->hide();
    pause_->hide();
    infoPanel_->hide();
    setAttribute(Qt::WA_TransparentForMouseEvents);
    QToolTip::hideText(); // it has the viewer's colours
    if (closing)
        closing();
    fade(1, 0);
}

// The gallery stays in place beneath and shines through meanwhile.
void ViewerWidget::fade(double from, double to)
{
    if (fading_) {
        from = fading_->currentValue().toDouble();
        delete fading_;
    }
    auto* const effect = new QGraphicsOpacityEffect(this);
    effect->setOpacity(from);
    setGraphicsEffect(effect);
    picture_->setAttribute(Qt::WA_OpaquePaintEvent, false); // or nothing is drawn beneath it
    fading_ = new QVariantAnimation(this);
    fading_->setStartValue(from);
    fading_->setEndValue(to);
    fading_->setDuration(static_cast<int>(ViewerContainer::fadeTime.count()));
    fading_->setEasingCurve(QEasingCurve::OutQuad);
    connect(fading_, &QVariantAnimation::valueChanged, effect,
        [effect](QVariant const& value) { effect->setOpacity(value.toDouble()); });
    connect(fading_, &QVariantAnimation::finished, this, [this] {
        setGraphicsEffect(nullptr);
        picture_->setAttribute(Qt::WA_OpaquePaintEvent);
        if (isOpen_) {
            if (opened)
                opened();
            return;
        }
        hide();
        picture_->photoChanged({});
    });
    fading_->start(QAbstractAnimation::DeleteWhenStopped);
}

bool ViewerWidget::isComplete() const
{
    return isOpen_ && !fading_ && picture_->isComplete();
}

void ViewerWidget::perform(ViewerChrome::Action action, QPoint below)
{
    if (action == ViewerChrome::Action::share)
        share(below);
    else if (auto* const chrome = container_.chrome())
        chrome->perform(action);
}

void ViewerWidget::share(QPoint below)
{
    auto const* const image = container_.image();
    if (!services_.share || !image)
        return;
    services_.share->prepare();
    auto* const menu = new QMenu(this);
    menu->setPalette(viewerMenuPalette());
    menu->setAttribute(Qt::WA_DeleteOnClose);
    fillMenu(*menu, services_.share->entries({ image->item().url }));
    menu->popup(below);
}

// The keyboard goes round within the viewer: what lies beneath is not to be seen.
bool ViewerWidget::focusNextPrevChild(bool next)
{
    std::vector<QWidget*> stops { picture_ };
    for (auto const action : ViewerChrome::order)
        stops.push_back(chrome_->button(action));
    stops.push_back(left_);
    stops.push_back(right_);
    std::erase_if(stops, [](QWidget const* stop) { return !stop->isVisible(); });
    if (stops.empty())
        return false;
    auto const found = std::ranges::find(stops, QApplication::focusWidget());
    auto const count = stops.size();
    auto const at = found == stops.end() ? 0 : static_cast<std::size_t>(found - stops.begin());
    stops[(at + (next ? 1 : count - 1)) % count]->setFocus(
        next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

// Whoever turns the pages of the gallery turns the photos alike.
void ViewerWidget::keyPressEvent(QKeyEvent* event)
{
    auto const key = event->key();
    bool const isPageKey = key == Qt::Key_PageUp || key == Qt::Key_PageDown;
    if (isPageKey && (event->modifiers() & ~Qt::KeypadModifier) == 0)
        services_.model.stepViewer(key == Qt::Key_PageUp ? -1 : +1);
    else if (!picture_->takeKey(*event))
        QWidget::keyPressEvent(event);
}

// What a part of the viewer has no use for is meant for the photo.
void ViewerWidget::wheelEvent(QWheelEvent* event)
{
    event->accept();
    picture_->takeWheel(*event);
}

bool ViewerWidget::event(QEvent* event)
{
    if (event->type() == QEvent::NativeGesture
        && picture_->takeNativeGesture(*static_cast<QNativeGestureEvent*>(event))) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

} // namespace pixelhain
