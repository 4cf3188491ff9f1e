#include "model/Messages.h"
#include "base/Text.h"
#include <algorithm>

namespace pixelhain {

namespace {

std::string photos(std::size_t count)
{
    return std::to_string(count) + (count == 1 ? " Foto" : " Fotos");
}

std::string failures(std::size_t count)
{
    return count == 0 ? "" : " (" + std::to_string(count) + " fehlgeschlagen)";
}

} // namespace

std::string messages::folderCount(std::size_t count)
{
    return std::to_string(count) + " Ordner";
}

std::string messages::photoCount(std::size_t count)
{
    return std::to_string(count) + " Fotos";
}

std::string messages::folderIsMissing(std::string_view name)
{
    return "Der Ordner „" + displayText(name) + "“ ist nicht da";
}

std::string messages::trashed(std::size_t count, std::size_t failed)
{
    return photos(count) + " in den Papierkorb gelegt – ⌘Z macht es rückgängig" + failures(failed);
}

std::string messages::restored(std::size_t count)
{
    return photos(count) + " wiederhergestellt";
}

std::string messages::transferred(
    std::size_t count, std::string_view folderName, Transfer transfer, std::size_t failed)
{
    auto const* const participle = transfer == Transfer::copy ? "kopiert" : "verschoben";
    return photos(count) + " nach „" + displayText(folderName) + "“ " + participle
        + failures(failed);
}

std::string messages::copiedToClipboard(std::size_t count)
{
    return photos(count) + " in die Zwischenablage kopiert";
}

std::string messages::replaceQuestion(std::string_view name)
{
    return "„" + displayText(name) + "“ ist schon vorhanden. Soll die Datei ersetzt werden?";
}

std::string messages::transferQuestion(std::size_t count, Transfer transfer)
{
    auto const* const verb = transfer == Transfer::copy ? "kopieren" : "verschieben";
    return photos(count) + " " + verb + " nach …";
}

std::string_view messages::transferButton(Transfer transfer)
{
    return transfer == Transfer::copy ? "Hierher kopieren" : "Hierher verschieben";
}

std::string messages::progress(std::size_t done, std::size_t total)
{
    return std::to_string(done) + " von " + std::to_string(total);
}

std::string messages::pageProgress(std::size_t done, std::size_t total)
{
    return "Seite " + progress(std::min(done + 1, total), total);
}

} // namespace pixelhain
