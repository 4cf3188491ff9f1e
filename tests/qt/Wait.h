#pragma once
#include <QTest>

namespace pixelhain {

/// Lets events happen until `condition` holds; false if it does not within a minute, which is for
/// what hangs: under a sanitizer, on a busy machine, a page takes many slow frames.
template <typename Condition> [[nodiscard]] bool eventually(Condition condition)
{
    constexpr int milliseconds = 60'000;
    return QTest::qWaitFor(condition, milliseconds);
}

} // namespace pixelhain
