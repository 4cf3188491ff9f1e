#pragma once
#include <string>
#include <vector>

namespace pixelhain {

/// The manual word by word, for tests: every string with what it is.
struct HelpWording {
    enum class Part { title, heading, text, step, bullet, keys, action, tip };
    Part part;
    std::string words;

    bool operator==(HelpWording const&) const = default;
};

[[nodiscard]] std::vector<HelpWording> wordingOf(std::string const& topic);

} // namespace pixelhain
