#pragma once
#include "decoder/Protocol.h"
#include "ports/AnimationSource.h"
#include "ports/ByteSource.h"
#include "ports/ImageSource.h"
#include <memory>
#include <string>
#include <string_view>

namespace pixelhain {

/// A codec whose files say what is to go wrong while they are opened. Decoder processes of tests
/// have it, the program's never.
///
/// Ends of the process: "segv", "abort", "exit", "kill".
/// No end: "silent" (asleep), "spin" (busy), "stop" (as by SIGSTOP), "leave" (asleep, with the
/// connection closed), "alloc" (8 GB of memory, filled, if there is that much).
/// Others: "throw" (what is no std::exception).
/// Lies, told before "no picture" is: "garbage" (of an answer's size), "long", "short", "flood"
/// (for as long as they are taken), "descriptors" (64 of them beside an answer), "twice" (a good
/// answer, one too many), "huge" (a picture beyond its space), and answers that are wrong in one
/// thing: "lie:id", "lie:status", "lie:size", "lie:side", "lie:stride", "lie:bytes", "lie:flags",
/// "lie:space", "lie:memory", "lie:coded". "attack:NAME" tries that attack; a picture of one pixel,
/// whose red is the error that it met, says how it went.
[[nodiscard]] std::unique_ptr<ImageSource> openWithFaults(std::unique_ptr<ByteSource> bytes);

/// The same for animations: "play:N:COMMAND" is one without end, 16 × 12 pixels, a frame for each
/// 40 ms, whose every byte is the frame's number; before frame N, counted over all loops, comes the
/// command. Besides those above there are "size" (a frame of another), "delay" (a negative one),
/// "side" (all frames have sides of nothing) and "large" (of more than is asked for).
[[nodiscard]] std::unique_ptr<AnimationSource> openAnimationWithFaults(
    std::unique_ptr<ByteSource> bytes, int maxPixel);

/// The bytes of a file with this command.
[[nodiscard]] inline std::string faultFile(std::string_view command)
{
    return std::string("X-TEST ").append(command);
}

/// What a lie needs to know: where answers go, and what was asked last.
struct FaultChannel {
    int socket = -1;
    DecoderRequest asked;
};

[[nodiscard]] FaultChannel& faultChannel();

} // namespace pixelhain
