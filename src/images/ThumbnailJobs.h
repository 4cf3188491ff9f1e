#pragma once
#include "images/Turn.h"
#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <tuple>
#include <vector>

namespace pixelhain {

/// The gallery's pictures that are to be made, and in which order: a first look into every file in
/// view before any picture is decoded, then the pictures in view, those first that are embedded in
/// their file, then the same for what is about to come into view. The order is that of the moment
/// in which a job begins. Thread-safe; decodes nothing itself.
class ThumbnailJobs {
public:
    enum class Step : std::uint8_t {
        glance,
        quick, ///< takes a preview
        slow, ///< decodes the picture itself, or may have to
    };

    struct Job {
        std::shared_ptr<void const> asker; ///< whose job it is; who has one has no other
        Turn turn;
        Step step = Step::slow;
        std::function<bool()> isDropped; ///< may be called from any thread
        std::function<void()> run; ///< empty while it is not known whether there is a need
    };

    /// Adds a job, in place of the asker's own that was expected. Until it is known whether one is
    /// needed, no picture is decoded that would come after it.
    void add(Job job);
    /// There is no need for the job that was expected.
    void forget(std::shared_ptr<void const> const& asker);

    /// How many work items the queue needs beyond those it was given for this: counts as given. To
    /// be called after a job was added or forgotten, after a job has ended, and after turns were
    /// changed.
    [[nodiscard]] std::size_t claimItems();

    /// For a work item that starts: what to do, if there still is something that may begin.
    [[nodiscard]] std::optional<Job> start();

    /// Whether it is only ahead, its step and its rank: what comes first is least.
    using Urgency = std::tuple<bool, Step, std::uint32_t>;

private:
    struct Startable {
        Urgency urgency;
        std::list<Job>::iterator job;
    };

    /// All that may begin now, in the order in which they were added. Forgets the dropped.
    [[nodiscard]] std::vector<Startable> startableJobs();

    std::mutex lock_;
    std::list<Job> jobs_;
    std::size_t items_ = 0; ///< work items that have not started
};

} // namespace pixelhain
