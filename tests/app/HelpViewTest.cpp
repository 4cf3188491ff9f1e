#include "app/HelpView.h"
#include "icu/IcuTextOrder.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

struct Help {
    IcuTextOrder order { "de_DE" };
    HelpView view { order };

    std::string shown() const { return view.topic() ? view.topic()->id : "none"; }
    std::size_t listed() const { return view.filtered().size(); }
};

} // namespace

TEST_CASE("help begins at the first topic with all in the list")
{
    Help help;
    CHECK(help.view.selection() == "start");
    CHECK(help.shown() == "start");
    CHECK(help.view.query().empty());
    CHECK(help.listed() == 10);
}

TEST_CASE("a query that excludes the shown topic moves on to the first one found")
{
    Help help;
    help.view.setQuery("⌘R");
    CHECK(help.shown() == "gallery");
}

TEST_CASE("the shown topic stays while it is among those found")
{
    Help help;
    help.view.select("faq");
    help.view.setQuery("⌘R");
    CHECK(help.listed() > 1);
    CHECK(help.shown() == "faq");
    help.view.setQuery("");
    CHECK(help.listed() == 10);
    CHECK(help.shown() == "faq");
}

TEST_CASE("the shown topic stays while nothing is found")
{
    Help help;
    help.view.select("share");
    help.view.setQuery("gibt es nicht");
    CHECK(help.listed() == 0);
    CHECK(help.shown() == "share");
    help.view.setQuery("DIASHOW FÜR");
    CHECK(help.shown() == "share");
    help.view.setQuery("Kontaktabzug ist");
    CHECK(help.shown() == "contactsheet");
}

TEST_CASE("a query of only spaces shows all topics")
{
    Help help;
    help.view.setQuery("   ");
    CHECK(help.listed() == 10);
    CHECK(help.shown() == "start");
    CHECK(help.view.highlight().isEmpty());
}

TEST_CASE("no topic is shown when none is chosen, until a search finds one")
{
    Help help;
    help.view.select(std::nullopt);
    CHECK(help.view.topic() == nullptr);
    help.view.setQuery("gibt es nicht");
    CHECK(help.view.topic() == nullptr);
    help.view.setQuery("AirDrop");
    CHECK(help.shown() == "share");
}

TEST_CASE("an unknown id shows no topic")
{
    Help help;
    help.view.select("slideshow");
    CHECK(help.view.topic() == nullptr);
}

TEST_CASE("a topic that is not in the list may be shown")
{
    Help help;
    help.view.setQuery("AirDrop");
    help.view.select("faq");
    CHECK(help.shown() == "faq");
}

TEST_CASE("the current query is what is marked in the topic")
{
    Help help;
    help.view.setQuery(" diashow\t");
    CHECK(help.view.highlight().matches("Die Diashow")
        == std::vector<HelpSearch::Match> { { 4, 11 } });
}

TEST_CASE("closing the window forgets topic and query")
{
    Help help;
    help.view.setQuery("AirDrop");
    help.view.select(std::nullopt);
    help.view.reset();
    CHECK(help.shown() == "start");
    CHECK(help.view.query().empty());
    CHECK(help.listed() == 10);
}

TEST_CASE("the window says what it shows in German")
{
    CHECK(HelpView::windowTitle == "Pixelhain-Hilfe");
    CHECK(HelpView::searchPrompt == "Hilfe durchsuchen");
    CHECK(HelpView::noMatches == "Keine Treffer");
    CHECK(HelpView::noTopic == "Wähle links ein Thema.");
    CHECK(HelpView::defaultWidth == 860);
    CHECK(HelpView::defaultHeight == 620);
}
