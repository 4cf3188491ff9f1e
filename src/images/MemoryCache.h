#pragma once
#include <cstddef>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <unordered_set>
#include <utility>

namespace pixelhain {

/// What a cache may hold at most; absent: as much as it is given.
struct CacheLimits {
    std::optional<std::size_t> cost;
    std::optional<std::size_t> count;
};

/// Shared values by key, the least recently used dropped first when a limit is passed. Thread-safe;
/// every access takes the same time however much is kept. A dropped value lives on with whoever
/// still holds it.
template <typename Key, typename Value> class MemoryCache {
public:
    using Ref = std::shared_ptr<Value const>;

    explicit MemoryCache(CacheLimits limits = {})
        : limits_(limits)
    {
    }
    MemoryCache(MemoryCache const&) = delete;
    MemoryCache& operator=(MemoryCache const&) = delete;

    /// The value of `key`, which becomes the most recently used; null if there is none.
    [[nodiscard]] Ref find(Key const& key)
    {
        std::scoped_lock const guard(lock_);
        auto const found = index_.find(key);
        if (found == index_.end())
            return nullptr;
        entries_.splice(entries_.begin(), entries_, *found);
        return (*found)->value;
    }

    /// Keeps `value` as the most recently used, in place of an earlier one of the same key. What
    /// costs more than the whole limit is not kept.
    void store(Key key, Ref value, std::size_t cost = 0)
    {
        // Freeing a large picture takes longer than anything done under the lock: it waits until
        // the lock is released.
        Entries added;
        added.push_back({ std::move(key), std::move(value), cost });
        Entries dropped;
        std::scoped_lock const guard(lock_);
        if (auto const old = index_.find(added.front().key); old != index_.end())
            drop(*old, dropped);
        if (limits_.cost && cost > *limits_.cost) {
            dropped.splice(dropped.end(), added);
            return;
        }
        entries_.splice(entries_.begin(), added);
        index_.insert(entries_.begin());
        cost_ += cost;
        while (isOverfull())
            drop(std::prev(entries_.end()), dropped);
    }

    [[nodiscard]] std::size_t cost() const
    {
        std::scoped_lock const guard(lock_);
        return cost_;
    }

    [[nodiscard]] std::size_t count() const
    {
        std::scoped_lock const guard(lock_);
        return entries_.size();
    }

private:
    struct Entry {
        Key key;
        Ref value;
        std::size_t cost;
    };
    using Entries = std::list<Entry>;
    using Place = typename Entries::iterator;

    // The index holds places only, so that each key is kept once.
    struct HashOfKey {
        using is_transparent = void;
        std::size_t operator()(Key const& key) const { return std::hash<Key> {}(key); }
        std::size_t operator()(Place place) const { return std::hash<Key> {}(place->key); }
    };
    struct SameKey {
        using is_transparent = void;
        bool operator()(Place a, Place b) const { return a->key == b->key; }
        bool operator()(Key const& a, Place b) const { return a == b->key; }
        bool operator()(Place a, Key const& b) const { return a->key == b; }
    };

    bool isOverfull() const
    {
        return (limits_.cost && cost_ > *limits_.cost)
            || (limits_.count && entries_.size() > *limits_.count);
    }

    void drop(Place place, Entries& into)
    {
        index_.erase(place);
        cost_ -= place->cost;
        into.splice(into.end(), entries_, place);
    }

    CacheLimits const limits_;
    mutable std::mutex lock_;
    Entries entries_; // the most recently used first
    std::unordered_set<Place, HashOfKey, SameKey> index_;
    std::size_t cost_ = 0;
};

} // namespace pixelhain
