#pragma once
#include "ports/Workspace.h"
#include <vector>

namespace pixelhain {

/// Other programs that remember what they were asked.
class FakeWorkspace final : public Workspace {
public:
    FakeWorkspace();
    ~FakeWorkspace() override;

    void reveal(std::span<FileUrl const> files) override;
    void open(FileUrl const& file) override;

    std::vector<std::vector<FileUrl>> revealed; ///< one list a call
    std::vector<FileUrl> opened; ///< one file a call
};

} // namespace pixelhain
