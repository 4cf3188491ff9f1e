#pragma once
#include "ports/ImageDecoder.h"
#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace pixelhain {

/// How a program decodes.
struct DecoderChoice {
    std::size_t width = 2; ///< threads that will ask at the same time, at most
    std::size_t first = 0; ///< workers that are started at once, beside whatever comes next
    int niceness = 0; ///< the least that any of the threads has
    /// Makes the decoder for PIXELHAIN_DECODER=inprocess. Without it that wish is not granted: who
    /// cannot decode need not load the codecs' libraries, which takes longer than a window.
    std::unique_ptr<ImageDecoder> (*inProcess)() = nullptr;
    /// Hears once what the kernel lacks to lock the processes up; any thread.
    std::function<void(std::string const& missing)> warn {};
};

/// A decoder in processes of its own; with PIXELHAIN_DECODER=inprocess in the environment, for
/// debugging and for benches only, one on the threads that ask, where the program has it. Says on
/// stderr, once, if it has not, if the processes cannot be started, or what the kernel lacks to
/// lock them up.
[[nodiscard]] std::unique_ptr<ImageDecoder> chosenDecoder(DecoderChoice const& choice);

} // namespace pixelhain
