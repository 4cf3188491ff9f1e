#include "app/InlineText.h"
#include <doctest/doctest.h>
#include <random>

using namespace pixelhain;

namespace {

// The text with its styles as tags: bold, italic and code as <b>, <i> and <c>.
std::string tagged(std::string_view marked)
{
    auto const [text, spans] = inlineText(marked);
    std::string result;
    std::size_t at = 0;
    for (auto const& span : spans) {
        REQUIRE(span.begin >= at);
        REQUIRE(span.end > span.begin);
        REQUIRE(span.end <= text.size());
        result += text.substr(at, span.begin - at);
        result += span.isBold ? "<b>" : "";
        result += span.isItalic ? "<i>" : "";
        result += span.isCode ? "<c>" : "";
        result += text.substr(span.begin, span.end - span.begin);
        result += span.isCode ? "</c>" : "";
        result += span.isItalic ? "</i>" : "";
        result += span.isBold ? "</b>" : "";
        at = span.end;
    }
    return result + text.substr(at);
}

struct Reading {
    char const* marked;
    char const* tagged;
};

void check(std::initializer_list<Reading> readings)
{
    for (auto const& reading : readings) {
        CAPTURE(reading.marked);
        CHECK(tagged(reading.marked) == reading.tagged);
    }
}

} // namespace

TEST_CASE("two stars are bold, one is italic, three are both")
{
    check({
        { "**fett** und *kursiv*", "<b>fett</b> und <i>kursiv</i>" },
        { "***beides***", "<b><i>beides</i></b>" },
        { "__fett__ und _kursiv_", "<b>fett</b> und <i>kursiv</i>" },
        { "**a *b* c**", "<b>a </b><b><i>b</i></b><b> c</b>" },
        { "*a **b** c*", "<i>a </i><b><i>b</i></b><i> c</i>" },
        { "****vier****", "<b>vier</b>" },
        { "", "" },
    });
}

TEST_CASE("marks without a partner are text")
{
    check({
        { "**offen", "**offen" },
        { "offen**", "offen**" },
        { "**fett* kursiv", "*<i>fett</i> kursiv" },
        { "*kursiv** mehr", "<i>kursiv</i>* mehr" },
        { "*a _b* c_", "<i>a _b</i> c_" },
        { "**", "**" },
        { "* * *", "* * *" },
        { "***", "***" },
        { "*a", "*a" },
    });
}

TEST_CASE("marks beside white space open or close nothing")
{
    check({
        { "a * b * c", "a * b * c" },
        { "** fett**", "** fett**" },
        { "**fett **", "**fett **" },
        { "*\u00A0a*", "*\u00A0a*" },
        { "2 * 3 = 6 und 3 * 2 auch", "2 * 3 = 6 und 3 * 2 auch" },
    });
}

TEST_CASE("marks between a letter and punctuation open and close on one side only")
{
    check({
        { "a*\"b\"*", "a*\"b\"*" },
        { "**Mehrere:** Mit", "<b>Mehrere:</b> Mit" },
        { "**fett:**weiter", "**fett:**weiter" },
        { "**„so“**", "<b>„so“</b>" },
        { "a**„so“**", "a**„so“**" },
        { "**+** und **−**", "<b>+</b> und <b>−</b>" },
        { "mit **→**.", "mit <b>→</b>." },
        { "a**→**b", "a**→**b" },
        { "**⌘-Klick**", "<b>⌘-Klick</b>" },
        { "(**a**)", "(<b>a</b>)" },
        { "**Teilen**-Knopf", "<b>Teilen</b>-Knopf" },
        { "Pa**pier**korb", "Pa<b>pier</b>korb" },
    });
}

TEST_CASE("underscores within words are part of them")
{
    check({
        { "IMG_0001_2.jpg", "IMG_0001_2.jpg" },
        { "_IMG_0001_", "<i>IMG_0001</i>" },
        { "größe_ist_da", "größe_ist_da" },
        { "a__b__c", "a__b__c" },
        { "(_a_)", "(<i>a</i>)" },
        { "a_(b)_", "a_(b)_" },
        { "a-_(b)_", "a-<i>(b)</i>" },
    });
}

TEST_CASE("runs that could open and close do not make multiples of three")
{
    check({
        { "*a**b**c*", "<i>a</i><b><i>b</i></b><i>c</i>" },
        { "*a**b*", "<i>a**b</i>" },
        { "**a*b**", "<b>a*b</b>" },
        { "a***b***c", "a<b><i>b</i></b>c" },
        { "a******b*********c", "a<b>b</b>***c" },
        { "***a** b*", "<b><i>a</i></b><i> b</i>" },
        { "***a* b**", "<b><i>a</i></b><b> b</b>" },
    });
}

TEST_CASE("a backslash takes the meaning from signs only")
{
    check({
        { "\\*kein\\*", "*kein*" },
        { "\\**halb*", "*<i>halb</i>" },
        { "C:\\Fotos\\a", "C:\\Fotos\\a" },
        { "\\\\", "\\" },
        { "\\", "\\" },
        { "a\\ä", "a\\ä" },
        { "a\\\nb", "a\nb" },
    });
}

TEST_CASE("nothing is marked within code")
{
    check({
        { "`a*b*`", "<c>a*b*</c>" },
        { "`` a`b ``", "<c>a`b</c>" },
        { "`a\\`", "<c>a\\</c>" },
        { "`  `", "<c>  </c>" },
        { "`a\nb`", "<c>a b</c>" },
        { "`offen", "`offen" },
        { "``a`", "``a`" },
        { "*a `b*` c*", "<i>a </i><i><c>b*</c></i><i> c</i>" },
        { "&amp;`&amp;`", "&<c>&amp;</c>" },
    });
}

TEST_CASE("characters may be written by name and by number, and are marks of nothing")
{
    check({
        { "&lt;a&gt; &quot;b&quot; &hellip;", "<a> \"b\" …" },
        { "&#8984;O &#x2318;O", "⌘O ⌘O" },
        { "&#42;a&#42;", "*a*" },
        { "&ast;a*", "*a*" },
        { "&#0; &#xD800; &#x110000;", "\uFFFD \uFFFD \uFFFD" },
        { "&#x10FFFF;", "\U0010FFFF" },
        { "&#12345678; &#; &#x; &#xg;", "&#12345678; &#; &#x; &#xg;" },
        { "&unbekannt; & &; &amp", "&unbekannt; & &; &amp" },
        { "Datenschutz & Sicherheit", "Datenschutz & Sicherheit" },
    });
}

TEST_CASE("how a text begins makes nothing of it, and white space stays")
{
    check({
        { "+ / −", "+ / −" },
        { "1. Punkt", "1. Punkt" },
        { "- Strich", "- Strich" },
        { "# Kopf", "# Kopf" },
        { "> Zitat", "> Zitat" },
        { "    eingerückt", "    eingerückt" },
        { "⇧⌘A  oder  Esc", "⇧⌘A  oder  Esc" },
        { "a  \nb\n\nc ", "a  \nb\n\nc " },
        { "<b>a</b> [b](c)", "<b>a</b> [b](c)" },
    });
}

TEST_CASE("neighbouring stretches of one style are one span")
{
    CHECK(inlineText("**a&amp;\\*b**").spans
        == std::vector<InlineText::Span> { { .begin = 0, .end = 4, .isBold = true } });
}

TEST_CASE("bytes that are no text are kept")
{
    check({ { "\xff**\xc3", "\xff**\xc3" }, { "**\x80\x80**", "<b>\x80\x80</b>" } });
}

TEST_CASE("whatever the marks, no letter gets lost and spans stay within the text")
{
    std::mt19937 random(7);
    std::vector<std::string> const parts
        = { "*", "**", "***", "_", "__", "a", "ä", " ", ".", "„", "`", "``", "-" };
    for (int round = 0; round < 3000; ++round) {
        std::string marked;
        for (auto length = random() % 16; length > 0; --length)
            marked += parts[random() % parts.size()];
        CAPTURE(marked);
        auto const plain = [](std::string text) {
            std::erase_if(
                text, [](char c) { return c == '*' || c == '_' || c == '`' || c == ' '; });
            return text;
        };
        auto const read = inlineText(marked);
        CHECK(plain(read.text) == plain(marked));
        std::size_t at = 0;
        for (auto const& span : read.spans) {
            CHECK(span.begin >= at);
            CHECK(span.begin < span.end);
            at = span.end;
        }
        CHECK(at <= read.text.size());
    }
}
