#include "images/ThumbnailJobs.h"
#include <algorithm>
#include <utility>

namespace pixelhain {

namespace {

// Nothing for what may not begin.
std::optional<ThumbnailJobs::Urgency> urgencyOf(ThumbnailJobs::Job const& job)
{
    auto const place = job.turn.place();
    auto const mayBegin = place.wish == Turn::Wish::load || place.wish == Turn::Wish::loadAhead
        || (place.wish == Turn::Wish::glance && job.step == ThumbnailJobs::Step::glance);
    if (!mayBegin)
        return std::nullopt;
    return ThumbnailJobs::Urgency { place.wish == Turn::Wish::loadAhead, job.step, place.rank };
}

} // namespace

void ThumbnailJobs::add(Job job)
{
    std::scoped_lock const guard(lock_);
    std::erase_if(jobs_, [&](Job const& known) { return known.asker == job.asker; });
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
    auto const startable = startableJobs().size();
    auto const missing = startable - std::min(startable, items_);
    items_ += missing;
    return missing;
}

std::optional<ThumbnailJobs::Job> ThumbnailJobs::start()
{
    std::scoped_lock const guard(lock_);
    --items_;
    auto const startable = startableJobs();
    if (startable.empty())
        return std::nullopt;
    auto const first = std::ranges::min_element(startable, {}, &Startable::urgency)->job;
    std::optional<Job> job(std::move(*first));
    jobs_.erase(first);
    return job;
}

// A look takes no time worth speaking of; a picture that is begun too early takes a processor from
// all that should have come before it.
std::vector<ThumbnailJobs::Startable> ThumbnailJobs::startableJobs()
{
    std::erase_if(jobs_, [](Job const& job) { return job.isDropped(); });
    std::vector<Startable> startable;
    std::optional<Urgency> expected;
    for (auto job = jobs_.begin(); job != jobs_.end(); ++job)
        if (auto const urgency = urgencyOf(*job)) {
            if (job->run)
                startable.push_back({ *urgency, job });
            else
                expected = std::min(expected.value_or(*urgency), *urgency);
        }
    std::erase_if(startable, [&](Startable const& one) {
        return one.job->step != Step::glance && expected && *expected < one.urgency;
    });
    return startable;
}

} // namespace pixelhain
