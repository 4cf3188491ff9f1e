#include "viewer/WheelPager.h"
#include "ports/MainLoop.h"
#include <cmath>

namespace pixelhain {

int WheelPager::turn(double angle)
{
    if (angle * turned_ < 0)
        turned_ = 0;
    turned_ += angle;
    forget_ = loop_.after(forgetAfter, [this] { turned_ = 0; });
    if (std::abs(turned_) < notch)
        return 0;
    // What was turned in vain, or beyond one step, is not made up for later.
    auto const step = turned_ > 0 ? -1 : +1;
    turned_ = 0;
    return isWaiting_ ? 0 : step;
}

} // namespace pixelhain
