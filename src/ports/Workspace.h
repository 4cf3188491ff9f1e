#pragma once
#include "base/FileUrl.h"
#include <span>

namespace pixelhain {

/// Other programs of the desktop. Nothing waits for them and nothing is reported. Main thread only.
class Workspace {
public:
    virtual ~Workspace() = default;

    /// Brings up the file manager with all of these files or folders selected.
    virtual void reveal(std::span<FileUrl const> files) = 0;

    /// Opens the file in the application that the desktop assigns to it.
    virtual void open(FileUrl const& file) = 0;
};

} // namespace pixelhain
