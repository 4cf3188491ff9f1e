#include "qt/window/KeyMonitor.h"
#include "model/BrowserModel.h"
#include "qt/window/KeyMapping.h"
#include "qt/window/MainWindowWidget.h"
#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QKeyEvent>
#include <QMenuBar>
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

// A button that somebody went to with Tab is pressed by the space key, also in the viewer, where
// that key means something else.
bool pressesButton(MainWindowWidget const& window, QWidget const& receiver, QKeyEvent const& event)
{
    auto const* const viewer = window.content().viewer();
    return event.key() == Qt::Key_Space && event.modifiers() == Qt::NoModifier && viewer
        && viewer->isAncestorOf(&receiver) && qobject_cast<QAbstractButton const*>(&receiver);
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
        if (pressesButton(*window, receiver, typed))
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
