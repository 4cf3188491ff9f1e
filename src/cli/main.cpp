#include "cli/CommandLine.h"
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <malloc.h>
#include <system_error>
#include <unistd.h>
#include <vector>

int main(int count, char** words)
{
    // A reader that goes away is an error of the write, not the end of the process.
    std::signal(SIGPIPE, SIG_IGN);
    // Large lists go back to the system when they have been used. glibc would keep the pieces from
    // the first one on, 15 bytes for each of 100,000 photos.
    ::mallopt(M_MMAP_THRESHOLD, 1024 * 1024);
    pixelhain::Output out(STDOUT_FILENO);
    pixelhain::Output err(STDERR_FILENO);
    std::error_code ignored;
    pixelhain::CommandContext const context { out, err,
        std::filesystem::current_path(ignored).string() };
    std::vector<std::string_view> const arguments(words + (count > 0 ? 1 : 0), words + count);
    auto const code = pixelhain::runCommandLine(arguments, context);
    // Nothing is left to be done; a large list is not taken apart piece by piece.
    std::_Exit(static_cast<int>(code));
}
