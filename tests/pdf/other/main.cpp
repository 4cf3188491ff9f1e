#include <cstdlib>

// The module of another version, and one from before it was told which it is. What it would make
// need not have the shape that the program expects: nobody may call it.
extern "C" {

[[gnu::visibility("default")]] void* pixelhainNewPdfWriter_0_0_0(void*)
{
    std::abort();
}

[[gnu::visibility("default")]] void* pixelhainNewPdfWriter(void*)
{
    std::abort();
}
}
