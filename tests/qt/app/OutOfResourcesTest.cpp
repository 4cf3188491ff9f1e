#include "qt/app/OutOfResources.h"
#include "support/ForkedRun.h"
#include <QLoggingCategory>
#include <QThread>
#include <array>
#include <csignal>
#include <doctest/doctest.h>
#include <fcntl.h>
#include <fstream>
#include <new>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <system_error>
#include <unistd.h>

using namespace pixelhain;

namespace {

struct Said {
    Ending ending;
    std::string text; ///< on stderr
};

template <typename Thrown> [[noreturn]] void thrownBy(Thrown const& thrown)
{
    throw thrown;
}

rlim_t addressSpace()
{
    rlim_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    return pages * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE));
}

template <typename Deed> Said after(Deed const& deed)
{
    std::array<int, 2> pipe {};
    REQUIRE(::pipe2(pipe.data(), O_CLOEXEC) == 0);
    auto const process = startForked([&]() noexcept -> int {
        rlimit const none { 0, 0 };
        ::setrlimit(RLIMIT_CORE, &none);
        ::signal(SIGABRT, SIG_DFL); // not the test program's own
        ::dup2(pipe[1], STDERR_FILENO);
        sayWhyWhenOutOfResources();
        deed();
        return 0;
    });
    ::close(pipe[1]);
    Said said { endingOf(process), {} };
    std::array<char, 200> text {};
    for (ssize_t length = 0; (length = ::read(pipe[0], text.data(), text.size())) > 0;)
        said.text.append(text.data(), static_cast<std::size_t>(length));
    ::close(pipe[0]);
    return said;
}

// A program in which nobody catches what is thrown.
template <typename Thrown> Said whenThrown(Thrown const& thrown)
{
    return after([&] { thrownBy(thrown); });
}

} // namespace

TEST_CASE("a program that may have no thread says so and ends with 1")
{
    auto const said = whenThrown(
        std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again)));
    CHECK(said.ending.code == 1);
    CHECK(said.ending.signal == 0);
    CHECK(said.text == "pixelhain: Das System lässt keine weiteren Threads zu.\n");
}

TEST_CASE("a program ends when its toolkit may have no thread: it would wait for it for ever")
{
    bool areReportsOff = false;
    SUBCASE("") { }
    SUBCASE("with reports switched off")
    {
        areReportsOff = true;
    }
    auto const said = after([&] {
        if (areReportsOff)
            QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
        QThread thread;
        thread.setStackSize(1U << 30); // none that an earlier thread has left, nor room for it
        auto const room = addressSpace() + (1U << 26);
        rlimit const limit { room, room };
        ::setrlimit(RLIMIT_AS, &limit);
        thread.start();
    });
    CHECK(said.ending.code == 1);
    CHECK(said.text.ends_with("pixelhain: Das System lässt keine weiteren Threads zu.\n"));
}

TEST_CASE("a program without memory says so and ends with 1")
{
    auto const said = whenThrown(std::bad_alloc());
    CHECK(said.ending.code == 1);
    CHECK(said.text == "pixelhain: Der Arbeitsspeicher reicht nicht.\n");
}

TEST_CASE("what nobody foresaw still leaves a crash to be looked into")
{
    CHECK(whenThrown(std::runtime_error("why")).ending.signal == SIGABRT);
    CHECK(whenThrown(std::system_error(std::make_error_code(std::errc::io_error))).ending.signal
        == SIGABRT);
}
