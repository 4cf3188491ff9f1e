#pragma once
#include "base/Bitmap.h"

namespace pixelhain {

/// A picture as a codec made it, with what the decode rules must know about where it came from.
struct DecodedImage {
    Bitmap bitmap;
    /// The file's pixels are indices into a colour table.
    bool isIndexed = false;
    /// The file's colours have a known meaning (a profile, or the format's own default).
    bool hasColorSpace = true;
    /// The codec left rows or columns out while decoding (a DCT scale, a coarser scan).
    bool wasReduced = false;
};

} // namespace pixelhain
