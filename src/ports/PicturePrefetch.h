#pragma once
#include "base/FileUrl.h"
#include <vector>

namespace pixelhain {

/// Pictures that are about to be looked at, made ready in the background at the size of the screen.
/// Nothing is told back. Main thread only; never waits.
class PicturePrefetch {
public:
    virtual ~PicturePrefetch() = default;

    /// `shown` is what the viewer shows now; it comes before everything else, then the pictures of
    /// `next` in their order. What is ready is left alone. This replaces what was wanted before:
    /// what has not begun and is not named again is given up.
    virtual void prefetchDisplay(FileUrl const& shown, std::vector<FileUrl> const& next) = 0;
};

} // namespace pixelhain
