#pragma once
#include "base/FileUrl.h"
#include <span>

namespace pixelhain {

/// The desktop's clipboard. Main thread only.
class Clipboard {
public:
    virtual ~Clipboard() = default;

    /// Replaces what the clipboard holds by these files, in this order, to be pasted as copies.
    virtual void setFiles(std::span<FileUrl const> files) = 0;
};

} // namespace pixelhain
