#include "FileScene.h"
#include "support/Sanitizers.h"
#include <cerrno>
#include <csignal>
#include <cstring>
#include <doctest/doctest.h>
#include <sys/wait.h>

using namespace pixelhain;

namespace {

constexpr int errors[] = { EIO, ENOSPC, EDQUOT, EPERM, EACCES, EROFS, EINVAL, ENOSYS, EOPNOTSUPP,
    EXDEV, EINTR, ENOENT, EEXIST, EMFILE, ENOMEM, ESTALE, EBUSY };

// Without them nobody can tell whether a file may go.
bool isForCleaning(std::string_view call)
{
    return call == "unlinkat" || call == "fstatat" || call == "fstat";
}

struct Trial {
    FileScenario const& scenario;
    Fault fault;
};

std::string describe(Trial const& trial)
{
    return std::string(trial.scenario.name) + ": " + std::string(trial.fault.call) + " call "
        + std::to_string(trial.fault.from)
        + (trial.fault.count == Fault::always ? " and all after it" : "") + " fails with "
        + ::strerrorname_np(trial.fault.error);
}

std::string attempt(FileScene& scene, Trial const& trial, std::string_view bytes)
{
    scene.reset(bytes);
    FileScene::Result result;
    {
        auto faults = trial.scenario.world;
        faults.insert(faults.begin(), trial.fault);
        SystemCallFaults const active(faults);
        result = trial.scenario.run(scene);
    }
    if (trial.fault.error == EINTR && trial.fault.count == 1 && !result.done)
        return "an interrupted call was not made again";
    scene.expect(trial.fault.call != "futimens", isForCleaning(trial.fault.call));
    return scene.problem(result, trial.scenario.copies);
}

int callsWithoutFault(
    FileScene& scene, FileScenario const& scenario, std::string_view call, std::string_view bytes)
{
    scene.reset(bytes);
    SystemCallFaults const active(scenario.world);
    auto const result = scenario.run(scene);
    CHECK(result.done);
    return active.calls(call);
}

} // namespace

TEST_CASE("whatever call fails however, no photo is lost, halved or replaced")
{
    FileScene scene;
    std::string const bytes(3000, 'p');
    int trials = 0;
    for (auto const& scenario : fileScenarios())
        for (auto const call : SystemCallFaults::names()) {
            int const made = std::min(4, callsWithoutFault(scene, scenario, call, bytes));
            for (int from = 1; from <= made; ++from)
                for (int const error : errors)
                    for (int const count : { 1, Fault::always }) {
                        // Calls are made again until they are not interrupted, and what fcntl is
                        // asked for here no signal interrupts.
                        if (error == EINTR && (count != 1 || call == "fcntl"))
                            continue;
                        Trial const trial { scenario, { call, error, from, count, nullptr } };
                        auto const problem = attempt(scene, trial, bytes);
                        ++trials;
                        if (!problem.empty())
                            FAIL_CHECK(describe(trial), ": ", problem);
                    }
        }
    CHECK(trials > 1000);
}

TEST_CASE("killed before any call, an operation leaves the photo whole and no half one"
    * doctest::skip(isSanitized))
{
    FileScene scene;
    // Several times what is read at once, so that some of the calls are in the midst of a copy.
    std::string const many(1'200'000, 'p');
    for (auto const& scenario : fileScenarios()) {
        bool const isWritten = scenario.copies || scenario.otherDrive;
        auto const bytes = std::string_view(many).substr(0, isWritten ? many.size() : 10);
        int const calls = callsWithoutFault(scene, scenario, "", bytes);
        for (int call = 1; call <= calls; ++call) {
            scene.reset(bytes);
            auto const child = ::fork();
            REQUIRE(child >= 0);
            if (child == 0) {
                auto faults = scenario.world;
                faults.insert(faults.begin(), { "", Fault::kill, call, 1, nullptr });
                SystemCallFaults const active(faults);
                static_cast<void>(scenario.run(scene));
                ::_exit(0);
            }
            int status = 0;
            REQUIRE(::waitpid(child, &status, 0) == child);
            CHECK(WIFSIGNALED(status));
            CAPTURE(scenario.name);
            CAPTURE(call);
            CHECK(scene.problemAfterKill(scenario.claims, scenario.hides) == "");
        }
    }
}
