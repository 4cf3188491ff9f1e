#include "images/PagingPace.h"
#include <utility>

namespace pixelhain {

void PagingPace::step(FileUrl const& shown)
{
    if (shown == shown_)
        return;
    shown_ = FileUrl(shown.path()); // holds no folder's names in memory
    isHasty_ = static_cast<bool>(pause_);
    pause_ = loop_.after(pause, [this] {
        pause_ = Task();
        if (std::exchange(isHasty_, false))
            rested_();
    });
}

} // namespace pixelhain
