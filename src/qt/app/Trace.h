#pragma once
#include <optional>
#include <string>
#include <string_view>

namespace pixelhain {

/// Says on stderr when the steps of a start were reached, in milliseconds since the process began.
/// Silent unless PIXELHAIN_TRACE is 1.
class Trace {
public:
    Trace();

    bool isOn() const { return isOn_; }
    void milestone(std::string_view name, std::optional<std::size_t> count = std::nullopt) const;

private:
    bool isOn_;
};

/// "   412.5 ms  visible-complete 66", the same whatever the language.
[[nodiscard]] std::string milestoneLine(
    double milliseconds, std::string_view name, std::optional<std::size_t> count);

/// Milliseconds since the kernel started this process, to about ten of them.
[[nodiscard]] double millisecondsSinceProcessStart();

} // namespace pixelhain
