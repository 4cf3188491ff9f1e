#pragma once
#include "base/Bitmap.h"
#include "decoder/SharedSpace.h"

namespace pixelhain {

/// Puts the pixels of the picture that is asked for where the program will read them, so that they
/// need not be copied. Which bitmap will be the answer is not known when it is allocated: the first
/// that could be gets the place, and another once it is gone.
class SpaceMemory final : public PixelMemory {
public:
    /// Bitmaps with sides of at most `longestSide` may lie in `space`, which outlives them.
    SpaceMemory(WritableSpace const& space, int longestSide);

    [[nodiscard]] std::shared_ptr<std::byte> take(PixelSize size, std::size_t bytes) override;

private:
    WritableSpace const& space_;
    int longestSide_;
    std::weak_ptr<std::byte> lent_;
};

} // namespace pixelhain
