#pragma once
#include "ports/Sharing.h"
#include <string>
#include <vector>

namespace pixelhain {

/// Ways to hand files to somebody, as a test says.
class FakeSharing final : public Sharing {
public:
    [[nodiscard]] std::vector<ShareService> services() const override { return installed; }
    void refresh() override { ++refreshes; }
    void share(std::string_view id, std::span<FileUrl const> files) override
    {
        shared.push_back({ std::string(id), { files.begin(), files.end() } });
    }

    struct Shared {
        std::string id;
        std::vector<FileUrl> files;
        bool operator==(Shared const&) const = default;
    };

    std::vector<ShareService> installed;
    std::vector<Shared> shared;
    int refreshes = 0;
};

} // namespace pixelhain
