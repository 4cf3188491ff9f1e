#pragma once
#include "model/BrowserOptions.h"
#include <cstddef>
#include <string>
#include <string_view>

namespace pixelhain {

/// The sentences that the browsing core says, exactly as people read them.
namespace messages {
inline constexpr std::string_view productName = "Pixelhain";
inline constexpr std::string_view openFolderButton = "Öffnen";
inline constexpr std::string_view openFolderMessage = "Wähle einen Ordner mit Fotos";

/// Why the screen stays on.
inline constexpr std::string_view slideshow = "Diashow";

/// "3 Ordner"
[[nodiscard]] std::string folderCount(std::size_t count);

/// "1 Fotos", "40 Fotos": counts on display keep the plural.
[[nodiscard]] std::string photoCount(std::size_t count);

/// "Der Ordner „Urlaub“ ist nicht da"; a folder's name need not be text.
[[nodiscard]] std::string folderIsMissing(std::string_view name);

// What happened to files. Unlike counts on display, these speak of one "Foto". Files that failed
// are mentioned only if there are any.

/// "3 Fotos in den Papierkorb gelegt – ⌘Z macht es rückgängig (1 fehlgeschlagen)"
[[nodiscard]] std::string trashed(std::size_t count, std::size_t failed);
[[nodiscard]] std::string restored(std::size_t count);

/// "2 Fotos nach „Urlaub“ verschoben"; a folder's name need not be text.
[[nodiscard]] std::string transferred(
    std::size_t count, std::string_view folderName, Transfer transfer, std::size_t failed);
[[nodiscard]] std::string copiedToClipboard(std::size_t count);

/// What the panel asks that chooses the folder to move or copy to, and its button.
[[nodiscard]] std::string transferQuestion(std::size_t count, Transfer transfer);
[[nodiscard]] std::string_view transferButton(Transfer transfer);

/// What is asked before a file of that name is written over, and the button that does it.
[[nodiscard]] std::string replaceQuestion(std::string_view name);
inline constexpr std::string_view replaceButton = "Ersetzen";

/// "3 von 120"
[[nodiscard]] std::string progress(std::size_t done, std::size_t total);

/// "Seite 3 von 34": the page that is under way once two are done.
[[nodiscard]] std::string pageProgress(std::size_t done, std::size_t total);
} // namespace messages

} // namespace pixelhain
