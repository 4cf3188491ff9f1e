#pragma once
#include <span>
#include <string_view>
#include <sys/types.h>

namespace pixelhain {

/// What an intruder in a decoder process has at hand.
struct Loot {
    int file = -1; ///< a photo that was handed over, open for reading
    int socket = -1; ///< the way to the parent
    pid_t parent = 0;
};

/// One thing that no decoder process may do.
struct Attack {
    static constexpr int deadly = 0;

    std::string_view name;
    /// The error it must meet; `deadly` if it must end the process with SIGSYS.
    int expected = deadly;
    /// Whether it succeeds in any process of any user that is not locked down.
    bool worksOutside = false;
    /// 0 on success, the error otherwise. May return twice, once in a new process.
    int (*attempt)(Loot const&) = nullptr;
};

[[nodiscard]] std::span<Attack const> attacks();

/// Null if there is none of that name.
[[nodiscard]] Attack const* attackNamed(std::string_view name);

} // namespace pixelhain
