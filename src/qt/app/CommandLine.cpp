#include "qt/app/CommandLine.h"
#include "qt/ports/FileUrlText.h"
#include <utility>

namespace pixelhain {

namespace {

bool isFlag(std::string_view argument, CommandLine& line)
{
    constexpr std::string_view hyphens = "--";
    auto const action = argument.starts_with(hyphens)
        ? serviceActionNamed(argument.substr(hyphens.size()))
        : std::nullopt;
    if (argument == "--help" || argument == "-h")
        line.wantsHelp = true;
    else if (argument == "--version")
        line.wantsVersion = true;
    else if (argument == "--new-instance")
        line.startsApart = true;
    else if (action)
        line.action = action;
    else
        return false;
    return true;
}

} // namespace

CommandLine CommandLine::parse(std::span<char const* const> arguments, FileUrl const& currentFolder)
{
    constexpr std::string_view screenshotOption = "--screenshot";
    constexpr std::string_view screenshotPrefix = "--screenshot=";
    CommandLine line;
    bool optionsEnded = false;
    bool isPerhapsValue = false;
    for (std::size_t at = 0; at < arguments.size(); ++at) {
        std::string_view const argument = arguments[at];
        bool const followsUnknown = std::exchange(isPerhapsValue, false);
        if (optionsEnded || !argument.starts_with('-') || argument == "-") {
            if (auto const url = fileUrlFromArgument(argument, currentFolder)) {
                line.files.push_back(*url);
                line.hasSureFile = line.hasSureFile || !followsUnknown;
            }
        } else if (argument == "--") {
            optionsEnded = true;
        } else if (isFlag(argument, line)) {
            continue;
        } else if (argument == screenshotOption && at + 1 < arguments.size()) {
            line.screenshot = arguments[++at];
        } else if (argument.starts_with(screenshotPrefix)) {
            line.screenshot = argument.substr(screenshotPrefix.size());
        } else if (argument == screenshotOption) {
            line.error = "Zu --screenshot fehlt die Datei.";
        } else {
            line.error = "Unbekannte Option: " + std::string(argument);
            isPerhapsValue = true;
        }
    }
    if (!line.files.empty())
        line.action.reset();
    return line;
}

std::string_view CommandLine::helpText()
{
    return "Aufruf: pixelhain [OPTION…] [ORDNER|BILD]\n"
           "\n"
           "Zeigt die Fotos eines Ordners. Ein Bild wird in seinem Ordner gezeigt; ohne Angabe\n"
           "erscheinen die zuletzt gezeigten Ordner. Läuft Pixelhain schon, so zeigt es dort das\n"
           "Verlangte in seinem Fenster.\n"
           "\n"
           "  --choose-folder     fragt nach dem Ordner, der gezeigt werden soll\n"
           "  --show-help         öffnet die Hilfe\n"
           "  --new-instance      öffnet ein eigenes Fenster, auch wenn Pixelhain schon läuft\n"
           "  --screenshot DATEI  wartet, bis jede sichtbare Zelle ihr Bild hat, speichert das\n"
           "                      Fenster als PNG und endet; nach 60 s ohne Bilder mit Fehler\n"
           "  --help              zeigt diese Hilfe\n"
           "  --version           zeigt die Version\n"
           "\n"
           "Umgebung: PIXELHAIN_TRACE=1 schreibt Zeitpunkte des Starts auf die Fehlerausgabe.\n";
}

} // namespace pixelhain
