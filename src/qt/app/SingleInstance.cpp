#include "qt/app/SingleInstance.h"
#include "qt/app/ApplicationService.h"
#include "qt/ports/FileUrlText.h"
#include "qt/ports/SessionBus.h"
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <algorithm>
#include <condition_variable>
#include <cstdint>
#include <cstdlib>
#include <mutex>
#include <system_error>
#include <thread>

namespace pixelhain {

namespace {

std::optional<LifetimeLock> newMark()
{
    auto const* const folder = std::getenv("XDG_RUNTIME_DIR");
    if (!folder || folder[0] != '/')
        return std::nullopt;
    return LifetimeLock(std::string(folder) + "/de.pixelhain.Pixelhain.lock");
}

enum class Role { undecided, alone, first, second };

// The object stands before the name does: whoever finds the name finds the object.
Role claimName(QString const& address, QString const& connection, ApplicationService& service)
{
    auto bus = QDBusConnection::connectToBus(address, connection);
    if (!bus.isConnected()
        || !bus.registerObject(
            ApplicationService::path(), &service, QDBusConnection::ExportAllSlots))
        return Role::alone;
    auto const reply = bus.interface()->registerService(ApplicationService::name(),
        QDBusConnectionInterface::DontQueueService, QDBusConnectionInterface::DontAllowReplacement);
    if (!reply.isValid())
        return Role::alone;
    return reply.value() == QDBusConnectionInterface::ServiceRegistered ? Role::first
                                                                        : Role::second;
}

// The bus gives the name to who waits for it when the other one leaves. Its answer is not awaited.
void standNext(QString const& connection)
{
    auto call = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"),
        QStringLiteral("/org/freedesktop/DBus"), QStringLiteral("org.freedesktop.DBus"),
        QStringLiteral("RequestName"));
    constexpr quint32 waitInLine = 0;
    call << ApplicationService::name() << waitInLine;
    QDBusConnection(connection).asyncCall(call);
}

QDBusMessage callFor(OpenRequest const& request)
{
    auto const method = request.file ? QStringLiteral("Open")
        : request.action             ? QStringLiteral("ActivateAction")
                                     : QStringLiteral("Activate");
    auto call = QDBusMessage::createMethodCall(ApplicationService::name(),
        ApplicationService::path(), ApplicationService::interface(), method);
    if (request.file)
        call << QStringList(QString::fromStdString(uriOf(*request.file)));
    else if (request.action)
        call << shownText(nameOf(*request.action)) << QVariantList();
    call << request.platformData();
    // It runs, or it does not: never have the bus start one.
    call.setAutoStartService(false);
    return call;
}

} // namespace

struct SingleInstance::Answer {
    // The toolkit's own connection is not kept from its work, nor does it hold up this one.
    QString connection;
    std::mutex lock;
    std::condition_variable given;
    Role role = Role::undecided;

    void give(Role decided)
    {
        std::scoped_lock const guard(lock);
        role = decided;
        given.notify_all();
    }

    Role now()
    {
        std::scoped_lock const guard(lock);
        return role;
    }

    Role until(Clock::time_point deadline)
    {
        std::unique_lock guard(lock);
        given.wait_until(guard, deadline, [this] { return role != Role::undecided; });
        return role;
    }
};

// The thread is never waited for: it may hang as long as the bus does.
SingleInstance::SingleInstance(ApplicationService& service)
    : mark_(newMark())
    , answer_(std::make_shared<Answer>())
{
    answer_->connection
        = QStringLiteral("application-%1").arg(reinterpret_cast<std::uintptr_t>(&service), 0, 16);
    // Not in the thread: the toolkit changes the environment meanwhile.
    auto const address = sessionBusAddress();
    if (address.isEmpty()) {
        answer_->give(Role::alone);
        return;
    }
    try {
        std::thread([answer = answer_, address, &service] {
            answer->give(claimName(address, answer->connection, service));
        }).detach();
    } catch (std::system_error const&) {
        answer_->give(Role::alone);
    }
}

SingleInstance::~SingleInstance()
{
    if (answer_->now() != Role::undecided)
        QDBusConnection::disconnectFromBus(answer_->connection);
}

bool SingleInstance::handOver(OpenRequest const& request)
{
    if (patienceLeft_ <= Clock::duration::zero())
        return false;
    auto const deadline = Clock::now() + patienceLeft_;
    bool const isProbablySecond = mark_ && mark_->state() == LifetimeLock::State::others;
    auto const role = isProbablySecond ? answer_->until(deadline) : answer_->now();
    patienceLeft_ = deadline - Clock::now();
    if (role != Role::second)
        return false;
    // Asked once: who does not answer may do what is asked all the same, later.
    patienceLeft_ = {};
    if (isTaken(request, deadline))
        return true;
    standNext(answer_->connection);
    return false;
}

bool SingleInstance::isTaken(OpenRequest const& request, Clock::time_point deadline) const
{
    auto const left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    auto const timeout = std::max(left, std::chrono::milliseconds(1));
    auto const reply = QDBusConnection(answer_->connection)
                           .call(callFor(request), QDBus::Block, static_cast<int>(timeout.count()));
    return reply.type() == QDBusMessage::ReplyMessage;
}

} // namespace pixelhain
