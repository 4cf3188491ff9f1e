#pragma once
#include "base/FileUrl.h"
#include <cstddef>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

namespace pixelhain {

struct CGImageBox;

enum class PictureSize { display, full };

/// Which large pictures are to be decoded, and in which order: what the viewer waits for before
/// what it may show next, the newest wish first. A picture is decoded for all that want it at once,
/// and not at all if nobody wants it any more when its turn comes. Thread-safe; decodes nothing
/// itself.
class PictureJobs {
public:
    using ImageRef = std::shared_ptr<CGImageBox const>;

    /// Somebody who waits for a picture; both calls may come from any thread.
    struct Waiter {
        std::function<bool()> isDropped;
        std::function<void(ImageRef)> deliver;
    };

    struct Job {
        std::size_t number = 0;
        FileUrl url;
        PictureSize size = PictureSize::display;
        int pixels = 0; ///< what display images were decoded to when it began
    };

    /// How many pictures are decoded side by side.
    struct Widths {
        std::size_t queue = 3; ///< work items of the queue
        std::size_t prefetch = 2; ///< pictures that nobody waits for, beside one that is waited for
    };

    /// Prefetches leave one item of the queue for what is asked for next.
    explicit PictureJobs(Widths widths);

    /// Waits for a picture. One that is being decoded to another number of pixels is another.
    void ask(FileUrl const& url, PictureSize size, int pixels, Waiter waiter);

    /// What may be asked for soon, in place of the earlier wishes: `shown` before all others, if it
    /// is not ready, then `next`. Neither begins to wait here.
    void want(std::optional<FileUrl> const& shown, std::span<FileUrl const> next, int pixels);

    /// While somebody pages in a hurry one is decoded at a time, and none any more once one was
    /// left behind: whatever was begun would be passed before it is there. What is shown when that
    /// ends has the processors for itself until something else is.
    void hurry(bool isHasty);

    /// How many work items the queue needs beyond those it was given for this: counts as given. To
    /// be called after everything else here: what has begun makes way for its neighbours.
    [[nodiscard]] std::size_t claimItems();

    /// For a work item that starts: what to decode, if there still is something.
    [[nodiscard]] std::optional<Job> start(int pixels);

    /// Ends the job; these wait for its picture.
    [[nodiscard]] std::vector<Waiter> finish(std::size_t number);

private:
    struct Entry {
        Job job;
        std::vector<Waiter> waiters {};
        bool isRunning = false;
        bool isShown = false;
        std::optional<std::size_t> rank {}; ///< among what is wanted next
        std::size_t asked = 0; ///< when somebody asked last
    };

    Entry& entryFor(FileUrl const& url, PictureSize size, int pixels);
    void forgetUnwanted();
    Entry* nextToStart();
    [[nodiscard]] bool mayBegin() const;

    Widths const widths_;
    std::mutex lock_;
    std::list<Entry> entries_;
    std::size_t count_ = 0; ///< numbers jobs and wishes
    std::size_t items_ = 0; ///< work items that have not started
    bool isHasty_ = false;
    bool isTooFast_ = false; ///< in a hurry: one was left behind
    bool isAfterHurry_ = false; ///< until other wishes come
};

} // namespace pixelhain
