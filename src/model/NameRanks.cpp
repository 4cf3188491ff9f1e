#include "model/NameRanks.h"
#include "base/ParallelWork.h"
#include "ports/TextOrder.h"
#include <algorithm>
#include <atomic>
#include <bit>
#include <cstring>
#include <span>
#include <string>

namespace pixelhain {

namespace {

using PathAt = std::function<std::string_view(std::size_t)>;

std::string_view nameOf(std::string_view path)
{
    return path.substr(path.rfind('/') + 1);
}

std::size_t commonLength(std::string_view a, std::string_view b)
{
    auto const shorter = std::min(a.size(), b.size());
    return static_cast<std::size_t>(
        std::mismatch(a.begin(), a.begin() + static_cast<std::ptrdiff_t>(shorter), b.begin()).first
        - a.begin());
}

// The sort keys of all names, in blocks of as many; the blocks are made side by side.
class Keys {
public:
    Keys(std::size_t count, PathAt const& pathAt, TextOrder const& order)
        : blocks_((count + blockSize - 1) / blockSize)
    {
        std::atomic<std::size_t> next = 0;
        runOnThreads(threadsFor(blocks_.size(), mostThreads), [&] {
            for (auto i = next.fetch_add(1); i < blocks_.size(); i = next.fetch_add(1))
                blocks_[i]
                    = Block(i * blockSize, std::min((i + 1) * blockSize, count), pathAt, order);
        });
    }

    std::string_view of(std::size_t i) const { return blocks_[i / blockSize].of(i % blockSize); }

    std::string_view from(std::size_t i, std::size_t depth) const
    {
        auto const key = of(i);
        return key.substr(std::min(depth, key.size()));
    }

private:
    static constexpr std::size_t blockSize = 4096;
    static constexpr std::size_t mostThreads = 4;

    class Block {
    public:
        Block() = default;
        Block(std::size_t from, std::size_t to, PathAt const& pathAt, TextOrder const& order)
        {
            ends_.reserve(to - from);
            for (auto at = from; at < to; ++at) {
                order.appendSortKey(nameOf(pathAt(at)), bytes_);
                ends_.push_back(bytes_.size());
            }
        }
        std::string_view of(std::size_t i) const
        {
            auto const begin = i == 0 ? 0 : ends_[i - 1];
            return { bytes_.data() + begin, ends_[i] - begin };
        }

    private:
        std::string bytes_; ///< one after the other
        std::vector<std::size_t> ends_;
    };
    std::vector<Block> blocks_;
};

struct Entry {
    std::uint64_t digits;
    std::uint32_t index;
};

// The first eight bytes as a number of the same order; a shorter key is filled with zeros.
std::uint64_t leadingDigits(std::string_view key)
{
    std::uint64_t bytes = 0;
    if (!key.empty())
        std::memcpy(&bytes, key.data(), std::min(key.size(), sizeof bytes));
    if constexpr (std::endian::native == std::endian::little)
        bytes = __builtin_bswap64(bytes);
    return bytes;
}

// Sorts by eight bytes of the keys at a time, which lie in the entries themselves. The keys are
// looked up only once per entry and step, not in every comparison.
class Sorter {
public:
    Sorter(Keys const& keys, PathAt const& pathAt)
        : keys_(keys)
        , pathAt_(pathAt)
    {
    }

    // All keys of `run` agree in their first `depth` bytes.
    void sort(std::span<Entry> run, std::size_t depth) const
    {
        constexpr std::size_t fewEntries = 12;
        auto const shared = depth + commonBeginning(run, depth);
        if (run.size() <= fewEntries || isOver(run, shared))
            return sortWhole(run, shared);
        for (auto& entry : run)
            entry.digits = leadingDigits(keys_.from(entry.index, shared));
        std::ranges::sort(run, {}, &Entry::digits);
        for (auto begin = run.begin(); begin != run.end();) {
            auto const end = std::find_if(begin, run.end(),
                [&](Entry const& entry) { return entry.digits != begin->digits; });
            if (end - begin > 1)
                sort({ begin, end }, shared + sizeof(Entry::digits));
            begin = end;
        }
    }

private:
    std::size_t commonBeginning(std::span<Entry const> run, std::size_t depth) const
    {
        if (run.empty())
            return 0;
        auto common = keys_.from(run.front().index, depth);
        for (auto const& entry : run)
            common = common.substr(0, commonLength(common, keys_.from(entry.index, depth)));
        return common.size();
    }

    bool isOver(std::span<Entry const> run, std::size_t depth) const
    {
        return std::ranges::all_of(
            run, [&](Entry const& entry) { return keys_.of(entry.index).size() <= depth; });
    }

    void sortWhole(std::span<Entry> run, std::size_t depth) const
    {
        std::ranges::sort(run, [&](Entry const& a, Entry const& b) {
            auto const byKey = keys_.from(a.index, depth).compare(keys_.from(b.index, depth));
            return byKey != 0 ? byKey < 0 : pathAt_(a.index) < pathAt_(b.index);
        });
    }

    Keys const& keys_;
    PathAt const& pathAt_;
};

} // namespace

std::vector<std::uint32_t> rankNames(
    std::size_t count, PathAt const& pathAt, TextOrder const& order)
{
    Keys const keys(count, pathAt, order);
    std::vector<Entry> entries(count);
    for (std::size_t i = 0; i < count; ++i)
        entries[i].index = static_cast<std::uint32_t>(i);
    Sorter(keys, pathAt).sort(entries, 0);
    std::vector<std::uint32_t> ranks(count);
    for (std::size_t i = 0; i < count; ++i)
        ranks[entries[i].index] = static_cast<std::uint32_t>(i);
    return ranks;
}

} // namespace pixelhain
