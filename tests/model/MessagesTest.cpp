#include "model/Messages.h"
#include <doctest/doctest.h>

using namespace pixelhain;

TEST_CASE("what went to the trash is told with the way back")
{
    CHECK(messages::trashed(1, 0) == "1 Foto in den Papierkorb gelegt – ⌘Z macht es rückgängig");
    CHECK(messages::trashed(3, 1)
        == "3 Fotos in den Papierkorb gelegt – ⌘Z macht es rückgängig (1 fehlgeschlagen)");
    CHECK(messages::trashed(0, 2)
        == "0 Fotos in den Papierkorb gelegt – ⌘Z macht es rückgängig (2 fehlgeschlagen)");
}

TEST_CASE("what came back is told without what did not")
{
    CHECK(messages::restored(0) == "0 Fotos wiederhergestellt");
    CHECK(messages::restored(1) == "1 Foto wiederhergestellt");
    CHECK(messages::restored(12345) == "12345 Fotos wiederhergestellt");
}

TEST_CASE("what was moved or copied is told with the folder's name in German quotation marks")
{
    CHECK(messages::transferred(2, "Urlaub", Transfer::move, 0)
        == "2 Fotos nach \u201EUrlaub\u201C verschoben");
    CHECK(messages::transferred(1, "Archiv", Transfer::copy, 1)
        == "1 Foto nach \u201EArchiv\u201C kopiert (1 fehlgeschlagen)");
    CHECK(messages::transferred(0, "\xFFz", Transfer::copy, 12)
        == "0 Fotos nach \u201E\uFFFDz\u201C kopiert (12 fehlgeschlagen)");
}

TEST_CASE("the panel's question and button name what happens")
{
    CHECK(messages::transferQuestion(3, Transfer::move) == "3 Fotos verschieben nach \u2026");
    CHECK(messages::transferQuestion(1, Transfer::copy) == "1 Foto kopieren nach \u2026");
    CHECK(messages::transferButton(Transfer::move) == "Hierher verschieben");
    CHECK(messages::transferButton(Transfer::copy) == "Hierher kopieren");
}

TEST_CASE("the clipboard and the progress of long work have their sentences")
{
    CHECK(messages::copiedToClipboard(1) == "1 Foto in die Zwischenablage kopiert");
    CHECK(messages::copiedToClipboard(2) == "2 Fotos in die Zwischenablage kopiert");
    CHECK(messages::progress(3, 12000) == "3 von 12000");
}

TEST_CASE("a folder that is missing is named, whatever its name is made of")
{
    CHECK(messages::folderIsMissing("Urlaub") == "Der Ordner \u201EUrlaub\u201C ist nicht da");
    CHECK(messages::folderIsMissing("\xFFz") == "Der Ordner \u201E\uFFFDz\u201C ist nicht da");
}

TEST_CASE("before a file is written over the question names it")
{
    CHECK(messages::replaceQuestion("a.pdf")
        == "\u201Ea.pdf\u201C ist schon vorhanden. Soll die Datei ersetzt werden?");
}
