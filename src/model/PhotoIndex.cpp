#include "model/PhotoIndex.h"
#include "base/Text.h"
#include "model/NameRanks.h"
#include "ports/TextOrder.h"
#include <algorithm>
#include <limits>
#include <numeric>

namespace pixelhain {

namespace {

using Positions = std::vector<std::uint32_t>;

constexpr auto noPosition = std::numeric_limits<std::uint32_t>::max();

// The positions in the order of their ranks. If they are many each rank has its place, so nothing
// is compared.
void sortByRank(Positions& positions, Positions const& rank)
{
    constexpr std::size_t few = 16; // comparisons for each, at most
    if (positions.size() < rank.size() / few) {
        std::ranges::sort(positions, {}, [&](std::uint32_t position) { return rank[position]; });
        return;
    }
    Positions places(rank.size(), noPosition);
    for (auto const position : positions)
        places[rank[position]] = position;
    std::erase(places, noPosition);
    positions = std::move(places);
}

template <typename ValueOf>
void sortByValue(Positions& positions, Positions const& rank, ValueOf const& valueOf)
{
    struct Entry {
        std::int64_t value;
        std::uint32_t rank;
        std::uint32_t position;
        auto operator<=>(Entry const&) const = default;
    };
    std::vector<Entry> entries;
    entries.reserve(positions.size());
    for (auto const position : positions)
        entries.push_back({ valueOf(position), rank[position], position });
    std::ranges::sort(entries);
    std::ranges::transform(entries, positions.begin(), &Entry::position);
}

void sortPositions(
    Positions& positions, Positions const& rank, std::span<PhotoItem const> items, SortKey sortKey)
{
    switch (sortKey) {
    case SortKey::name:
        return sortByRank(positions, rank);
    case SortKey::date:
        return sortByValue(positions, rank,
            [&](std::size_t i) { return items[i].date.time_since_epoch().count(); });
    case SortKey::size:
        return sortByValue(positions, rank, [&](std::size_t i) { return items[i].size; });
    }
}

} // namespace

PhotoIndex::PhotoIndex(std::span<PhotoItem const> items, TextOrder const& order)
    : rank_(rankNames(
        items.size(), [&](std::size_t i) { return items[i].url.path(); }, order))
{
}

PhotoIndex::PhotoIndex(std::span<FileUrl const> urls, TextOrder const& order)
    : rank_(rankNames(
        urls.size(), [&](std::size_t i) { return urls[i].path(); }, order))
{
}

std::vector<PhotoItem> PhotoIndex::visible(std::span<PhotoItem const> items, TextOrder const& order,
    std::string_view searchText, SortKey sortKey, bool ascending)
{
    Positions positions;
    if (auto const wanted = trimmedBlanks(searchText); !wanted.empty()) {
        foldNames(items, order);
        positions = folded_.holding(order.folded(wanted));
    } else {
        positions.resize(rank_.size());
        std::iota(positions.begin(), positions.end(), 0U);
    }
    sortPositions(positions, rank_, items, sortKey);
    // No two photos share a rank, so descending is exactly the reverse.
    if (!ascending)
        std::ranges::reverse(positions);
    std::vector<PhotoItem> result;
    result.reserve(positions.size());
    for (auto const position : positions)
        result.push_back(items[position]);
    return result;
}

void PhotoIndex::removeIf(std::function<bool(std::size_t)> const& isGone)
{
    Positions byRank(rank_.size());
    for (std::uint32_t i = 0; i < rank_.size(); ++i)
        byRank[rank_[i]] = i;

    Positions newPosition(rank_.size(), noPosition);
    std::uint32_t kept = 0;
    FoldedNames folded;
    for (std::size_t i = 0; i < rank_.size(); ++i) {
        if (isGone(i))
            continue;
        newPosition[i] = kept++;
        if (folded_.size() > 0)
            folded.add(folded_.at(i));
    }

    rank_.resize(kept);
    std::uint32_t next = 0;
    for (auto const old : byRank)
        if (newPosition[old] != noPosition)
            rank_[newPosition[old]] = next++;
    folded_ = std::move(folded);
}

void PhotoIndex::foldNames(std::span<PhotoItem const> items, TextOrder const& order)
{
    if (folded_.size() != items.size())
        folded_ = FoldedNames(
            items.size(), [&](std::size_t i) { return items[i].name(); }, order);
}

void removePhotos(std::vector<PhotoItem>& items, std::vector<bool> const& gone)
{
    std::size_t kept = 0;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (gone[i])
            continue;
        if (kept != i)
            items[kept] = std::move(items[i]);
        ++kept;
    }
    items.resize(kept);
}

void removePhotos(std::vector<PhotoItem>& items, PhotoIndex& index, std::vector<bool> const& gone)
{
    index.removeIf([&](std::size_t i) { return gone[i]; });
    removePhotos(items, gone);
}

} // namespace pixelhain
