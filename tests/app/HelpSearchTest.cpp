#include "app/HelpSearch.h"
#include "icu/IcuTextOrder.h"
#include <algorithm>
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

IcuTextOrder const german("de_DE");

std::vector<std::string> found(std::string_view query)
{
    std::vector<std::string> ids;
    for (auto const* topic : filteredTopics(query, german))
        ids.push_back(topic->id);
    return ids;
}

bool finds(std::string_view query, std::string const& id)
{
    auto const ids = found(query);
    return std::ranges::find(ids, id) != ids.end();
}

// What is marked in the text, in brackets.
std::string marked(std::string_view query, std::string text)
{
    auto matches = HelpSearch(query, german).matches(text);
    std::ranges::reverse(matches);
    for (auto const& [begin, end] : matches) {
        text.insert(end, "]");
        text.insert(begin, "[");
    }
    return text;
}

} // namespace

TEST_CASE("a query of nothing but spaces and tabs finds all topics")
{
    CHECK(found("").size() == 10);
    CHECK(found(" \t ") == found(""));
    CHECK(found("\n").empty());
}

TEST_CASE("spaces and tabs around a query do not count, line breaks do")
{
    CHECK(found(" \tAirDrop\t ") == std::vector<std::string> { "share" });
    CHECK(found("AirDrop\n").empty());
}

TEST_CASE("letter case makes no difference, umlauts included")
{
    CHECK(finds("DIASHOW", "slideshos"));
    CHECK(found("fotos") == found("FOTOS"));
    CHECK(finds("ÜBERBLENDUNG", "slideshos"));
    CHECK(finds("GRÖSSER", "gallery")); // größer
    CHECK(finds("u\u0308berblendung", "slideshos"));
    CHECK_FALSE(finds("uberblendung", "slideshos"));
}

TEST_CASE("the width of letters makes no difference")
{
    CHECK(found("\uFF21\uFF49\uFF52\uFF24\uFF52\uFF4F\uFF50") == found("AirDrop"));
    CHECK(found("Kontaktabzug\u3000(PDF)") == found("Kontaktabzug (PDF)"));
    CHECK(found("\uFFE9 \uFFEB") == found("← →"));
}

TEST_CASE("keys are found in sentences and in tables")
{
    for (auto const* id : { "gallery", "shortcuts", "faq" })
        CHECK(finds("⌘R", id));
    CHECK_FALSE(finds("⌘R", "share"));
    CHECK(finds("⌘R Neu laden ⌘↑", "shortcuts"));
    CHECK(finds("Leertaste / Return Umrandetes Foto", "gallery"));
}

TEST_CASE("titles and headings are searched, ids are not")
{
    CHECK(found("Fragen & Tipps") == std::vector<std::string> { "faq" });
    CHECK(found("Worauf wirken") == std::vector<std::string> { "select" });
    CHECK(found("slideshos").empty());
}

TEST_CASE("marks of bold and italic are part of what is searched")
{
    CHECK(found("**AirDrop**").empty());
    CHECK(found("**Doppelklick** zoomt") == std::vector<std::string> { "viewer" });
    CHECK(found("Doppelklick zoomt").empty());
}

TEST_CASE("topics that are found keep their order")
{
    auto const all = found("");
    auto const some = found("Papierkorb");
    REQUIRE(some.size() > 2);
    CHECK(some.size() < all.size());
    CHECK(std::ranges::is_sorted(
        some, {}, [&](std::string const& id) { return std::ranges::find(all, id) - all.begin(); }));
}

TEST_CASE("every match is marked, whatever its letter case")
{
    CHECK(marked("foto", "Ein Foto, zwei FOTOS") == "Ein [Foto], zwei [FOTO]S");
    CHECK(marked("  über ", "Übergeordnet, über") == "[Über]geordnet, [über]");
    CHECK(marked("⌘r", "Drücke ⌘R") == "Drücke [⌘R]");
    CHECK(marked("aa", "aaaa a aa") == "[aa][aa] a [aa]");
    CHECK(marked("x", "nichts") == "nichts");
    CHECK(marked("", "nichts") == "nichts");
    CHECK(marked(" \t", "a b") == "a b");
    CHECK(marked("a b", "a b") == "[a b]");
}

TEST_CASE("a match covers whole letters, even where folding changes their length")
{
    CHECK(marked("s", "Größe") == "Grö[ß]e");
    CHECK(marked("GROSS", "groß") == "[groß]");
    CHECK(marked("o\u0308", "Größe") == "Gr[ö]ße");
    CHECK(marked("ö", "Gro\u0308ße") == "Gr[o\u0308]ße");
    CHECK(marked("o", "Gro\u0308ße") == "Gro\u0308ße");
    CHECK(marked("\uFF37\uFF45\uFF42", "WebP") == "[Web]P");
    CHECK(marked("web", "\uFF37\uFF45\uFF42P") == "[\uFF37\uFF45\uFF42]P");
}

TEST_CASE("a query that is no text finds nothing")
{
    CHECK(found("\xff\xfe").empty());
    CHECK(marked("\xff", "a\xff") == "a[\xff]");
}
