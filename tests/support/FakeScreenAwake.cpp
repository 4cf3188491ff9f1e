#include "support/FakeScreenAwake.h"

namespace pixelhain {

FakeScreenAwake::FakeScreenAwake() = default;
FakeScreenAwake::~FakeScreenAwake() = default;

Task FakeScreenAwake::keepAwake(std::string_view reason)
{
    reasons.emplace_back(reason);
    ++*holders_;
    return Task([holders = holders_] { --*holders; });
}

} // namespace pixelhain
