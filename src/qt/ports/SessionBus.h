#pragma once
#include <QDBusError>
#include <QDBusMessage>
#include <QString>
#include <functional>

class QObject;

namespace pixelhain {

/// Whether there can be a session bus. Without an address libdbus would start a bus of its own,
/// which takes long and helps nobody.
[[nodiscard]] bool hasSessionBus();

/// Where the session bus is, as the environment has it; empty if there is none.
[[nodiscard]] QString sessionBusAddress();

/// Sends the call and returns at once. The answer, or an error, comes later on the main thread,
/// unless `context` is gone by then. Without a bus the error comes at once.
void callSessionBus(
    QObject* context, QDBusMessage const& call, std::function<void(QDBusMessage const&)> answered);

/// A call of the desktop portal.
[[nodiscard]] QDBusMessage portalCall(QString const& interface, QString const& method);

/// How a portal names the window that its dialogs belong to; empty where that cannot be told.
[[nodiscard]] QString portalParentWindow();

/// Whether nobody took the call. A call that was not answered in time may still be acted on.
[[nodiscard]] bool isRefused(QDBusMessage const& answer);

} // namespace pixelhain
