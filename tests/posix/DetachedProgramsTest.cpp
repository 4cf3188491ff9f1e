#include "posix/DetachedPrograms.h"
#include "support/FakePrograms.h"
#include <chrono>
#include <doctest/doctest.h>
#include <thread>

using namespace pixelhain;

namespace {

bool eventuallyTold(FakePrograms const& programs, std::string_view name)
{
    for (int i = 0; i < 6000 && !programs.hasTold(name); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return programs.hasTold(name);
}

} // namespace

TEST_CASE("a program gets its arguments as bytes, and variables in place of inherited ones")
{
    FakePrograms programs;
    programs.add("tell", "GREETING");
    ::setenv("GREETING", "inherited", 1);
    DetachedPrograms started;
    CHECK(started.start({ "tell", "/Fotos/\xe4 b.jpg", "" }, { "GREETING=hello" }));
    REQUIRE(eventuallyTold(programs, "tell"));
    CHECK(programs.told("tell") == "/Fotos/\xe4 b.jpg\n\nhello\n.\n");
}

TEST_CASE("a program inherits the other variables")
{
    FakePrograms programs;
    programs.add("tell", "GREETING");
    ::setenv("GREETING", "inherited", 1);
    DetachedPrograms started;
    CHECK(started.start({ "tell" }, { "GREETING_TO_OTHERS=hello" }));
    REQUIRE(eventuallyTold(programs, "tell"));
    CHECK(programs.told("tell") == "inherited\n.\n");
}

TEST_CASE("a program that is not there is not started")
{
    DetachedPrograms started;
    CHECK_FALSE(started.start({ "pixelhain-no-such-program" }));
    CHECK_FALSE(started.start({}));
    CHECK_FALSE(isInstalled("pixelhain-no-such-program"));
}

TEST_CASE("only executable files count as installed")
{
    FakePrograms programs;
    programs.add("tell");
    std::filesystem::path const folder(programs.folder().path());
    std::ofstream(folder / "a-text") << "no program";
    std::filesystem::create_directory(folder / "a-folder");
    CHECK(isInstalled("tell"));
    CHECK(isInstalled("sh"));
    CHECK_FALSE(isInstalled("a-text"));
    CHECK_FALSE(isInstalled("a-folder"));
}
