#pragma once
#include <cstddef>
#include <string>
#include <string_view>

namespace pixelhain {

/// The sentences that the browsing core says, exactly as people read them.
namespace messages {
inline constexpr std::string_view productName = "Pixelhain";
inline constexpr std::string_view openFolderButton = "Öffnen";
inline constexpr std::string_view openFolderMessage = "Wähle einen Ordner mit Fotos";

/// "3 Ordner"
[[nodiscard]] std::string folderCount(std::size_t count);

/// "1 Fotos", "40 Fotos": counts on display keep the plural.
[[nodiscard]] std::string photoCount(std::size_t count);
} // namespace messages

} // namespace pixelhain
