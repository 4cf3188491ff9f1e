#include "qt/app/SingleInstance.h"
#include "qt/Variable.h"
#include "qt/Wait.h"
#include "qt/app/ApplicationService.h"
#include "qt/ports/BusService.h"
#include "support/TemporaryFolder.h"
#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QThread>
#include <chrono>
#include <doctest/doctest.h>
#include <mutex>
#include <optional>
#include <sys/socket.h>
#include <sys/un.h>

using namespace pixelhain;

namespace {

QByteArray bytes(std::string_view text)
{
    return { text.data(), static_cast<qsizetype>(text.size()) };
}

// A bus that takes everybody and answers nobody.
class DeafBus {
public:
    explicit DeafBus(std::string const& path)
        : socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_un address {};
        address.sun_family = AF_UNIX;
        REQUIRE(path.size() < sizeof address.sun_path);
        path.copy(address.sun_path, path.size());
        REQUIRE(::bind(socket_.get(), reinterpret_cast<sockaddr*>(&address), sizeof address) == 0);
        REQUIRE(::listen(socket_.get(), 8) == 0);
    }

private:
    Descriptor socket_;
};

// The program that has the name. It answers on a thread of its own, or hangs: on this thread it
// cannot answer while a second start waits for it here.
class RunningProgram {
public:
    enum class State { answers, isEnding, hangs };

    explicit RunningProgram(State state)
    {
        service_.serve([this, state](OpenRequest const& request) {
            std::scoped_lock const guard(lock_);
            requests_.push_back(request);
            return state != State::isEnding;
        });
        if (state == State::hangs)
            return;
        service_.moveToThread(&thread_);
        thread_.start();
    }
    RunningProgram(RunningProgram const&) = delete;
    RunningProgram& operator=(RunningProgram const&) = delete;
    ~RunningProgram()
    {
        thread_.quit();
        thread_.wait();
    }

    bool isRunning() const { return bus_.isRunning(); }
    std::vector<OpenRequest> requests()
    {
        std::scoped_lock const guard(lock_);
        return requests_;
    }

private:
    QThread thread_; // outlives the object that lives in it
    std::mutex lock_;
    std::vector<OpenRequest> requests_;
    ApplicationService service_;
    BusService bus_ { ApplicationService::name(), ApplicationService::path(), service_ };
};

// Threads of single instances are never waited for, so what they serve is not taken away.
ApplicationService& newService()
{
    return *new ApplicationService;
}

} // namespace

TEST_CASE("without a bus everybody starts alone")
{
    TemporaryFolder folder;
    Variable const runtime("XDG_RUNTIME_DIR", bytes(folder.url().path()));
    Variable const bus("DBUS_SESSION_BUS_ADDRESS", "");
    SingleInstance first(newService());
    CHECK_FALSE(first.handOver({}));
    SingleInstance second(newService());
    CHECK_FALSE(second.handOver({}));
}

TEST_CASE("a bus that never answers holds up nobody who starts alone")
{
    TemporaryFolder folder;
    std::string const socket(folder.url().child("bus").path());
    DeafBus const deaf(socket);
    Variable const runtime("XDG_RUNTIME_DIR", bytes(folder.url().path()));
    Variable const bus("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + bytes(socket));
    auto const before = std::chrono::steady_clock::now();
    SingleInstance first(newService());
    CHECK_FALSE(first.handOver({}));
    CHECK(std::chrono::steady_clock::now() - before < SingleInstance::patience);
    SingleInstance second(newService());
    CHECK_FALSE(second.handOver({}));
    auto const taken = std::chrono::steady_clock::now() - before;
    CHECK(taken >= SingleInstance::patience);
    CHECK(taken < 3 * SingleInstance::patience);
}

TEST_CASE("the first start has the name on the bus and is found under it")
{
    if (!hasTestBus())
        return;
    TemporaryFolder folder;
    Variable const runtime("XDG_RUNTIME_DIR", bytes(folder.url().path()));
    auto& service = newService();
    int asked = 0;
    service.serve([&](OpenRequest const&) { return ++asked > 0; });
    std::optional<SingleInstance> first(std::in_place, service);
    auto bus = QDBusConnection::sessionBus();
    auto const isThere
        = [&] { return bus.interface()->isServiceRegistered(ApplicationService::name()).value(); };
    REQUIRE(eventually(isThere));
    CHECK_FALSE(first->handOver({}));
    auto call = QDBusMessage::createMethodCall(ApplicationService::name(),
        ApplicationService::path(), ApplicationService::interface(), QStringLiteral("Activate"));
    call << QVariantMap();
    auto const pending = bus.asyncCall(call);
    CHECK(eventually([&] { return asked == 1; }));
    first.reset();
    CHECK(eventually([&] { return !isThere(); }));
    service.serve(nullptr);
}

TEST_CASE("a second start hands what it was asked for to the program that runs")
{
    if (!hasTestBus())
        return;
    TemporaryFolder folder;
    Variable const runtime("XDG_RUNTIME_DIR", bytes(folder.url().path()));
    RunningProgram first(RunningProgram::State::answers);
    REQUIRE(first.isRunning());
    SingleInstance second(newService());
    OpenRequest const request { FileUrl("/b/\xE4 100% #?"), "start_TIME12", "token" };
    CHECK(eventually([&] { return second.handOver(request); }));
    auto const taken = first.requests();
    REQUIRE(taken.size() == 1);
    CHECK(taken[0].file == request.file);
    CHECK(taken[0].startupId == "start_TIME12");
    CHECK(taken[0].activationToken == "token");
}

TEST_CASE("who asks a program that is ending goes on by itself, and has the name after it")
{
    if (!hasTestBus())
        return;
    TemporaryFolder folder;
    Variable const runtime("XDG_RUNTIME_DIR", bytes(folder.url().path()));
    LifetimeLock const mark(std::string(folder.url().child("de.pixelhain.Pixelhain.lock").path()));
    std::optional<RunningProgram> first(std::in_place, RunningProgram::State::isEnding);
    REQUIRE(first->isRunning());
    auto& service = newService();
    int asked = 0;
    service.serve([&](OpenRequest const&) { return ++asked > 0; });
    auto const before = std::chrono::steady_clock::now();
    SingleInstance second(service);
    CHECK_FALSE(second.handOver({ FileUrl("/b"), "", "" }));
    CHECK(std::chrono::steady_clock::now() - before < SingleInstance::patience);
    CHECK(first->requests().size() == 1);
    first.reset();
    auto bus = QDBusConnection::sessionBus();
    auto const isThere
        = [&] { return bus.interface()->isServiceRegistered(ApplicationService::name()).value(); };
    REQUIRE(eventually(isThere));
    auto call = QDBusMessage::createMethodCall(ApplicationService::name(),
        ApplicationService::path(), ApplicationService::interface(), QStringLiteral("Activate"));
    call << QVariantMap();
    auto const pending = bus.asyncCall(call);
    CHECK(eventually([&] { return asked == 1; }));
    service.serve(nullptr);
}

TEST_CASE("a running program that hangs is asked once, and waited for once")
{
    if (!hasTestBus())
        return;
    TemporaryFolder folder;
    Variable const runtime("XDG_RUNTIME_DIR", bytes(folder.url().path()));
    LifetimeLock const mark(std::string(folder.url().child("de.pixelhain.Pixelhain.lock").path()));
    RunningProgram first(RunningProgram::State::hangs);
    REQUIRE(first.isRunning());
    auto const before = std::chrono::steady_clock::now();
    SingleInstance second(newService());
    CHECK_FALSE(second.handOver({ FileUrl("/b"), "", "" }));
    auto const waited = std::chrono::steady_clock::now() - before;
    CHECK(waited >= SingleInstance::patience * 9 / 10); // as exact as the toolkit's timers
    CHECK_FALSE(second.handOver({ FileUrl("/b"), "", "" }));
    CHECK(std::chrono::steady_clock::now() - before - waited < SingleInstance::patience / 2);
    CHECK(eventually([&] { return !first.requests().empty(); }));
    CHECK(first.requests().size() == 1);
}
