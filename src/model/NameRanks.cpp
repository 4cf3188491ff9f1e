#include "model/NameRanks.h"
#include "ports/TextOrder.h"
#include <algorithm>
#include <bit>
#include <cstring>
#include <string>

namespace pixelhain {

namespace {

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

// The sort keys of all names, one after the other.
class Keys {
public:
    Keys(std::size_t count, std::function<std::string_view(std::size_t)> const& pathAt,
        TextOrder const& order)
    {
        ends_.reserve(count);
        for (std::size_t i = 0; i < count; ++i) {
            order.appendSortKey(nameOf(pathAt(i)), bytes_);
            ends_.push_back(bytes_.size());
            shared_ = i == 0 ? bytes_.size() : commonLength(of(0).substr(0, shared_), of(i));
        }
    }

    std::string_view of(std::size_t i) const
    {
        auto const begin = i == 0 ? 0 : ends_[i - 1];
        return { bytes_.data() + begin, ends_[i] - begin };
    }

    // The eight bytes that follow what all keys begin with, as a number of the same order; a key
    // that ends sooner is filled with zeros.
    std::uint64_t prefix(std::size_t i) const
    {
        auto const rest = of(i).substr(shared_);
        std::uint64_t bytes = 0;
        if (!rest.empty())
            std::memcpy(&bytes, rest.data(), std::min(rest.size(), sizeof bytes));
        if constexpr (std::endian::native == std::endian::little)
            bytes = __builtin_bswap64(bytes);
        return bytes;
    }

    // Compares what `prefix` has not compared; the prefixes are equal.
    int compareRest(std::size_t a, std::size_t b) const
    {
        return of(a).substr(shared_).compare(of(b).substr(shared_));
    }

private:
    std::string bytes_;
    std::vector<std::size_t> ends_;
    std::size_t shared_ = 0;
};

struct Entry {
    std::uint64_t prefix;
    std::uint32_t index;
};

} // namespace

std::vector<std::uint32_t> rankNames(std::size_t count,
    std::function<std::string_view(std::size_t)> const& pathAt, TextOrder const& order)
{
    Keys const keys(count, pathAt, order);
    std::vector<Entry> entries(count);
    for (std::size_t i = 0; i < count; ++i)
        entries[i] = { keys.prefix(i), static_cast<std::uint32_t>(i) };
    // Most comparisons are decided by two numbers, without a look at the keys.
    std::ranges::sort(entries, [&](Entry const& a, Entry const& b) {
        if (a.prefix != b.prefix)
            return a.prefix < b.prefix;
        if (auto const byKey = keys.compareRest(a.index, b.index); byKey != 0)
            return byKey < 0;
        return pathAt(a.index) < pathAt(b.index);
    });
    std::vector<std::uint32_t> ranks(count);
    for (std::size_t i = 0; i < count; ++i)
        ranks[entries[i].index] = static_cast<std::uint32_t>(i);
    return ranks;
}

} // namespace pixelhain
