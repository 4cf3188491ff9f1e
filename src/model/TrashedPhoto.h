#pragma once
#include "base/FileUrl.h"

namespace pixelhain {

/// A photo that went to the trash: where it lay, and where it lies now.
struct TrashedPhoto {
    FileUrl original;
    FileUrl trashed;
    bool operator==(TrashedPhoto const&) const = default;
};

} // namespace pixelhain
