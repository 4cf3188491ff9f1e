#include "posix/LifetimeLock.h"
#include "support/TemporaryFolder.h"
#include <doctest/doctest.h>
#include <filesystem>
#include <optional>

using namespace pixelhain;
using State = LifetimeLock::State;

TEST_CASE("the mark is the first one's, until that one is gone")
{
    TemporaryFolder folder;
    std::string const file(folder.url().child("mark").path());
    std::optional<LifetimeLock> first(file);
    CHECK(first->state() == State::mine);
    CHECK(LifetimeLock(file).state() == State::others);
    first.reset();
    CHECK(LifetimeLock(file).state() == State::mine);
}

TEST_CASE("where there can be no mark nothing is known")
{
    TemporaryFolder folder;
    CHECK(LifetimeLock("/proc/no/mark").state() == State::unknown);
    std::string const link(folder.url().child("link").path());
    std::filesystem::create_symlink("elsewhere", link);
    CHECK(LifetimeLock(link).state() == State::unknown);
    CHECK_FALSE(std::filesystem::exists(folder.url().child("elsewhere").path()));
}
