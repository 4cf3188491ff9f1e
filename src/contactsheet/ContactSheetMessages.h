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

/// "Kontaktabzug abgebrochen", "2 Kontaktabzüge abgebrochen"
[[nodiscard]] std::string cancelledContactSheets(std::size_t sheets);
/// Behind how another one ended: " – ein weiterer abgebrochen", " – 2 weitere abgebrochen"; empty
/// for none.
[[nodiscard]] std::string alsoCancelledContactSheets(std::size_t sheets);

inline constexpr std::string_view awaitedContactSheet
    = "Unter diesem Namen wird noch ein anderer Kontaktabzug gespeichert";

/// The file name that is proposed for the sheet of a window with this title: of a length and of
/// characters that the file systems of this system and its save panel take.
[[nodiscard]] std::string contactSheetFileName(std::string_view windowTitle);

} // namespace pixelhain::messages
