#include "model/FoldedNames.h"
#include "base/ParallelWork.h"
#include "ports/TextOrder.h"
#include <algorithm>
#include <atomic>

namespace pixelhain {

namespace {

constexpr std::size_t mostThreads = 4;

void forEach(std::size_t blocks, std::function<void(std::size_t)> const& work)
{
    std::atomic<std::size_t> next = 0;
    runOnThreads(threadsFor(blocks, mostThreads), [&] {
        for (auto i = next.fetch_add(1); i < blocks; i = next.fetch_add(1))
            work(i);
    });
}

} // namespace

FoldedNames::FoldedNames(std::size_t count,
    std::function<std::string_view(std::size_t)> const& nameAt, TextOrder const& order)
    : blocks_((count + blockSize - 1) / blockSize)
{
    forEach(blocks_.size(), [&](std::size_t i) {
        auto const end = std::min((i + 1) * blockSize, count);
        for (auto position = i * blockSize; position < end; ++position)
            blocks_[i].add(order.folded(nameAt(position)));
    });
}

std::size_t FoldedNames::size() const
{
    return blocks_.empty() ? 0 : (blocks_.size() - 1) * blockSize + blocks_.back().size();
}

std::string_view FoldedNames::at(std::size_t position) const
{
    return blocks_[position / blockSize].at(position % blockSize);
}

void FoldedNames::add(std::string_view foldedName)
{
    if (blocks_.empty() || blocks_.back().size() == blockSize)
        blocks_.emplace_back();
    blocks_.back().add(foldedName);
}

std::vector<std::uint32_t> FoldedNames::holding(std::string_view foldedText) const
{
    std::vector<std::vector<std::uint32_t>> found(blocks_.size());
    forEach(blocks_.size(), [&](std::size_t i) {
        auto const& block = blocks_[i];
        for (std::size_t k = 0; k < block.size(); ++k)
            if (block.at(k).find(foldedText) != std::string_view::npos)
                found[i].push_back(static_cast<std::uint32_t>(i * blockSize + k));
    });
    std::size_t count = 0;
    for (auto const& positions : found)
        count += positions.size();
    std::vector<std::uint32_t> all;
    all.reserve(count);
    for (auto const& positions : found)
        all.insert(all.end(), positions.begin(), positions.end());
    return all;
}

std::string_view FoldedNames::Block::at(std::size_t i) const
{
    auto const begin = i == 0 ? 0 : ends_[i - 1];
    return { names_.data() + begin, ends_[i] - begin };
}

void FoldedNames::Block::add(std::string_view foldedName)
{
    names_ += foldedName;
    ends_.push_back(names_.size());
}

} // namespace pixelhain
