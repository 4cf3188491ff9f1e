#pragma once
#include "ports/ScreenAwake.h"
#include <memory>
#include <string>
#include <vector>

namespace pixelhain {

/// Counts who keeps the screen awake.
class FakeScreenAwake final : public ScreenAwake {
public:
    FakeScreenAwake();
    ~FakeScreenAwake() override;

    Task keepAwake(std::string_view reason) override;

    bool isKeptAwake() const { return *holders_ > 0; }
    int holders() const { return *holders_; }

    std::vector<std::string> reasons; ///< one for each time

private:
    std::shared_ptr<int> holders_ = std::make_shared<int>(0);
};

} // namespace pixelhain
