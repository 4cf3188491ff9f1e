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
    /// Hears once what the kernel lacks to lock the processes up; any thread.
    std::function<void(std::string const& missing)> warn {};
};

/// A decoder in processes of its own; with PIXELHAIN_DECODER=inprocess in the environment, for
/// debugging and for benches only, one on the threads that ask. Says on stderr, once, if the
/// processes cannot be started, or what the kernel lacks to lock them up.
[[nodiscard]] std::unique_ptr<ImageDecoder> chosenDecoder(DecoderChoice const& choice);

} // namespace pixelhain
