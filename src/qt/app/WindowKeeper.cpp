#include "qt/app/WindowKeeper.h"
#include "ports/MainLoop.h"
#include "qt/window/MainWindowWidget.h"
#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
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
    auto wanted = placement_;
    if (!hasPositions())
        wanted.position.reset();
    wanted = fitted(wanted, roomsOnScreens());
    window_.resize(static_cast<int>(wanted.width), static_cast<int>(wanted.height));
    window_.content().setSidebarWidth(static_cast<int>(wanted.sidebarWidth));
    if (auto const at = wanted.position)
        window_.move(static_cast<int>(at->x), static_cast<int>(at->y));
    if (wanted.isMaximized)
        window_.setWindowState(window_.windowState() | Qt::WindowMaximized);
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
    placement_.width = window_.width();
    placement_.height = window_.height();
    if (hasPositions())
        placement_.position
            = Point { static_cast<double>(window_.x()), static_cast<double>(window_.y()) };
    else
        placement_.position.reset();
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
        if (window_.isVisible())
            resting_ = loop_.after(rest, [this] { keep(); });
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
