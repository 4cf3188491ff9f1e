#include "codecs/ImageCodecs.h"
#include "decoder/WorkerMain.h"
#include <unistd.h>

int main(int count, char** words)
{
    auto const arguments = std::span<char* const>(words, static_cast<std::size_t>(count));
    // Nothing is left to be tidied up: the memory goes with the process.
    ::_exit(pixelhain::runWorker(arguments, pixelhain::openImage));
}
