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

// The positions in the order of their ranks: each rank has its place, so nothing is compared.
void sortByRank(Positions& positions, Positions const& rank)
{
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
        positions = matching(order.folded(wanted));
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
    std::string folded;
    std::vector<std::size_t> foldedEnd;
    for (std::size_t i = 0; i < rank_.size(); ++i) {
        if (isGone(i))
            continue;
        newPosition[i] = kept++;
        if (!foldedEnd_.empty()) {
            folded += foldedName(i);
            foldedEnd.push_back(folded.size());
        }
    }

    rank_.resize(kept);
    std::uint32_t next = 0;
    for (auto const old : byRank)
        if (newPosition[old] != noPosition)
            rank_[newPosition[old]] = next++;
    folded_ = std::move(folded);
    foldedEnd_ = std::move(foldedEnd);
}

void PhotoIndex::foldNames(std::span<PhotoItem const> items, TextOrder const& order)
{
    if (foldedEnd_.size() == items.size())
        return;
    foldedEnd_.reserve(items.size());
    for (auto const& item : items) {
        folded_ += order.folded(item.name());
        foldedEnd_.push_back(folded_.size());
    }
}

std::string_view PhotoIndex::foldedName(std::size_t position) const
{
    auto const begin = position == 0 ? 0 : foldedEnd_[position - 1];
    return { folded_.data() + begin, foldedEnd_[position] - begin };
}

PhotoIndex::Positions PhotoIndex::matching(std::string_view foldedText) const
{
    Positions found;
    for (std::size_t i = 0; i < foldedEnd_.size(); ++i)
        if (foldedName(i).find(foldedText) != std::string_view::npos)
            found.push_back(static_cast<std::uint32_t>(i));
    return found;
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
