#include "qt/ports/SessionBus.h"
#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QFile>
#include <QGuiApplication>
#include <QWindow>
#include <utility>

namespace pixelhain {

namespace {

// Where the bus of the user's session listens unless the environment says otherwise.
QString usualSocket()
{
    return qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus");
}

} // namespace

bool hasSessionBus()
{
    return !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") || QFile::exists(usualSocket());
}

QString sessionBusAddress()
{
    auto const given = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    if (given.startsWith(QStringLiteral("autolaunch:"))) // none yet: it would be started for us
        return {};
    if (!given.isEmpty() || !hasSessionBus())
        return given;
    return QStringLiteral("unix:path=")
        + QString::fromLatin1(QFile::encodeName(usualSocket()).toPercentEncoding("/-_."));
}

void callSessionBus(
    QObject* context, QDBusMessage const& call, std::function<void(QDBusMessage const&)> answered)
{
    if (!hasSessionBus()) {
        answered(call.createErrorReply(QDBusError::Disconnected, QStringLiteral("no session bus")));
        return;
    }
    auto* watcher
        = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context,
        [watcher, answered = std::move(answered)] {
            watcher->deleteLater();
            answered(watcher->reply());
        });
}

QDBusMessage portalCall(QString const& interface, QString const& method)
{
    return QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.portal.Desktop"),
        QStringLiteral("/org/freedesktop/portal/desktop"), interface, method);
}

QString portalParentWindow()
{
    auto const* const window = QGuiApplication::focusWindow();
    if (!window || QGuiApplication::platformName() != QStringLiteral("xcb"))
        return {};
    return QStringLiteral("x11:%1").arg(window->winId(), 0, 16);
}

bool isRefused(QDBusMessage const& answer)
{
    auto const error = QDBusError(answer).type();
    return answer.type() == QDBusMessage::ErrorMessage && error != QDBusError::NoReply
        && error != QDBusError::Timeout && error != QDBusError::TimedOut;
}

} // namespace pixelhain
