#pragma once
#include <string_view>

namespace pixelhain::service {

/// What other programs are told that ask for what there is not.
inline constexpr std::string_view notAFile
    = "Geöffnet werden nur Dateien und Ordner dieses Rechners.";
inline constexpr std::string_view isEnding = "Das Programm wird gerade beendet.";
inline constexpr std::string_view noSuchAction = "Diese Aktion gibt es nicht.";

} // namespace pixelhain::service
