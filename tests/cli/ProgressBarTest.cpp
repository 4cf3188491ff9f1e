#include "cli/ProgressBar.h"
#include "cli/Output.h"
#include <array>
#include <cstdlib>
#include <doctest/doctest.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

using namespace pixelhain;

namespace {

/// Both ends of a terminal.
struct Terminal {
    int reader = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
    int writer = -1;
    Terminal()
    {
        REQUIRE(::grantpt(reader) == 0);
        REQUIRE(::unlockpt(reader) == 0);
        writer = ::open(::ptsname(reader), O_WRONLY | O_NOCTTY | O_CLOEXEC);
    }
    ~Terminal()
    {
        ::close(writer);
        ::close(reader);
    }
    std::string text() const
    {
        std::array<char, 4096> buffer {};
        auto const count = ::read(reader, buffer.data(), buffer.size());
        return { buffer.data(), static_cast<std::size_t>(count > 0 ? count : 0) };
    }
};

} // namespace

TEST_CASE("the line shows how many of the pages are done")
{
    CHECK(progressLine(0, 4) == "[----------------------------------------] 0 of 4 pages");
    CHECK(progressLine(3, 12) == "[##########------------------------------]  3 of 12 pages");
    CHECK(progressLine(1, 1) == "[########################################] 1 of 1 page");
}

TEST_CASE("on a terminal the line is written over again and goes at the end")
{
    Terminal const terminal;
    Output output(terminal.writer);
    {
        ProgressBar bar(output);
        bar.show(1, 2);
        CHECK(terminal.text() == "\r" + progressLine(1, 2));
        bar.show(1, 2);
        CHECK(terminal.text().empty());
        bar.show(2, 2);
        CHECK(terminal.text() == "\r" + progressLine(2, 2));
    }
    CHECK(terminal.text() == "\r\x1B[K");
}

TEST_CASE("where nobody watches nothing is written")
{
    int const file = ::memfd_create("err", MFD_CLOEXEC);
    Output output(file);
    {
        ProgressBar bar(output);
        bar.show(1, 2);
    }
    CHECK(output.flush());
    CHECK(::lseek(file, 0, SEEK_END) == 0);
    ::close(file);
}
