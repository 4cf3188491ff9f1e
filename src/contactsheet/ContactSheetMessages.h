#pragma once
#include "ports/FileReplacement.h"
#include <cstddef>
#include <string>
#include <string_view>

namespace pixelhain::messages {

/// "Erstelle Kontaktabzug mit 42 Fotos …"
[[nodiscard]] std::string creatingContactSheet(std::size_t photos);

/// "Kontaktabzug gespeichert: Urlaub.pdf"; the name need not be text.
[[nodiscard]] std::string savedContactSheet(std::string_view fileName);

/// "Kontaktabzug fehlgeschlagen: Auf dem Laufwerk ist nicht genug Platz."
[[nodiscard]] std::string failedContactSheet(WriteProblem problem);

inline constexpr std::string_view cancelledContactSheet = "Kontaktabzug abgebrochen";
inline constexpr std::string_view awaitedContactSheet
    = "Unter diesem Namen wird noch ein anderer Kontaktabzug gespeichert";

/// The file name that is proposed for the sheet of a window with this title: one that every file
/// system takes.
[[nodiscard]] std::string contactSheetFileName(std::string_view windowTitle);

} // namespace pixelhain::messages
