#pragma once
#include <vector>

namespace pixelhain {

/// A screen's size in points and its device pixels per point.
struct Screen {
    double width = 0;
    double height = 0;
    double scale = 1;
};

/// The screens of the desktop. Main thread only.
class Screens {
public:
    virtual ~Screens() = default;
    [[nodiscard]] virtual std::vector<Screen> all() const = 0;
};

} // namespace pixelhain
