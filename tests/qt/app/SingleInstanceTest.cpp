#include "qt/app/SingleInstance.h"
#include "qt/Wait.h"
#include "qt/app/ApplicationService.h"
#include "qt/ports/BusService.h"
#include "support/TemporaryFolder.h"
#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <chrono>
#include <doctest/doctest.h>
#include <optional>
#include <sys/socket.h>
#include <sys/un.h>

using namespace pixelhain;

namespace {

// A variable of the environment as long as this lives.
class Variable {
public:
    Variable(char const* name, QByteArray const& value)
        : name_(name)
        , before_(qgetenv(name))
        , wasThere_(qEnvironmentVariableIsSet(name))
    {
        qputenv(name, value);
    }
    Variable(Variable const&) = delete;
    Variable& operator=(Variable const&) = delete;
    ~Variable()
    {
        if (wasThere_)
            qputenv(name_, before_);
        else
            qunsetenv(name_);
    }

private:
    char const* name_;
    QByteArray before_;
    bool wasThere_;
};

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
    SingleInstance const first(newService());
    CHECK_FALSE(first.handOver({}));
    SingleInstance const second(newService());
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
    SingleInstance const first(newService());
    CHECK_FALSE(first.handOver({}));
    CHECK(std::chrono::steady_clock::now() - before < SingleInstance::patience);
    SingleInstance const second(newService());
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
    service.serve([&](OpenRequest const&) { ++asked; });
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
