#include "qt/app/Trace.h"
#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>

namespace pixelhain {

namespace {

// Ticks after boot at which this process started: field 22 of its stat line, counted from after
// the name, which may itself hold blanks and brackets.
double startTicks()
{
    std::ifstream file("/proc/self/stat");
    std::string line;
    std::getline(file, line);
    auto const nameEnd = line.rfind(')');
    if (nameEnd == std::string::npos)
        return 0;
    std::istringstream fields(line.substr(nameEnd + 1));
    constexpr int fieldsBefore = 19;
    std::string skipped;
    for (int field = 0; field < fieldsBefore; ++field)
        fields >> skipped;
    double ticks = 0;
    fields >> ticks;
    return ticks;
}

} // namespace

double millisecondsSinceProcessStart()
{
    static double const start = startTicks() * 1000 / static_cast<double>(sysconf(_SC_CLK_TCK));
    timespec now {};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6 - start;
}

// The decimal point stays a point in every language: programs read these lines.
std::string milestoneLine(
    double milliseconds, std::string_view name, std::optional<std::size_t> count)
{
    constexpr std::size_t width = 8;
    std::array<char, 32> digits {};
    auto const end = std::to_chars(
        digits.data(), digits.data() + digits.size(), milliseconds, std::chars_format::fixed, 1)
                         .ptr;
    std::string line(digits.data(), end);
    line.insert(0, width - std::min(width, line.size()), ' ');
    line.append(" ms  ").append(name);
    return count ? line + ' ' + std::to_string(*count) : line;
}

Trace::Trace()
{
    auto const* const value = std::getenv("PIXELHAIN_TRACE");
    isOn_ = value && std::string_view(value) == "1";
}

void Trace::milestone(std::string_view name, std::optional<std::size_t> count) const
{
    if (!isOn_)
        return;
    auto const line = milestoneLine(millisecondsSinceProcessStart(), name, count);
    std::fprintf(stderr, "%s\n", line.c_str());
}

} // namespace pixelhain
