#pragma once
#include "codecs/Animation.h"
#include "decoder/Worker.h"

namespace pixelhain {

/// Where a worker finds what the program gave it.
namespace WorkerDescriptors {
inline constexpr int socket = 3;
inline constexpr int space = 4;
} // namespace WorkerDescriptors

/// Bytes of the space that every worker is started with: a picture of 1024 × 1024 pixels.
inline constexpr std::size_t ownSpaceBytes = std::size_t { 4 } << 20U;

/// The whole life of a decoder process: `arguments` as in main, "--memory N --parent P" with the
/// bytes of address space and the process that it works for. Returns the process's exit code.
[[nodiscard]] int runWorker(std::span<char* const> arguments, Worker::Opener const& opener,
    AnimationServer::Opener const& animations = openAnimation);

} // namespace pixelhain
