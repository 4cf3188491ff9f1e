#pragma once
#include <QTest>

namespace pixelhain {

/// Lets events happen until `condition` holds; false if it does not within ten seconds.
template <typename Condition> [[nodiscard]] bool eventually(Condition condition)
{
    constexpr int milliseconds = 10'000;
    return QTest::qWaitFor(condition, milliseconds);
}

} // namespace pixelhain
