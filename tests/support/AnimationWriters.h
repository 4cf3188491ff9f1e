#pragma once
#include "support/ImageWriters.h"

namespace pixelhain {

/// Writers of animations whose frames have places, delays and ways to come and go of their own.

struct ApngFrame {
    RgbaPixels pixels;
    int x = 0;
    int y = 0;
    int delay = 1; ///< of `parts` in a second
    int parts = 10;
    int disposal = 0; ///< as the file has it: 0 keep, 1 clear, 2 restore
    int blend = 0; ///< 0 replace, 1 over
    int pieces = 1; ///< chunks that the pixels are spread over
};
struct ApngOptions {
    unsigned plays = 0;
    RgbaPixels still; ///< a default image that is no frame; empty: the first frame is it
    PngOptions png {}; ///< how all pictures are written
    unsigned firstNumber = 0; ///< of the sequence
    int skippedAt = -1; ///< a frame in front of which a number is left out
    int frames = -1; ///< how many the file says it has; -1: the truth
};
FileBytes writeApng(
    PixelSize canvas, std::vector<ApngFrame> const& frames, ApngOptions const& options = {});

struct WebpFrame {
    RgbaPixels pixels;
    int x = 0; ///< even
    int y = 0;
    int delay = 100; ///< milliseconds
    bool isCleared = false; ///< before the next one
    bool isBlended = true;
};
struct WebpAnimationOptions {
    int plays = 0;
    bool isLossless = true;
    FileBytes profile;
};
FileBytes writeWebpAnimation(PixelSize canvas, std::vector<WebpFrame> const& frames,
    WebpAnimationOptions const& options = {});

} // namespace pixelhain
