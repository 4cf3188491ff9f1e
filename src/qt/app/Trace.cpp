#include "qt/app/Trace.h"
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

Trace::Trace()
{
    auto const* const value = std::getenv("PIXELHAIN_TRACE");
    isOn_ = value && std::string_view(value) == "1";
}

void Trace::milestone(std::string_view name, std::optional<std::size_t> count) const
{
    if (!isOn_)
        return;
    auto const line = std::string(name) + (count ? ' ' + std::to_string(*count) : std::string());
    std::fprintf(stderr, "%8.1f ms  %s\n", millisecondsSinceProcessStart(), line.c_str());
}

} // namespace pixelhain
