#pragma once
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <linux/filter.h>
#include <optional>
#include <span>
#include <vector>

namespace pixelhain {

/// Puts together the program that the kernel runs at every system call: each call leads to a block
/// of instructions, found by halving, so that the kernel can walk all calls quickly when it takes
/// the program over.
class FilterProgram {
public:
    using Block = std::vector<sock_filter>;

    /// `otherwise` is what happens to a call without a block. `machine` is the only architecture
    /// whose calls are looked at, `numbers` the end of its numbers; `foreign` meets all others.
    FilterProgram(
        std::uint32_t machine, std::uint32_t numbers, std::uint32_t foreign, Block otherwise);

    /// The block of each of these calls; a call may be given one only.
    void add(std::initializer_list<std::uint32_t> calls, Block const& block);

    /// The instructions; nothing if there are too many, or two blocks for one call.
    [[nodiscard]] std::optional<std::vector<sock_filter>> assemble() const;

    /// Leaves with `action` (SECCOMP_RET_…).
    [[nodiscard]] static Block leave(std::uint32_t action);
    /// `then` if the low half of the argument is one of `values`, else `otherwise`.
    [[nodiscard]] static Block ifOneOf(int argument, std::initializer_list<std::uint32_t> values,
        std::uint32_t then, std::uint32_t otherwise);
    /// `then` if, of the bits in `mask`, the low half of the argument has exactly `bits`.
    [[nodiscard]] static Block ifBits(int argument, std::uint32_t mask, std::uint32_t bits,
        std::uint32_t then, std::uint32_t otherwise);
    /// `then` if the argument is 0, all 64 bits of it, and the low half of `zero` too.
    [[nodiscard]] static Block ifZero(
        int argument, int lowOnly, std::uint32_t then, std::uint32_t otherwise);

private:
    struct Case {
        std::uint32_t call = 0; ///< the first of the calls up to the next case
        Block block;
    };

    [[nodiscard]] std::optional<std::vector<Case>> casesInOrder() const;

    std::uint32_t machine_;
    std::uint32_t numbers_;
    std::uint32_t foreign_;
    Block otherwise_;
    std::vector<Case> cases_;
};

} // namespace pixelhain
