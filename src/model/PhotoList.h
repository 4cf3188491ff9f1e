#pragma once
#include "model/PhotoIndex.h"
#include "model/ViewChoice.h"
#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace pixelhain {

class TextOrder;

/// The photos of a scan and what is known about their names. Searches in the background read it
/// while they look; nobody changes it meanwhile.
class PhotoList {
public:
    /// Whether each photo's date and size are known, or nothing but the names yet.
    enum class Known : std::uint8_t { names, details };

    PhotoList() = default;
    PhotoList(std::vector<PhotoItem> items, PhotoIndex index, Known known = Known::details)
        : items_(std::move(items))
        , index_(std::move(index))
        , known_(known)
    {
    }
    PhotoList(PhotoList const&) = delete;
    PhotoList& operator=(PhotoList const&) = delete;

    std::vector<PhotoItem> const& items() const { return items_; }

    /// Whether what is known of the photos is enough to put them in this order.
    bool canBeOrderedBy(SortKey key) const
    {
        return key == SortKey::name || known_ == Known::details;
    }

    /// Whether `visible` takes less than a frame, on a slow machine too.
    bool isQuick() const { return items_.size() <= 20'000; }

    /// The items that `choice` lets through, in its order. Thread-safe.
    [[nodiscard]] std::vector<PhotoItem> visible(ViewChoice const& choice, TextOrder const& order);

    /// Does beforehand what the first search takes longer for than the others. Thread-safe.
    void foldNames(TextOrder const& order);

    /// Whether a `Reading` of it is under way.
    bool isBeingRead() const { return readings_.load(std::memory_order_acquire) > 0; }
    class Reading;

    /// Takes the photos marked in `gone` out. Not while it is being read.
    void remove(std::vector<bool> const& gone) { removePhotos(items_, index_, gone); }

private:
    std::vector<PhotoItem> items_;
    PhotoIndex index_;
    Known known_ = Known::details;
    std::mutex folding_; ///< held while the names are folded, once
    std::atomic<int> readings_ = 0;
};

/// Keeps a list alive, and as it is, for a search on another thread.
class PhotoList::Reading {
public:
    explicit Reading(std::shared_ptr<PhotoList> list)
        : list_(std::move(list))
    {
        ++list_->readings_;
    }
    Reading(Reading const& other)
        : Reading(other.list_)
    {
    }
    Reading& operator=(Reading const&) = delete;
    ~Reading() { list_->readings_.fetch_sub(1, std::memory_order_release); }

    PhotoList* operator->() const { return list_.get(); }
    PhotoList& operator*() const { return *list_; }

private:
    std::shared_ptr<PhotoList> list_;
};

} // namespace pixelhain
