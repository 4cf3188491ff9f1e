#include "decoder/FilterProgram.h"
#include <algorithm>
#include <bit>
#include <linux/seccomp.h>
#include <utility>

namespace pixelhain {

namespace {

constexpr std::size_t mostInstructions = 4096; // the kernel's limit
constexpr std::size_t longestJump = 255;

sock_filter instruction(
    int code, std::uint32_t value, std::size_t ifTrue = 0, std::size_t ifNot = 0)
{
    return { static_cast<std::uint16_t>(code), static_cast<std::uint8_t>(ifTrue),
        static_cast<std::uint8_t>(ifNot), value };
}

sock_filter load(std::size_t offset)
{
    return instruction(BPF_LD | BPF_W | BPF_ABS, static_cast<std::uint32_t>(offset));
}

std::size_t offsetOf(int argument)
{
    return offsetof(seccomp_data, args)
        + sizeof(std::uint64_t) * static_cast<std::size_t>(argument);
}

sock_filter loadLow(int argument)
{
    return load(offsetOf(argument) + (std::endian::native == std::endian::little ? 0 : 4));
}

sock_filter loadHigh(int argument)
{
    return load(offsetOf(argument) + (std::endian::native == std::endian::little ? 4 : 0));
}

sock_filter skipUnless(std::uint32_t value, std::size_t count)
{
    return instruction(BPF_JMP | BPF_JEQ | BPF_K, value, 0, count);
}

sock_filter leaveWith(std::uint32_t action)
{
    return instruction(BPF_RET | BPF_K, action);
}

bool isSame(FilterProgram::Block const& a, FilterProgram::Block const& b)
{
    return std::ranges::equal(a, b, [](sock_filter const& x, sock_filter const& y) {
        return x.code == y.code && x.jt == y.jt && x.jf == y.jf && x.k == y.k;
    });
}

// The blocks of `cases` with the comparisons in front that lead to each; nothing if a jump over
// one half would be too long.
template <typename Cases> std::optional<FilterProgram::Block> halved(Cases cases)
{
    if (cases.size() == 1)
        return cases.front().block;
    auto const middle = cases.size() / 2;
    auto const low = halved(cases.first(middle));
    auto const high = halved(cases.subspan(middle));
    if (!low || !high || low->size() > longestJump)
        return {};
    FilterProgram::Block code { instruction(
        BPF_JMP | BPF_JGE | BPF_K, cases[middle].call, low->size(), 0) };
    code.insert(code.end(), low->begin(), low->end());
    code.insert(code.end(), high->begin(), high->end());
    return code;
}

} // namespace

FilterProgram::FilterProgram(
    std::uint32_t machine, std::uint32_t numbers, std::uint32_t foreign, Block otherwise)
    : machine_(machine)
    , numbers_(numbers)
    , foreign_(foreign)
    , otherwise_(std::move(otherwise))
{
}

void FilterProgram::add(std::initializer_list<std::uint32_t> calls, Block const& block)
{
    for (auto const call : calls)
        cases_.push_back({ call, block });
}

std::optional<std::vector<FilterProgram::Case>> FilterProgram::casesInOrder() const
{
    auto given = cases_;
    std::ranges::sort(given, {}, &Case::call);
    std::vector<Case> all { { 0, otherwise_ } };
    auto const extend = [&all](std::uint32_t call, Block const& block) {
        if (all.back().call == call)
            all.back().block = block;
        else if (!isSame(all.back().block, block))
            all.push_back({ call, block });
    };
    for (std::size_t i = 0; i < given.size(); ++i) {
        auto const call = given[i].call;
        auto const next = i + 1 < given.size() ? given[i + 1].call : numbers_;
        if (next <= call)
            return {};
        extend(call, given[i].block);
        if (next != call + 1)
            extend(call + 1, otherwise_);
    }
    extend(numbers_, leave(foreign_));
    return all;
}

std::optional<std::vector<sock_filter>> FilterProgram::assemble() const
{
    auto const cases = casesInOrder();
    if (!cases)
        return {};
    auto const calls = halved(std::span(*cases));
    if (!calls)
        return {};
    std::vector<sock_filter> program { load(offsetof(seccomp_data, arch)),
        instruction(BPF_JMP | BPF_JEQ | BPF_K, machine_, 1, 0), leaveWith(foreign_),
        load(offsetof(seccomp_data, nr)) };
    program.insert(program.end(), calls->begin(), calls->end());
    if (program.size() > mostInstructions)
        return {};
    return program;
}

FilterProgram::Block FilterProgram::leave(std::uint32_t action)
{
    return { leaveWith(action) };
}

FilterProgram::Block FilterProgram::ifOneOf(int argument,
    std::initializer_list<std::uint32_t> values, std::uint32_t then, std::uint32_t otherwise)
{
    Block block { loadLow(argument) };
    for (auto const value : values) {
        block.push_back(skipUnless(value, 1));
        block.push_back(leaveWith(then));
    }
    block.push_back(leaveWith(otherwise));
    return block;
}

FilterProgram::Block FilterProgram::ifBits(int argument, std::uint32_t mask, std::uint32_t bits,
    std::uint32_t then, std::uint32_t otherwise)
{
    return { loadLow(argument), instruction(BPF_ALU | BPF_AND | BPF_K, mask), skipUnless(bits, 1),
        leaveWith(then), leaveWith(otherwise) };
}

FilterProgram::Block FilterProgram::ifZero(
    int argument, int lowOnly, std::uint32_t then, std::uint32_t otherwise)
{
    return { loadLow(lowOnly), skipUnless(0, 5), loadLow(argument), skipUnless(0, 3),
        loadHigh(argument), skipUnless(0, 1), leaveWith(then), leaveWith(otherwise) };
}

} // namespace pixelhain
