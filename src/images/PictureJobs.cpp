#include "images/PictureJobs.h"
#include <algorithm>
#include <utility>

namespace pixelhain {

namespace {

// Whether somebody looks at the place where the picture will be.
template <typename Entry> bool isUrgent(Entry const& entry)
{
    return entry.isShown || std::ranges::any_of(entry.waiters, [](auto const& waiter) {
        return !waiter.isDropped();
    });
}

// How far the jobs are, with everything that decides about the next one.
struct Standing {
    template <typename Entries> explicit Standing(Entries const& entries)
    {
        for (auto const& entry : entries) {
            auto& count = isUrgent(entry) ? (entry.isRunning ? urgentRunning : urgentWaiting)
                                          : (entry.isRunning ? othersRunning : othersWaiting);
            ++count;
        }
    }

    // Who turns the pages faster than one processor decodes finds the next one begun. What was
    // passed by while it was decoded takes a place as well.
    std::size_t placesForPrefetches(PictureJobs::Widths const& widths, bool mayBeBeside) const
    {
        if (!mayBeBeside && urgentRunning > 0)
            return 0;
        auto const running = urgentRunning + othersRunning;
        auto const ofQueue = widths.queue - std::min(widths.queue, running + 1);
        auto const most = widths.prefetch + std::min<std::size_t>(urgentRunning, 1);
        auto const ofPrefetches = most - std::min(most, running);
        return urgentWaiting > 0 ? 0 : std::min(ofQueue, ofPrefetches);
    }

    std::size_t urgentRunning = 0;
    std::size_t urgentWaiting = 0;
    std::size_t othersRunning = 0;
    std::size_t othersWaiting = 0;
};

} // namespace

PictureJobs::PictureJobs(Widths widths)
    : widths_(widths)
{
}

void PictureJobs::ask(FileUrl const& url, PictureSize size, int pixels, Waiter waiter)
{
    std::scoped_lock const guard(lock_);
    auto& entry = entryFor(url, size, pixels);
    entry.waiters.push_back(std::move(waiter));
    entry.asked = ++count_;
    forgetUnwanted();
}

void PictureJobs::want(
    std::optional<FileUrl> const& shown, std::span<FileUrl const> next, int pixels)
{
    std::scoped_lock const guard(lock_);
    isAfterHurry_ = isHasty_;
    for (auto& entry : entries_) {
        entry.isShown = false;
        entry.rank.reset();
    }
    if (shown) {
        auto& entry = entryFor(*shown, PictureSize::display, pixels);
        entry.isShown = true;
        entry.asked = ++count_;
    }
    for (std::size_t i = 0; i < next.size(); ++i)
        if (auto& entry = entryFor(next[i], PictureSize::display, pixels); !entry.rank)
            entry.rank = i;
    forgetUnwanted();
    isTooFast_ = isTooFast_ || (isHasty_ && std::ranges::any_of(entries_, [](Entry const& entry) {
        return entry.isRunning && !entry.rank && !isUrgent(entry);
    }));
}

void PictureJobs::hurry(bool isHasty)
{
    std::scoped_lock const guard(lock_);
    isHasty_ = isHasty;
    isTooFast_ = isTooFast_ && isHasty;
    isAfterHurry_ = isAfterHurry_ || isHasty;
}

bool PictureJobs::mayBegin() const
{
    return !isHasty_ || (!isTooFast_ && std::ranges::none_of(entries_, &Entry::isRunning));
}

std::size_t PictureJobs::claimItems()
{
    std::scoped_lock const guard(lock_);
    forgetUnwanted();
    if (!mayBegin())
        return 0;
    Standing const now(entries_);
    auto const startable = now.urgentWaiting
        + std::min(now.othersWaiting, now.placesForPrefetches(widths_, !isAfterHurry_));
    auto const most = isHasty_ ? std::min<std::size_t>(startable, 1) : startable;
    auto const missing = most - std::min(most, items_);
    items_ += missing;
    return missing;
}

std::optional<PictureJobs::Job> PictureJobs::start(int pixels)
{
    std::scoped_lock const guard(lock_);
    --items_;
    forgetUnwanted();
    auto* const entry = mayBegin() ? nextToStart() : nullptr;
    if (!entry)
        return std::nullopt;
    entry->isRunning = true;
    entry->job.pixels = pixels;
    return entry->job;
}

std::vector<PictureJobs::Waiter> PictureJobs::finish(std::size_t number)
{
    std::scoped_lock const guard(lock_);
    auto const ended = std::ranges::find_if(
        entries_, [number](Entry const& entry) { return entry.job.number == number; });
    if (ended == entries_.end())
        return {};
    auto waiters = std::move(ended->waiters);
    entries_.erase(ended);
    return waiters;
}

// The caller has a reason why it is wanted, and states it before anything else is done.
PictureJobs::Entry& PictureJobs::entryFor(FileUrl const& url, PictureSize size, int pixels)
{
    auto const found = std::ranges::find_if(entries_, [&](Entry const& entry) {
        auto const& job = entry.job;
        return job.url == url && job.size == size && (!entry.isRunning || job.pixels == pixels);
    });
    if (found != entries_.end())
        return *found;
    return entries_.emplace_back(Entry { { ++count_, url, size, pixels } });
}

void PictureJobs::forgetUnwanted()
{
    std::erase_if(entries_,
        [](Entry const& entry) { return !entry.isRunning && !entry.rank && !isUrgent(entry); });
}

// A waiter may leave at any moment, also between two looks at it.
PictureJobs::Entry* PictureJobs::nextToStart()
{
    Entry* urgent = nullptr;
    Entry* prefetch = nullptr;
    for (auto& entry : entries_) {
        if (entry.isRunning)
            continue;
        if (isUrgent(entry)) {
            if (!urgent || urgent->asked < entry.asked)
                urgent = &entry;
        } else if (entry.rank && (!prefetch || *entry.rank < *prefetch->rank)) {
            prefetch = &entry;
        }
    }
    if (urgent)
        return urgent;
    return Standing(entries_).placesForPrefetches(widths_, !isAfterHurry_) > 0 ? prefetch : nullptr;
}

} // namespace pixelhain
