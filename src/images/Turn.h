#pragma once
#include <atomic>
#include <cstdint>
#include <memory>

namespace pixelhain {

/// When the turn of a gallery cell's picture comes among those that wait, and how much of the work
/// may begin at all. Shared by the cell, which changes it as the gallery moves, and by those who do
/// the work; copies mean the same turn. Thread-safe.
class Turn {
public:
    enum class Wish : std::uint8_t {
        load, ///< the cell is in view: everything
        loadAhead, ///< it is about to be: everything, after all that is in view
        glance, ///< it passes by: no more than a first look
        nothing, ///< it is gone before anybody could see what is in it
    };

    struct Place {
        Wish wish = Wish::load;
        std::uint32_t rank = 0; ///< among those of the same wish, the least first
        bool operator==(Place const&) const = default;
    };

    [[nodiscard]] Place place() const
    {
        auto const value = value_->load(std::memory_order_relaxed);
        return { static_cast<Wish>(value >> rankBits), value & mostRank };
    }

    /// Whether that changes anything.
    bool set(Place place) const
    {
        auto const rank = place.rank < mostRank ? place.rank : mostRank;
        auto const value = (static_cast<std::uint32_t>(place.wish) << rankBits) | rank;
        return value_->exchange(value, std::memory_order_relaxed) != value;
    }

private:
    static constexpr int rankBits = 24;
    static constexpr std::uint32_t mostRank = (1U << rankBits) - 1;

    std::shared_ptr<std::atomic<std::uint32_t>> value_
        = std::make_shared<std::atomic<std::uint32_t>>(0);
};

} // namespace pixelhain
