#include "SampleFolder.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

constexpr auto usage = "usage: pixelhain-samples [--percent N] FOLDER\n"
                       "Draws sample pictures into FOLDER; N percent of their usual size.\n";

} // namespace

int main(int count, char** arguments)
{
    auto percent = 100;
    auto folder = count == 2 ? std::string_view(arguments[1]) : std::string_view();
    if (count == 4 && std::string_view(arguments[1]) == "--percent") {
        percent = std::atoi(arguments[2]);
        folder = arguments[3];
    }
    if (folder.empty() || folder.front() == '-' || percent < 1 || percent > 400) {
        std::fputs(usage, stderr);
        return 2;
    }
    if (auto const problem = pixelhain::writeSamples(folder, percent / 100.0)) {
        std::fprintf(stderr, "pixelhain-samples: %s\n", problem->c_str());
        return 1;
    }
    return 0;
}
