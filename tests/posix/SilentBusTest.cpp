#include "posix/SilentBus.h"
#include "posix/Descriptor.h"
#include "support/TemporaryFolder.h"
#include <chrono>
#include <cstddef>
#include <doctest/doctest.h>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <vector>

using namespace pixelhain;
using namespace std::chrono_literals;

namespace {

// Long for a machine that is busy, short for a test.
constexpr auto shortWhile = 50ms;
constexpr auto longWhile = 60'000ms;

sockaddr_un addressOf(std::string const& name)
{
    sockaddr_un address {};
    address.sun_family = AF_UNIX;
    REQUIRE(name.size() < sizeof address.sun_path);
    name.copy(address.sun_path, name.size());
    return address;
}

Descriptor listening(std::string const& name, int queue = 8)
{
    Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    auto const address = addressOf(name);
    auto const length = offsetof(sockaddr_un, sun_path) + name.size();
    REQUIRE(::bind(socket.get(), reinterpret_cast<sockaddr const*>(&address),
                static_cast<socklen_t>(length))
        == 0);
    REQUIRE(::listen(socket.get(), queue) == 0);
    return socket;
}

std::string pathIn(TemporaryFolder const& folder, std::string const& name)
{
    return std::string(folder.url().child(name).path());
}

// Answers the first caller once it has said something.
std::jthread answering(Descriptor const& socket)
{
    return std::jthread([number = socket.get()] {
        Descriptor const caller(::accept(number, nullptr, nullptr));
        char words[16];
        if (::recv(caller.get(), words, sizeof words, 0) > 0)
            static_cast<void>(::send(caller.get(), "REJECTED\r\n", 10, MSG_NOSIGNAL));
    });
}

} // namespace

TEST_CASE("a bus that takes callers and says nothing is silent")
{
    TemporaryFolder const folder;
    auto const path = pathIn(folder, "bus");
    auto const socket = listening(path);
    CHECK(isSilentBus("unix:path=" + path, shortWhile));
    CHECK(isSilentBus("unix:guid=0123,path=" + path + ",x=y;tcp:host=localhost", shortWhile));
}

TEST_CASE("a bus whose queue of callers is full is silent")
{
    TemporaryFolder const folder;
    auto const path = pathIn(folder, "bus");
    auto const socket = listening(path, 0);
    auto const address = addressOf(path);
    std::vector<Descriptor> callers;
    for (bool isTaken = true; isTaken;) {
        callers.emplace_back(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
        isTaken = ::connect(callers.back().get(), reinterpret_cast<sockaddr const*>(&address),
                      sizeof address)
            == 0;
    }
    CHECK(isSilentBus("unix:path=" + path, shortWhile));
}

TEST_CASE("a bus that answers is not silent, and is waited for no longer")
{
    TemporaryFolder const folder;
    auto const path = pathIn(folder, "b s");
    auto const socket = listening(path);
    auto const thread = answering(socket);
    CHECK_FALSE(isSilentBus("unix:path=" + pathIn(folder, "b%20s"), longWhile));
}

TEST_CASE("a bus under a name that is no path is greeted too")
{
    TemporaryFolder const folder;
    auto const name = pathIn(folder, "bus");
    auto const socket = listening(std::string(1, '\0') + name);
    CHECK(isSilentBus("unix:abstract=" + name, shortWhile));
    auto const thread = answering(socket);
    // The call that nobody took in stands before this one.
    auto const second = answering(socket);
    CHECK_FALSE(isSilentBus("unix:abstract=" + name, longWhile));
}

TEST_CASE("where nobody listens, or in another way, nobody is silent")
{
    TemporaryFolder const folder;
    auto const path = pathIn(folder, "bus");
    for (auto const& address : { std::string(), std::string(";"), std::string("disabled:"),
             std::string("unix:path="), std::string("unix:runtime=yes"), "unix:path=" + path,
             std::string("autolaunch:"), std::string("tcp:host=localhost,port=1"),
             "unix:path=/" + std::string(200, 'x'), std::string("%,=;:") })
        CHECK_FALSE(isSilentBus(address, longWhile));
}

TEST_CASE("where nobody listens the next way counts")
{
    TemporaryFolder const folder;
    auto const path = pathIn(folder, "bus");
    auto const socket = listening(path);
    CHECK(isSilentBus("unix:path=" + pathIn(folder, "none") + ";unix:path=" + path, shortWhile));
}
