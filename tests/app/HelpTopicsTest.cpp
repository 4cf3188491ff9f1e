#include "app/HelpTopics.h"
#include "HelpWording.h"
#include "app/InlineText.h"
#include <doctest/doctest.h>
#include <variant>

using namespace pixelhain;

namespace {

using Part = HelpWording::Part;

struct Reader {
    std::vector<HelpWording> words;

    void operator()(HelpHeading const& block) { words.push_back({ Part::heading, block.text }); }
    void operator()(HelpText const& block) { words.push_back({ Part::text, block.text }); }
    void operator()(HelpTip const& block) { words.push_back({ Part::tip, block.text }); }
    void operator()(HelpSteps const& block)
    {
        for (auto const& item : block.items)
            words.push_back({ Part::step, item });
    }
    void operator()(HelpBullets const& block)
    {
        for (auto const& item : block.items)
            words.push_back({ Part::bullet, item });
    }
    void operator()(HelpKeys const& block)
    {
        for (auto const& row : block.rows) {
            words.push_back({ Part::keys, row.keys });
            words.push_back({ Part::action, row.action });
        }
    }
};

std::vector<HelpWording> read(HelpTopic const& topic)
{
    Reader reader { { { Part::title, topic.title } } };
    for (auto const& block : topic.blocks)
        std::visit(reader, block);
    return reader.words;
}

} // namespace

TEST_CASE("the manual has ten topics in their order, each with its symbol")
{
    std::vector<std::pair<std::string, std::string>> topics;
    for (auto const& topic : helpTopics())
        topics.emplace_back(topic.id, topic.symbol);
    CHECK(topics
        == std::vector<std::pair<std::string, std::string>> { { "start", "sparkles" },
            { "gallery", "square.grid.3x3" }, { "viewer", "photo" },
            { "select", "checkmark.circle" }, { "slideshos", "play.rectangle" },
            { "files", "trash" }, { "contactsheet", "doc.richtext" },
            { "share", "square.and.arrow.up" }, { "shortcuts", "keyboard" },
            { "faq", "questionmark.circle" } });
}

TEST_CASE("every sentence of the manual stands as it was written")
{
    for (auto const& topic : helpTopics()) {
        CAPTURE(topic.id);
        auto const words = read(topic);
        auto const expected = wordingOf(topic.id);
        REQUIRE(words.size() == expected.size());
        for (std::size_t i = 0; i < words.size(); ++i) {
            CHECK(words[i].words == expected[i].words);
            CHECK(words[i].part == expected[i].part);
        }
    }
}

TEST_CASE("no mark of emphasis is left over in any sentence, and none is left out")
{
    for (auto const& topic : helpTopics())
        for (auto const& sentence : read(topic)) {
            CAPTURE(sentence.words);
            auto const read = inlineText(sentence.words);
            CHECK(read.text.find('*') == std::string::npos);
            CHECK(read.spans.empty() == (sentence.words.find('*') == std::string::npos));
        }
}

TEST_CASE("the list is built once")
{
    CHECK(&helpTopics() == &helpTopics());
}

TEST_CASE("a topic is found by its id")
{
    REQUIRE(helpTopic("slideshos"));
    CHECK(helpTopic("slideshos")->title == "Diashow");
    CHECK(helpTopic("slideshow") == nullptr);
    CHECK(helpTopic("") == nullptr);
}

TEST_CASE("what is searched is the title and all strings, a space between any two")
{
    HelpTopic const topic { "id", "Titel", "symbol",
        {
            HelpHeading { "Kopf" },
            HelpText { "Ein **Satz**." },
            HelpSteps { { "eins", "zwei" } },
            HelpBullets { { "drei", "vier" } },
            HelpKeys { { { "⌘O", "Öffnen" }, { "X", "Weg" } } },
            HelpTip { "Rat" },
        } };
    CHECK(searchText(topic) == "Titel Kopf Ein **Satz**. eins zwei drei vier ⌘O Öffnen X Weg Rat");
    CHECK(searchText({ "id", "Titel", "symbol", {} }) == "Titel");
    CHECK(searchText({ "id", "T", "s", { HelpText { "" }, HelpTip { "R" } } }) == "T  R");
}
