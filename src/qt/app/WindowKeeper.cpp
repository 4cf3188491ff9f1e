#include "qt/app/WindowKeeper.h"
#include "ports/MainLoop.h"
#include "qt/window/MainWindowWidget.h"
#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>
#include <chrono>
#include <vector>

namespace pixelhain {

namespace {

// Desktops tell of a new size before they tell that it comes from maximizing.
constexpr std::chrono::seconds rest { 1 };

std::vector<Rect> roomsOnScreens()
{
    std::vector<Rect> rooms;
    for (auto const* screen : QGuiApplication::screens()) {
        QRectF const room = screen->availableGeometry();
        rooms.push_back({ room.x(), room.y(), room.width(), room.height() });
    }
    return rooms;
}

// Elsewhere programs neither learn nor choose where their windows are.
bool hasPositions()
{
    return QGuiApplication::platformName() == QStringLiteral("xcb");
}

} // namespace

WindowKeeper::WindowKeeper(MainWindowWidget& window, Preferences& preferences, MainLoop& loop)
    : window_(window)
    , preferences_(preferences)
    , loop_(loop)
    , placement_(readPlacement(preferences))
{
    place();
    window_.installEventFilter(this);
    window_.content().sidebarResized = [this] { resting_ = loop_.after(rest, [this] { keep(); }); };
}

void WindowKeeper::place()
{
    wanted_ = placement_;
    if (!hasPositions())
        wanted_.position.reset();
    placed_ = fitted(wanted_, roomsOnScreens());
    window_.resize(static_cast<int>(placed_.width), static_cast<int>(placed_.height));
    window_.content().setSidebarWidth(static_cast<int>(placed_.sidebarWidth));
    if (auto const at = placed_.position)
        window_.move(static_cast<int>(at->x), static_cast<int>(at->y));
    if (placed_.isMaximized)
        window_.setWindowState(window_.windowState() | Qt::WindowMaximized);
}

// The desktop tells what it puts around a window only once it is there. Whoever was faster and has
// changed its size has it as it is wanted.
void WindowKeeper::fitFrame()
{
    constexpr auto special = Qt::WindowMinimized | Qt::WindowMaximized | Qt::WindowFullScreen;
    auto const* const handle = window_.windowHandle();
    if (knowsFrame_ || !handle || !window_.isVisible() || (window_.windowState() & special))
        return;
    auto const margins = handle->frameMargins();
    if (margins.isNull())
        return;
    knowsFrame_ = true;
    auto const is = now();
    if (is.width != placed_.width || is.height != placed_.height)
        return;
    auto const fitting = fitted(is, roomsOnScreens(),
        { margins.left() + 0.0, margins.top() + 0.0, margins.right() + 0.0,
            margins.bottom() + 0.0 });
    placed_.width = fitting.width;
    placed_.height = fitting.height;
    window_.resize(static_cast<int>(placed_.width), static_cast<int>(placed_.height));
    if (fitting.position && fitting.position != is.position) {
        placed_.position = fitting.position;
        window_.move(static_cast<int>(fitting.position->x), static_cast<int>(fitting.position->y));
    }
}

WindowPlacement WindowKeeper::now() const
{
    auto now = placement_;
    now.width = window_.width();
    now.height = window_.height();
    now.position.reset();
    if (hasPositions())
        now.position = Point { static_cast<double>(window_.x()), static_cast<double>(window_.y()) };
    return now;
}

// A minimized window, or one on the full screen, will be what it was before.
void WindowKeeper::look()
{
    placement_.sidebarWidth = window_.content().sidebarWidth();
    auto const state = window_.windowState();
    if (state & (Qt::WindowMinimized | Qt::WindowFullScreen))
        return;
    placement_.isMaximized = state.testFlag(Qt::WindowMaximized);
    if (placement_.isMaximized)
        return;
    auto is = now();
    is.isMaximized = false;
    placement_ = kept(wanted_, placed_, is);
}

void WindowKeeper::keep()
{
    resting_.cancel();
    look();
    writePlacement(preferences_, placement_);
}

bool WindowKeeper::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::WindowStateChange:
        if (!window_.isVisible())
            break;
        resting_ = loop_.after(rest, [this] { keep(); });
        if (!knowsFrame_)
            fitting_ = loop_.after({}, [this] { fitFrame(); });
        break;
    case QEvent::Close:
        keep();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace pixelhain
