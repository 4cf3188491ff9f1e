#pragma once
#include "ports/Clipboard.h"
#include <vector>

namespace pixelhain {

/// A clipboard that remembers what was put on it.
class FakeClipboard final : public Clipboard {
public:
    FakeClipboard();
    ~FakeClipboard() override;

    void setFiles(std::span<FileUrl const> files) override;

    std::vector<FileUrl> contents;
    int changes = 0;
};

} // namespace pixelhain
