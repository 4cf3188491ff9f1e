#include "SystemCallFaults.h"
#include "posix/PosixFileOperations.h"
#include "support/FileBytes.h"
#include "support/TemporaryFolder.h"
#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <doctest/doctest.h>
#include <functional>
#include <sched.h>
#include <set>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

using namespace pixelhain;

namespace {

CancelFlag const never;
constexpr int rounds = 30;
constexpr int racers = 6;

// What the processes of a race share.
struct Board {
    std::array<std::atomic<int>, rounds> arrived;
    std::array<std::array<std::atomic<int>, racers>, rounds> outcomes;
};

// Several processes run `work(round, racer)` at the same moment, in every round anew; their results
// are in the board.
class Race {
public:
    explicit Race(std::function<int(int, int)> const& work)
        : board_(static_cast<Board*>(::mmap(
            nullptr, sizeof(Board), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)))
    {
        REQUIRE(board_ != MAP_FAILED);
        std::vector<pid_t> children;
        for (int racer = 0; racer < racers; ++racer) {
            children.push_back(::fork());
            REQUIRE(children.back() >= 0);
            if (children.back() == 0) {
                run(racer, work);
                ::_exit(0);
            }
        }
        for (auto const child : children) {
            int status = -1;
            CHECK(::waitpid(child, &status, 0) == child);
            CHECK(status == 0);
        }
    }
    ~Race() { ::munmap(board_, sizeof(Board)); }
    Race(Race const&) = delete;
    Race& operator=(Race const&) = delete;

    int outcome(int round, int racer) const
    {
        return board_->outcomes[static_cast<std::size_t>(round)][static_cast<std::size_t>(racer)];
    }

    int count(int round, int outcome) const
    {
        auto const& all = board_->outcomes[static_cast<std::size_t>(round)];
        return static_cast<int>(std::count(all.begin(), all.end(), outcome));
    }

private:
    void run(int racer, std::function<int(int, int)> const& work)
    {
        for (int round = 0; round < rounds; ++round) {
            auto& arrived = board_->arrived[static_cast<std::size_t>(round)];
            ++arrived;
            while (arrived < racers)
                ::sched_yield();
            board_->outcomes[static_cast<std::size_t>(round)][static_cast<std::size_t>(racer)]
                = work(round, racer);
        }
    }

    Board* board_;
};

std::string nameOf(int round, int racer)
{
    return std::to_string(round) + "-" + std::to_string(racer) + ".jpg";
}

struct World {
    char const* name;
    std::vector<Fault> faults;
    bool copies = false;
};

std::vector<World> const& worlds()
{
    constexpr int always = Fault::always;
    Fault const otherDrive { "renameat2", EXDEV, 1, always, nullptr };
    Fault const noExclusive { "renameat2", EINVAL, 1, always, nullptr };
    Fault const noLinks { "linkat", EPERM, 1, always, nullptr };
    Fault const noNameless { "O_TMPFILE", EOPNOTSUPP, 1, always, nullptr };
    static std::vector<World> const all {
        { "rename", {} },
        { "links", { noExclusive } },
        { "claim", { noExclusive, noLinks } },
        { "other drive", { otherDrive } },
        { "copy", {}, true },
        { "copy under a hidden name", { noNameless }, true },
        { "copy under a hidden name, published by links", { noNameless, noExclusive }, true },
    };
    return all;
}

void raceForName(World const& world)
{
    TemporaryFolder const top(inMemory());
    auto const from = makeFolder(top.url().child("from"));
    auto const to = makeFolder(top.url().child("to"));
    PosixFileOperations files(top.url().child("Trash"));
    for (int round = 0; round < rounds; ++round)
        for (int racer = 0; racer < racers; ++racer)
            top.file("from/" + nameOf(round, racer), nameOf(round, racer));
    auto const target = [&](int round) { return to.child(std::to_string(round) + ".jpg"); };
    Race const race([&](int round, int racer) {
        SystemCallFaults const active(world.faults);
        auto const source = from.child(nameOf(round, racer));
        return static_cast<int>(world.copies ? files.copy(source, target(round), never)
                                             : files.move(source, target(round), never));
    });
    for (int round = 0; round < rounds; ++round) {
        CHECK(race.count(round, static_cast<int>(FileOutcome::done)) == 1);
        CHECK(race.count(round, static_cast<int>(FileOutcome::taken)) == racers - 1);
        for (int racer = 0; racer < racers; ++racer) {
            auto const name = nameOf(round, racer);
            bool const won = race.outcome(round, racer) == static_cast<int>(FileOutcome::done);
            if (won)
                CHECK(bytesOf(target(round)) == name);
            if (!won || world.copies)
                CHECK(bytesOf(from.child(name)) == name);
            else
                CHECK_FALSE(isTaken(from.child(name)));
        }
    }
    CHECK(namesIn(to).size() == rounds);
}

} // namespace

TEST_CASE("of six processes that want the same name for their photos exactly one gets it")
{
    for (auto const& world : worlds()) {
        CAPTURE(world.name);
        raceForName(world);
    }
}

TEST_CASE("six processes that trash photos of one name lose none and mix up none")
{
    TemporaryFolder const top(inMemory());
    auto const trash = top.url().child("Trash");
    PosixFileOperations files(trash);
    for (int racer = 0; racer < racers; ++racer)
        for (int round = 0; round < rounds; ++round) {
            makeFolder(top.url().child(nameOf(round, racer)));
            top.file(nameOf(round, racer) + "/a.jpg", nameOf(round, racer));
        }
    Race const race([&](int round, int racer) {
        auto const trashed = files.trash(top.url().child(nameOf(round, racer)).child("a.jpg"));
        return trashed && bytesOf(*trashed) == nameOf(round, racer) ? 1 : 0;
    });
    for (int round = 0; round < rounds; ++round)
        CHECK(race.count(round, 1) == racers);
    CHECK(namesIn(trash.child("files")).size() == racers * rounds);
    CHECK(namesIn(trash.child("info")).size() == racers * rounds);
    std::set<std::string> contents;
    for (auto const& name : namesIn(trash.child("files")))
        contents.insert(bytesOf(trash.child("files").child(name)));
    CHECK(contents.size() == racers * rounds);
}

TEST_CASE("a photo that six processes trash is trashed once")
{
    TemporaryFolder const top(inMemory());
    auto const trash = top.url().child("Trash");
    PosixFileOperations files(trash);
    for (int round = 0; round < rounds; ++round)
        top.file(nameOf(round, 0), "bytes");
    Race const race(
        [&](int round, int) { return files.trash(top.url().child(nameOf(round, 0))) ? 1 : 0; });
    for (int round = 0; round < rounds; ++round)
        CHECK(race.count(round, 1) == 1);
    CHECK(namesIn(trash.child("files")).size() == rounds);
    CHECK(namesIn(trash.child("info")).size() == rounds);
}
