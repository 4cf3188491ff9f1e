#pragma once
#include "cli/ConsoleLoop.h"
#include "decoder/ChosenDecoder.h"
#include "images/ImageLoader.h"
#include "posix/ThreadPool.h"
#include "posix/ThreadQueue.h"
#include <cstddef>
#include <memory>

namespace pixelhain {

/// The image loader of one run of a command, with the queues and threads it works on. Its caches
/// are small: a command asks for each picture once.
struct CommandLoader {
    /// `jobs` pictures are decoded side by side; display images to `displayPixelSize`.
    CommandLoader(std::size_t jobs, int displayPixelSize);

    ConsoleLoop loop;
    std::unique_ptr<ImageDecoder> decoder;
    ThreadPool background;
    ThreadQueue thumbQueue;
    ThreadQueue displayQueue;
    ImageLoader loader;
};

/// As many jobs as the window program runs for its thumbnails.
[[nodiscard]] std::size_t usualJobs();

} // namespace pixelhain
