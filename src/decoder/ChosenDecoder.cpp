#include "decoder/ChosenDecoder.h"
#include "decoder/DecoderProgram.h"
#include "decoder/PooledDecoder.h"
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace pixelhain {

namespace {

void complain(std::string const& reason)
{
    std::fprintf(stderr, "pixelhain: pictures cannot be decoded: %s\n", reason.c_str());
}

void warn(std::string const& missing)
{
    std::fprintf(
        stderr, "pixelhain: this kernel does not lock decoders up with: %s\n", missing.c_str());
}

bool isWishedInProcess()
{
    auto const* const wish = std::getenv("PIXELHAIN_DECODER");
    return wish != nullptr && std::string_view(wish) == "inprocess";
}

} // namespace

std::unique_ptr<ImageDecoder> chosenDecoder(DecoderChoice const& choice)
{
    if (isWishedInProcess()) {
        if (choice.inProcess)
            return choice.inProcess();
        std::fputs("pixelhain: this program decodes in processes of their own only\n", stderr);
    }
    WorkerPool::Options options;
    options.program = decoderProgram();
    options.width = choice.width;
    options.niceness = choice.niceness;
    options.complain = complain;
    options.warn = [hear = choice.warn](std::string const& missing) {
        warn(missing);
        if (hear)
            hear(missing);
    };
    auto decoder = std::make_unique<PooledDecoder>(std::move(options));
    decoder->prepare(choice.first);
    return decoder;
}

} // namespace pixelhain
