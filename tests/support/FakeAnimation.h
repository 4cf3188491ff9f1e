#pragma once
#include "ports/AnimationSource.h"
#include "support/FakeImageDecoder.h"
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace pixelhain {

/// What a test knows of the animations that were opened.
struct AnimationRecord {
    int alive = 0;
    int stops = 0;
    int decoded = 0;
    int restarts = 0;
};

struct Film {
    std::vector<std::chrono::microseconds> delays;
    int loops = 0;
    std::size_t brokenAt = SIZE_MAX; ///< the decoder goes there
    PixelSize size { 4, 4 };
    int waits = 0; ///< questions that are answered with "not yet"
};

/// Frames whose every byte is their number.
class FakeAnimation final : public AnimationSource {
public:
    FakeAnimation(Film film, AnimationRecord& record)
        : film_(std::move(film))
        , record_(record)
    {
        ++record_.alive;
    }
    ~FakeAnimation() override { --record_.alive; }
    PixelSize frameSize() const override { return film_.size; }
    int loopCount() const override { return film_.loops; }
    AnimationStep nextFrame() override
    {
        if (film_.waits-- > 0)
            return AnimationEnd::notYet;
        if (next_ == film_.brokenAt)
            return AnimationEnd::ofPlay;
        if (next_ == film_.delays.size())
            return AnimationEnd::ofLoop;
        ++record_.decoded;
        auto const number = next_++;
        return AnimationFrame { grayBitmap(film_.size, int(number)), film_.delays[number] };
    }
    void restart() override
    {
        ++record_.restarts;
        next_ = 0;
    }
    void stop() override { ++record_.stops; }

private:
    Film film_;
    AnimationRecord& record_;
    std::size_t next_ = 0;
};

} // namespace pixelhain
