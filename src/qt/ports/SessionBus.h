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

/// From now on there is no session bus for this process, the toolkit included, which would greet it
/// on the main thread and wait. Its address is taken out of the environment: the desktop's
/// libraries which the toolkit loads when it starts would wait, too. To be called before there is a
/// second thread.
void doWithoutSessionBus();

/// Programs that are started from now on find the bus that is done without. To be called once the
/// toolkit has started.
void giveSessionBusBack();

/// Sends the call and returns at once, also while the bus hangs. Main thread; the answer, or an
/// error, comes there later, unless `context` is gone by then. Without a bus the error comes at
/// once.
void callSessionBus(
    QObject* context, QDBusMessage const& call, std::function<void(QDBusMessage const&)> answered);

/// A signal of an object on the bus, whoever sends it.
struct BusSignal {
    QString path;
    QString interface;
    QString name;
};

/// Returns at once. `listening` is called on the main thread when nothing can be missed any more,
/// and `heard` for each such signal, as long as `context` lives.
void listenToSessionBus(QObject* context, BusSignal const& signal, std::function<void()> listening,
    std::function<void(QDBusMessage const&)> heard);

/// A call of the desktop portal.
[[nodiscard]] QDBusMessage portalCall(QString const& interface, QString const& method);

/// How a portal names the window that its dialogs belong to; empty where that cannot be told.
[[nodiscard]] QString portalParentWindow();

/// Whether nobody took the call. A call that was not answered in time may still be acted on.
[[nodiscard]] bool isRefused(QDBusMessage const& answer);

} // namespace pixelhain
