#include "qt/ports/SessionBus.h"
#include "qt/ports/BusListener.h"
#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QFile>
#include <QGuiApplication>
#include <QPointer>
#include <QWindow>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace pixelhain {

namespace {

constexpr auto addressVariable = "DBUS_SESSION_BUS_ADDRESS";
bool isDoneWithout = false;
std::optional<QByteArray> addressBefore; // of the bus that is done without, if it had one

// Where the bus of the user's session listens unless the environment says otherwise.
QString usualSocket()
{
    return qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus");
}

[[nodiscard]] bool runDetached(std::function<void()> work)
try {
    std::thread(std::move(work)).detach();
    return true;
} catch (std::system_error const&) {
    return false;
}

// Greeting the bus waits for its answer, which a bus that hangs does not give: a thread that nobody
// waits for does it. This lives as long as the process, on the main thread.
class Greeter final : public QObject {
public:
    using Work = std::function<void(QDBusConnection const&)>;

    static Greeter& shared()
    {
        static auto* const greeter = new Greeter;
        return *greeter;
    }

    // At once if the bus was greeted before. False if that is impossible.
    [[nodiscard]] bool whenGreeted(Work work)
    {
        if (bus_) {
            work(*bus_);
            return true;
        }
        waiting_.push_back(std::move(work));
        isGreeting_ = isGreeting_ || greet();
        if (!isGreeting_)
            waiting_.clear();
        return isGreeting_;
    }

private:
    // Not in the thread: the toolkit changes the environment meanwhile.
    [[nodiscard]] bool greet()
    {
        return runDetached([this, address = sessionBusAddress()] {
            auto const bus = QDBusConnection::connectToBus(address, QStringLiteral("pixelhain"));
            auto const greeted = [this, bus] {
                bus_ = bus;
                for (auto const& work : std::exchange(waiting_, {}))
                    work(bus);
            };
            QMetaObject::invokeMethod(this, greeted, Qt::QueuedConnection);
        });
    }

    std::vector<Work> waiting_;
    std::optional<QDBusConnection> bus_;
    bool isGreeting_ = false;
};

} // namespace

bool hasSessionBus()
{
    return !isDoneWithout
        && (!qEnvironmentVariableIsEmpty(addressVariable) || QFile::exists(usualSocket()));
}

QString sessionBusAddress()
{
    auto const given = qEnvironmentVariable(addressVariable);
    if (isDoneWithout)
        return {};
    if (given.startsWith(QStringLiteral("autolaunch:"))) // none yet: it would be started for us
        return {};
    if (!given.isEmpty() || !hasSessionBus())
        return given;
    return QStringLiteral("unix:path=")
        + QString::fromLatin1(QFile::encodeName(usualSocket()).toPercentEncoding("/-_."));
}

// The toolkit asks for its connection once, and keeps also one that was refused.
void doWithoutSessionBus()
{
    isDoneWithout = true;
    if (qEnvironmentVariableIsSet(addressVariable))
        addressBefore = qgetenv(addressVariable);
    qputenv(addressVariable, "disabled:");
    static_cast<void>(QDBusConnection::sessionBus());
}

void giveSessionBusBack()
{
    if (!isDoneWithout)
        return;
    if (addressBefore)
        qputenv(addressVariable, *addressBefore);
    else
        qunsetenv(addressVariable);
}

void callSessionBus(
    QObject* context, QDBusMessage const& call, std::function<void(QDBusMessage const&)> answered)
{
    auto const refuse = [&](QString const& reason) {
        answered(call.createErrorReply(QDBusError::Disconnected, reason));
    };
    if (!hasSessionBus())
        return refuse(QStringLiteral("no session bus"));
    auto const send = [call, answered, caller = QPointer(context)](QDBusConnection const& bus) {
        if (!caller)
            return;
        auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), caller);
        QObject::connect(watcher, &QDBusPendingCallWatcher::finished, caller, [watcher, answered] {
            watcher->deleteLater();
            answered(watcher->reply());
        });
    };
    if (!Greeter::shared().whenGreeted(send))
        refuse(QStringLiteral("no thread"));
}

// Without the sender's name among what is listened for: to learn who has it the bus would be asked.
void listenToSessionBus(QObject* context, BusSignal const& signal, std::function<void()> listening,
    std::function<void(QDBusMessage const&)> heard)
{
    if (!hasSessionBus())
        return;
    auto* const listener = new BusListener(context, std::move(heard));
    auto const connect = [=, caller = QPointer(context)](QDBusConnection bus) {
        bus.connect(QString(), signal.path, signal.interface, signal.name, listener,
            SLOT(take(QDBusMessage)));
        auto const begin = [caller, listening] {
            if (caller)
                listening();
        };
        QMetaObject::invokeMethod(listener, begin, Qt::QueuedConnection);
    };
    static_cast<void>(Greeter::shared().whenGreeted([connect](QDBusConnection const& bus) {
        static_cast<void>(runDetached([connect, bus] { connect(bus); }));
    }));
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
