#pragma once
#include "base/FileUrl.h"
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace pixelhain {

/// One way to hand files to somebody.
struct ShareService {
    std::string id;
    std::string title; ///< for a menu
    bool operator==(ShareService const&) const = default;
};

/// What is installed to hand files to somebody. Nothing waits for it and nothing is reported. Main
/// thread only.
class Sharing {
public:
    virtual ~Sharing() = default;

    /// What was there when it was last looked for.
    [[nodiscard]] virtual std::vector<ShareService> services() const = 0;

    /// Looks again for what is there; `services` tells later.
    virtual void refresh() = 0;

    /// Hands the files over. A service that is gone does nothing.
    virtual void share(std::string_view id, std::span<FileUrl const> files) = 0;
};

} // namespace pixelhain
