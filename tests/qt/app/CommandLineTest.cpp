#include "qt/app/CommandLine.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

CommandLine parsed(std::vector<char const*> const& arguments)
{
    return CommandLine::parse(arguments, FileUrl("/home/me"));
}

} // namespace

TEST_CASE("files of the command line are opened from the current folder on")
{
    auto const line = parsed({ "Fotos", "/b.jpg", "file:///c" });
    CHECK(
        line.files == std::vector { FileUrl("/home/me/Fotos"), FileUrl("/b.jpg"), FileUrl("/c") });
    CHECK_FALSE(line.error);
}

TEST_CASE("the screenshot option takes a file in either form")
{
    CHECK(parsed({ "--screenshot", "a.png", "x" }).screenshot == "a.png");
    CHECK(parsed({ "--screenshot=a.png" }).screenshot == "a.png");
    CHECK(parsed({ "--screenshot" }).error);
}

TEST_CASE("a start of its own hands nothing over")
{
    CHECK(parsed({ "--new-instance", "a" }).startsApart);
    CHECK_FALSE(parsed({ "a" }).startsApart);
    CHECK_FALSE(parsed({ "--", "--new-instance" }).startsApart);
}

TEST_CASE("what the desktop offers is there in the command line, and files count more")
{
    CHECK(parsed({ "--choose-folder" }).action == ServiceAction::chooseFolder);
    CHECK(parsed({ "--show-help" }).action == ServiceAction::showHelp);
    CHECK_FALSE(parsed({ "--show-help", "a" }).action);
    CHECK_FALSE(parsed({ "a", "--show-help" }).action);
    CHECK_FALSE(parsed({}).action);
    CHECK_FALSE(parsed({ "--show-help" }).error);
    CHECK(parsed({ "--quit" }).error);
    for (auto const& [action, name] : serviceActions)
        CHECK(CommandLine::helpText().find("  --" + std::string(name) + "  ") != std::string::npos);
}

TEST_CASE("after two hyphens everything is a file")
{
    CHECK(parsed({ "--", "--help" }).files == std::vector { FileUrl("/home/me/--help") });
    CHECK_FALSE(parsed({ "--", "--help" }).wantsHelp);
}

TEST_CASE("an unknown option is an error")
{
    CHECK(parsed({ "--foo" }).error == "Unbekannte Option: --foo");
    CHECK(parsed({ "--help" }).wantsHelp);
    CHECK(parsed({ "--version" }).wantsVersion);
}

TEST_CASE("what follows an unknown option is perhaps its value and no file")
{
    CHECK(parsed({ "a" }).hasSureFile);
    CHECK_FALSE(parsed({}).hasSureFile);
    CHECK_FALSE(parsed({ "-qwindowgeometry", "800x600" }).hasSureFile);
    CHECK(parsed({ "-qwindowgeometry", "800x600", "a" }).hasSureFile);
    CHECK(parsed({ "-reverse", "--", "a" }).hasSureFile);
}
