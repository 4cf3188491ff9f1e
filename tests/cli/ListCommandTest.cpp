#include "cli/CommandLine.h"
#include "support/OtherUser.h"
#include "support/Places.h"
#include "support/TemporaryFolder.h"
#include <doctest/doctest.h>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <spawn.h>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

using namespace pixelhain;

namespace {

struct Run {
    ExitCode code {};
    std::string out;
    std::string err;
};

std::string contentOf(FileUrl const& file)
{
    std::ifstream in(file.cString(), std::ios::binary);
    return { std::istreambuf_iterator<char>(in), {} };
}

// Runs the command line with its output in files; `out` may name another place for it.
Run run(std::vector<std::string_view> const& words, char const* outPlace = nullptr)
{
    TemporaryFolder const folder;
    auto const outFile = folder.file("out");
    auto const errFile = folder.file("err");
    int const outTo = ::open(outPlace ? outPlace : outFile.cString(), O_WRONLY | O_CLOEXEC);
    int const errTo = ::open(errFile.cString(), O_WRONLY | O_CLOEXEC);
    Run result;
    {
        Output out(outTo);
        Output err(errTo);
        result.code = runCommandLine(words, { out, err, folder.url().parent().path().data() });
    }
    ::close(outTo);
    ::close(errTo);
    result.out = contentOf(outFile);
    result.err = contentOf(errFile);
    return result;
}

struct Photos {
    TemporaryFolder folder;
    std::string top { folder.url().path() };

    Photos()
    {
        folder.file("IMG_10.jpg", "1");
        folder.file("img_2.jpg", "333");
        folder.file("b\xFF.PNG", "22");
        folder.file("notes.txt");
        std::filesystem::create_directory(folder.url().child("sub").cString());
        folder.file("sub/c.jpg", "4444");
    }
    std::string lines(std::vector<std::string> const& names, char end = '\n') const
    {
        std::string text;
        for (auto const& name : names)
            text += top + "/" + name + end;
        return text;
    }
};

} // namespace

TEST_CASE("list prints paths in the gallery's order, as raw bytes")
{
    Photos const photos;
    auto const result = run({ "list", photos.top });
    CHECK(result.code == ExitCode::success);
    CHECK(result.out == photos.lines({ "b\xFF.PNG", "img_2.jpg", "IMG_10.jpg" }));
    CHECK(result.err.empty());
}

TEST_CASE("list sorts, turns round, filters and goes into subfolders as its options say")
{
    Photos const photos;
    CHECK(run({ "list", "--sort", "size", photos.top }).out
        == photos.lines({ "IMG_10.jpg", "b\xFF.PNG", "img_2.jpg" }));
    CHECK(run({ "list", photos.top, "--sort=size", "--descending" }).out
        == photos.lines({ "img_2.jpg", "b\xFF.PNG", "IMG_10.jpg" }));
    CHECK(run({ "list", "--filter", " IMG ", photos.top }).out
        == photos.lines({ "img_2.jpg", "IMG_10.jpg" }));
    CHECK(run({ "list", "--recursive", photos.top }).out
        == photos.lines({ "b\xFF.PNG", "sub/c.jpg", "img_2.jpg", "IMG_10.jpg" }));
}

TEST_CASE("list ends paths with NUL bytes on request")
{
    Photos const photos;
    CHECK(run({ "list", "-0", "--filter", "img", photos.top }).out
        == photos.lines({ "img_2.jpg", "IMG_10.jpg" }, '\0'));
}

TEST_CASE("folders inside each other give each photo once")
{
    Photos const photos;
    auto const sub = photos.top + "/sub";
    auto const result = run({ "list", "--recursive", "--filter", "c.jpg", photos.top, sub });
    CHECK(result.out == photos.lines({ "sub/c.jpg" }));
}

TEST_CASE("a relative folder begins at the working folder")
{
    Photos const photos;
    auto const relative = "./" + std::string(photos.folder.url().name()) + "/sub/../sub/";
    CHECK(run({ "list", relative }).out == photos.lines({ "sub/c.jpg" }));
}

TEST_CASE("a folder that is missing is named and the others are still listed")
{
    Photos const photos;
    auto const file = photos.top + "/notes.txt";
    auto const result = run({ "list", "/no/such/folder", photos.top + "/sub", file });
    CHECK(result.code == ExitCode::failure);
    CHECK(result.out == photos.lines({ "sub/c.jpg" }));
    CHECK(result.err.find("/no/such/folder: ") != std::string::npos);
    CHECK(result.err.find(file + ": ") != std::string::npos);
}

TEST_CASE("a folder that may not be read is named, also as a subfolder")
{
    Photos const photos;
    auto const sub = photos.top + "/sub";
    ::chmod(photos.top.c_str(), 0755);
    ::chmod(sub.c_str(), 0000);
    // Opened before the rights go, as the shell does.
    TemporaryFolder const folder;
    auto const errFile = folder.file("err");
    int const nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    int const errTo = ::open(errFile.cString(), O_WRONLY | O_CLOEXEC);
    for (std::vector<std::string_view> const& words : std::vector<std::vector<std::string_view>> {
             { "list", sub }, { "list", "--recursive", photos.top } }) {
        REQUIRE(::ftruncate(errTo, 0) == 0);
        REQUIRE(::lseek(errTo, 0, SEEK_SET) == 0);
        auto code = ExitCode::success;
        withoutRights([&] {
            Output out(nowhere);
            Output err(errTo);
            code = runCommandLine(words, { out, err, "/" });
        });
        CHECK(code == ExitCode::failure);
        CHECK(contentOf(errFile).find(sub + ": ") != std::string::npos);
    }
    ::close(nowhere);
    ::close(errTo);
    ::chmod(sub.c_str(), 0700);
}

TEST_CASE("an empty folder is no failure")
{
    TemporaryFolder const folder;
    auto const result = run({ "list", folder.url().path() });
    CHECK(result.code == ExitCode::success);
    CHECK(result.out.empty());
}

TEST_CASE("wrong usage says so, prints nothing else and exits 2")
{
    for (std::vector<std::string_view> const& words : std::vector<std::vector<std::string_view>> {
             {}, { "list" }, { "list", "--sort" }, { "list", "--sort", "colour", "/" },
             { "list", "--colour", "/" }, { "paint" }, { "--recursive" } }) {
        auto const result = run(words);
        CHECK(result.code == ExitCode::usage);
        CHECK(result.out.empty());
        CHECK(result.err.find("Usage: ") != std::string::npos);
    }
}

TEST_CASE("help is printed on request and is no failure")
{
    CHECK(run({ "--help" }).out.find("list") != std::string::npos);
    auto const result = run({ "list", "--help" });
    CHECK(result.code == ExitCode::success);
    CHECK(result.out.find("--descending") != std::string::npos);
    CHECK(run({ "list", "--", "--help" }).code == ExitCode::failure);
}

TEST_CASE("output that cannot be written is a failure")
{
    Photos const photos;
    auto const result = run({ "list", photos.top }, "/dev/full");
    CHECK(result.code == ExitCode::failure);
    CHECK(result.err.find("standard output: ") != std::string::npos);
}

TEST_CASE("a reader that goes away makes the program fail, not die of a signal")
{
    Photos const photos;
    int ends[2];
    REQUIRE(::pipe2(ends, O_CLOEXEC) == 0);
    ::close(ends[0]);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    std::string program = buildFolder() + "/pixelhain-cli";
    std::string command = "list";
    std::string folder = photos.top;
    char* const words[] = { program.data(), command.data(), folder.data(), nullptr };
    pid_t child = 0;
    REQUIRE(::posix_spawn(&child, program.c_str(), &actions, nullptr, words, environ) == 0);
    posix_spawn_file_actions_destroy(&actions);
    ::close(ends[1]);
    int status = 0;
    REQUIRE(::waitpid(child, &status, 0) == child);
    REQUIRE(WIFEXITED(status));
    CHECK(WEXITSTATUS(status) == 1);
}
