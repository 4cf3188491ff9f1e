#include "qt/app/Trace.h"
#include <clocale>
#include <doctest/doctest.h>

using namespace pixelhain;

TEST_CASE("a milestone's line tells time, name and count")
{
    CHECK(milestoneLine(412.46, "visible-complete", 66) == "   412.5 ms  visible-complete 66");
    CHECK(milestoneLine(7, "idle", std::nullopt) == "     7.0 ms  idle");
    CHECK(milestoneLine(123456789.25, "idle", 0) == "123456789.2 ms  idle 0");
}

TEST_CASE("a milestone's line has a decimal point where the language has a comma")
{
    std::string const before = std::setlocale(LC_NUMERIC, nullptr);
    auto const* german = std::setlocale(LC_NUMERIC, "de_DE.UTF-8");
    auto const line = milestoneLine(0.5, "window-shown", std::nullopt);
    std::setlocale(LC_NUMERIC, before.c_str());
    if (german == nullptr)
        MESSAGE("skipped: this system knows no German numbers");
    CHECK(line == "     0.5 ms  window-shown");
}

TEST_CASE("time since the start goes on")
{
    auto const first = millisecondsSinceProcessStart();
    CHECK(first >= 0);
    CHECK(millisecondsSinceProcessStart() >= first);
}
