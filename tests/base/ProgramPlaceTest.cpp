#include "base/ProgramPlace.h"
#include <doctest/doctest.h>
#include <filesystem>

using namespace pixelhain;

TEST_CASE("what lies beside the program is taken from there")
{
    auto const program = std::filesystem::read_symlink("/proc/self/exe");
    CHECK(programPlace(program.filename().native(), "../elsewhere") == program.native());
}

TEST_CASE("what does not lie beside the program is where it is installed")
{
    auto const folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    auto const installed = folder.parent_path() / "lib/pixelhain/none.so";
    CHECK(programPlace("none.so", "../lib/pixelhain/none.so") == installed.native());
}
