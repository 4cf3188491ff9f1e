#include "qt/ports/UserTime.h"
#include <QCoreApplication>
#include <QGuiApplication>
#include <QInputEvent>

namespace pixelhain {

UserTime::UserTime()
{
    QCoreApplication::instance()->installEventFilter(this);
}

std::string UserTime::newStartupId()
{
    if (time_ == 0 || QGuiApplication::platformName() != QStringLiteral("xcb"))
        return {};
    return "pixelhain-" + std::to_string(QCoreApplication::applicationPid()) + "-"
        + std::to_string(++count_) + "_TIME" + std::to_string(time_);
}

std::vector<std::string> UserTime::newStartVariables()
{
    auto const id = newStartupId();
    return id.empty() ? std::vector<std::string>() : std::vector { "DESKTOP_STARTUP_ID=" + id };
}

bool UserTime::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
        if (auto const time = static_cast<QInputEvent*>(event)->timestamp(); time != 0)
            time_ = time;
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace pixelhain
