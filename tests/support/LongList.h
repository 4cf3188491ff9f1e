#pragma once
#include "support/Desk.h"

namespace pixelhain {

/// More photos than are filtered at once. Those of the second half are called "b".
struct LongList {
    static constexpr std::size_t count = 24'000;
    Desk desk;

    LongList()
    {
        Names names;
        for (std::size_t i = 0; i < count; ++i)
            names.push_back((i < count / 2 ? "a" : "b") + std::to_string(i) + ".jpg");
        desk.open("/b", names);
    }

    BrowserModel& model() { return desk.model(); }
    std::size_t shown() { return model().items->size(); }
};

} // namespace pixelhain
