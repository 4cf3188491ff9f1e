#pragma once
#include <string>
#include <string_view>

namespace pixelhain {

/// What the program tells about itself.
namespace about {
inline constexpr std::string_view windowTitle = "Über Pixelhain";
inline constexpr std::string_view name = "Pixelhain";
inline constexpr std::string_view purpose = "Fotos in Ordnern schnell ansehen";
inline constexpr std::string_view licence
    = "Freie Software unter der GNU General Public License, Version 3 oder später "
      "(GPL-3.0-or-later), ohne jede Gewährleistung.";
inline constexpr std::string_view closeButton = "Schließen";

/// "Version 1.0"
[[nodiscard]] std::string version(std::string_view number);

/// What of its holds on the processes that read photos this system refuses, for `missing` as in
/// "Landlock"; empty if none is missing.
[[nodiscard]] std::string missingHolds(std::string_view missing);
} // namespace about

} // namespace pixelhain
