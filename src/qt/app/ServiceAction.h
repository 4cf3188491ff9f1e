#pragma once
#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

namespace pixelhain {

/// What the desktop offers beside opening a file, in the menu of the program's icon. The names are
/// those of the desktop entry and, after two hyphens, of the command line.
enum class ServiceAction : std::uint8_t { chooseFolder, showHelp };

inline constexpr std::array serviceActions {
    std::pair { ServiceAction::chooseFolder, std::string_view("choose-folder") },
    std::pair { ServiceAction::showHelp, std::string_view("show-help") },
};

[[nodiscard]] constexpr std::string_view nameOf(ServiceAction action)
{
    for (auto const& [known, name] : serviceActions)
        if (known == action)
            return name;
    return {};
}

[[nodiscard]] constexpr std::optional<ServiceAction> serviceActionNamed(std::string_view asked)
{
    for (auto const& [action, name] : serviceActions)
        if (name == asked)
            return action;
    return std::nullopt;
}

} // namespace pixelhain
