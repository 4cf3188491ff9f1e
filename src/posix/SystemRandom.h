#pragma once
#include "ports/RandomSource.h"
#include <array>
#include <cstddef>

namespace pixelhain {

/// The kernel's random numbers, fetched a few at a time. For one thread.
class SystemRandom final : public RandomSource {
public:
    [[nodiscard]] std::uint64_t next() override;

private:
    void refill();

    // A request of up to 256 bytes is never answered in part.
    std::array<std::uint64_t, 32> fetched_ {};
    std::size_t used_ = fetched_.size();
};

} // namespace pixelhain
