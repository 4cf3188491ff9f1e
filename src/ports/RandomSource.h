#pragma once
#include <cstdint>

namespace pixelhain {

/// Chance.
class RandomSource {
public:
    virtual ~RandomSource() = default;

    /// 64 bits that nobody can foresee.
    [[nodiscard]] virtual std::uint64_t next() = 0;
};

} // namespace pixelhain
