#include "support/FakeTextOrder.h"
#include "base/Text.h"
#include <algorithm>

namespace pixelhain {

FakeTextOrder::FakeTextOrder() = default;
FakeTextOrder::~FakeTextOrder() = default;

std::weak_ordering FakeTextOrder::compare(std::string_view a, std::string_view b) const
{
    std::string keyOfA;
    std::string keyOfB;
    appendSortKey(a, keyOfA);
    appendSortKey(b, keyOfB);
    return keyOfA <=> keyOfB;
}

void FakeTextOrder::appendSortKey(std::string_view name, std::string& keys) const
{
    auto const lower = asciiLowercased(name);
    for (std::size_t i = 0; i < lower.size();) {
        auto digits = lower.find_first_not_of("0123456789", i);
        if (digits == std::string::npos)
            digits = lower.size();
        if (digits == i) {
            keys += lower[i++];
            continue;
        }
        auto const start = std::min(lower.find_first_not_of('0', i), digits);
        keys += static_cast<char>('0' + (digits - start)); // longer numbers are greater
        keys.append(lower, start, digits - start);
        i = digits;
    }
}

std::string FakeTextOrder::folded(std::string_view text) const
{
    ++folds;
    return asciiLowercased(text);
}

} // namespace pixelhain
