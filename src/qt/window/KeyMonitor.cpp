#include "qt/window/KeyMonitor.h"
#include "model/BrowserModel.h"
#include "qt/window/KeyMapping.h"
#include "qt/window/MainWindowWidget.h"
#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QApplication>
#include <QKeyEvent>
#include <QMenuBar>
#include <algorithm>
#include <array>
#include <memory>
#include <utility>

namespace pixelhain {

namespace {

KeyFocus focusIn(MainWindowWidget const& window)
{
    if (window.isEditingText())
        return KeyFocus::textView;
    if (qobject_cast<QAbstractItemView*>(window.focusWidget()))
        return KeyFocus::tableView;
    return KeyFocus::gallery;
}

// What a control needs to be worked without a mouse is not the gallery's: a button that somebody
// went to with Tab is pressed by the space key, a slider is moved by the arrows.
bool belongsToControl(QWidget const& receiver, QKeyEvent const& event)
{
    if (event.modifiers() & ~Qt::KeypadModifier)
        return false;
    if (qobject_cast<QAbstractButton const*>(&receiver))
        return event.key() == Qt::Key_Space;
    constexpr std::array sliderKeys { Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down,
        Qt::Key_Home, Qt::Key_End, Qt::Key_PageUp, Qt::Key_PageDown };
    return qobject_cast<QAbstractSlider const*>(&receiver)
        && std::ranges::find(sliderKeys, event.key()) != sliderKeys.end();
}

class KeyMonitor final : public QObject {
public:
    explicit KeyMonitor(BrowserModel& model)
        : model_(model)
    {
        QCoreApplication::instance()->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() != QEvent::KeyPress || !watched->isWidgetType())
            return false;
        // A key goes from the focused control up to the window; it is ours at its first stop. The
        // bar has the keys while someone walks through its menus.
        auto const& receiver = *static_cast<QWidget*>(watched);
        auto const* const window = dynamic_cast<MainWindowWidget*>(receiver.window());
        if (!window || qobject_cast<QMenuBar const*>(&receiver)
            || (window->focusWidget() && window->focusWidget() != &receiver))
            return false;
        auto const& typed = *static_cast<QKeyEvent*>(event);
        if (belongsToControl(receiver, typed))
            return false;
        auto key = mappedKey(typed);
        key.window = window;
        key.focus = focusIn(*window);
        key.windowHasSheet = QApplication::activeModalWidget() != nullptr;
        return model_.handleKey(key);
    }

private:
    BrowserModel& model_;
};

} // namespace

Task monitorKeys(BrowserModel& model)
{
    auto monitor = std::make_shared<KeyMonitor>(model);
    return Task([monitor = std::move(monitor)]() mutable { monitor.reset(); });
}

} // namespace pixelhain
