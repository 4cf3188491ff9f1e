#include "images/ThumbnailJobs.h"
#include <algorithm>
#include <tuple>
#include <utility>

namespace pixelhain {

namespace {

using Urgency = std::tuple<bool, ThumbnailJobs::Step, std::uint32_t>;

// What comes first is least; nothing for what may not begin.
std::optional<Urgency> urgencyOf(ThumbnailJobs::Job const& job)
{
    auto const place = job.turn.place();
    auto const mayBegin = place.wish == Turn::Wish::load || place.wish == Turn::Wish::loadAhead
        || (place.wish == Turn::Wish::glance && job.step == ThumbnailJobs::Step::glance);
    if (!mayBegin)
        return std::nullopt;
    return Urgency { place.wish == Turn::Wish::loadAhead, job.step, place.rank };
}

} // namespace

void ThumbnailJobs::add(Job job)
{
    std::scoped_lock const guard(lock_);
    std::erase_if(jobs_, [&](Job const& known) { return known.asker == job.asker; });
    forgetDropped();
    jobs_.push_back(std::move(job));
}

void ThumbnailJobs::forget(std::shared_ptr<void const> const& asker)
{
    std::scoped_lock const guard(lock_);
    std::erase_if(jobs_, [&](Job const& known) { return known.asker == asker; });
}

std::size_t ThumbnailJobs::claimItems()
{
    std::scoped_lock const guard(lock_);
    forgetDropped();
    auto const startable = static_cast<std::size_t>(
        std::ranges::count_if(jobs_, [this](Job const& job) { return mayBegin(job); }));
    auto const missing = startable - std::min(startable, items_);
    items_ += missing;
    return missing;
}

std::optional<ThumbnailJobs::Job> ThumbnailJobs::start()
{
    std::scoped_lock const guard(lock_);
    --items_;
    forgetDropped();
    auto first = jobs_.end();
    std::optional<Urgency> least;
    for (auto job = jobs_.begin(); job != jobs_.end(); ++job)
        if (auto const urgency = urgencyOf(*job);
            urgency && job->run && (!least || *urgency < *least)) {
            least = urgency;
            first = job;
        }
    if (first == jobs_.end() || !mayBegin(*first))
        return std::nullopt;
    std::optional<Job> job(std::move(*first));
    jobs_.erase(first);
    return job;
}

// A look takes no time worth speaking of; a picture that is begun too early takes a processor from
// all that should have come before it.
bool ThumbnailJobs::mayBegin(Job const& job) const
{
    auto const urgency = urgencyOf(job);
    if (!urgency || !job.run)
        return false;
    return job.step == Step::glance || std::ranges::none_of(jobs_, [&](Job const& other) {
        auto const others = other.run ? std::nullopt : urgencyOf(other);
        return others && *others < *urgency;
    });
}

void ThumbnailJobs::forgetDropped()
{
    std::erase_if(jobs_, [](Job const& job) { return job.isDropped(); });
}

} // namespace pixelhain
