#pragma once
#include "ports/TextOrder.h"
#include <atomic>

namespace pixelhain {

/// Natural order for ASCII names: letter case ignored, digit runs by their value.
class FakeTextOrder final : public TextOrder {
public:
    FakeTextOrder();
    ~FakeTextOrder() override;

    std::weak_ordering compare(std::string_view a, std::string_view b) const override;

    void appendSortKey(std::string_view name, std::string& keys) const override;

    std::string folded(std::string_view text) const override;

    mutable std::atomic<std::size_t> folds = 0; ///< texts so far
};

} // namespace pixelhain
