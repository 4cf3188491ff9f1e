// Trashes the files it is given, as the window does, one after the other.
//
// pixelhain-bench-files FILE…
#include "posix/PosixFileOperations.h"
#include <cstdio>
#include <span>

using namespace pixelhain;

int main(int count, char** words)
{
    PosixFileOperations files;
    int failures = 0;
    for (char const* const word : std::span(words, static_cast<std::size_t>(count)).subspan(1))
        failures += files.trash(FileUrl(word)) ? 0 : 1;
    if (failures > 0)
        std::fprintf(stderr, "%d of %d files stayed\n", failures, count - 1);
    return failures > 0 ? 1 : 0;
}
