#include "contactsheet/ContactSheetMessages.h"
#include "base/Text.h"
#include <algorithm>

namespace pixelhain {

namespace {

std::string_view reasonOf(WriteProblem problem)
{
    switch (problem) {
    case WriteProblem::noSpace:
        return "Auf dem Laufwerk ist nicht genug Platz.";
    case WriteProblem::notAllowed:
        return "An diesem Ort darf nicht geschrieben werden.";
    case WriteProblem::readOnly:
        return "Das Laufwerk ist schreibgeschützt.";
    case WriteProblem::noFolder:
        return "Der Ordner ist nicht mehr da.";
    case WriteProblem::nameTooLong:
        return "Der Name ist zu lang.";
    case WriteProblem::notAFile:
        return "Was unter diesem Namen liegt, ist keine Datei.";
    case WriteProblem::taken:
        return "Unter diesem Namen liegt inzwischen eine andere Datei.";
    case WriteProblem::tooLarge:
        return "Die Datei wird zu groß für dieses Laufwerk.";
    case WriteProblem::other:
        break;
    }
    return "Die Datei konnte nicht geschrieben werden.";
}

// As much of `text` as fits into `bytes`, whole characters only.
std::string_view shortened(std::string_view text, std::size_t bytes)
{
    if (text.size() <= bytes)
        return text;
    auto const continuesCharacter
        = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; };
    while (bytes > 0 && continuesCharacter(text[bytes]))
        --bytes;
    return text.substr(0, bytes);
}

} // namespace

std::string messages::creatingContactSheet(std::size_t photos)
{
    return "Erstelle Kontaktabzug mit " + std::to_string(photos) + " Fotos …";
}

std::string messages::savedContactSheet(std::string_view fileName)
{
    return "Kontaktabzug gespeichert: " + displayText(fileName);
}

std::string messages::failedContactSheet(WriteProblem problem)
{
    return "Kontaktabzug fehlgeschlagen: " + std::string(reasonOf(problem));
}

std::string messages::cancelledContactSheets(std::size_t sheets)
{
    if (sheets == 1)
        return "Kontaktabzug abgebrochen";
    return std::to_string(sheets) + " Kontaktabzüge abgebrochen";
}

std::string messages::alsoCancelledContactSheets(std::size_t sheets)
{
    if (sheets == 0)
        return {};
    return sheets == 1 ? " – ein weiterer abgebrochen"
                       : " – " + std::to_string(sheets) + " weitere abgebrochen";
}

std::string messages::contactSheetFileName(std::string_view windowTitle)
{
    constexpr std::string_view before = "Kontaktabzug ";
    constexpr std::string_view after = ".pdf";
    constexpr std::size_t longestName = 255; // bytes, on the file systems of this system
    auto const title = shortened(windowTitle, longestName - before.size() - after.size());
    auto name = std::string(before).append(title).append(after);
    std::ranges::replace(name, '/', '-');
    std::ranges::replace(name, '"', '\''); // between which the toolkit's panel reads several names
    return name;
}

} // namespace pixelhain
