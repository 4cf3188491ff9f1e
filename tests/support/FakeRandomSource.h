#pragma once
#include "ports/RandomSource.h"
#include <random>

namespace pixelhain {

/// Chance that is the same in every run.
class FakeRandomSource final : public RandomSource {
public:
    std::uint64_t next() override { return engine_(); }

private:
    std::mt19937_64 engine_;
};

} // namespace pixelhain
