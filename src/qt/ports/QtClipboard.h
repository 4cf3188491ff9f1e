#pragma once
#include "ports/Clipboard.h"

namespace pixelhain {

/// The desktop's clipboard as the toolkit reaches it.
class QtClipboard final : public Clipboard {
public:
    void setFiles(std::span<FileUrl const> files) override;
};

} // namespace pixelhain
