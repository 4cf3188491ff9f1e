#include "viewer/ViewerChrome.h"
#include "support/Desk.h"
#include <doctest/doctest.h>

using namespace pixelhain;
using Action = ViewerChrome::Action;
using Button = ViewerChrome::Button;
using Side = ViewerChrome::Side;

namespace {

struct Bar {
    Desk desk;

    explicit Bar(std::vector<std::string> const& names = { "a.jpg", "b.jpg", "c.jpg" })
    {
        desk.open("/Fotos", names);
    }
    ViewerChrome at(std::size_t index)
    {
        desk.model().openViewer(index);
        return { desk.model(), (*desk.model().items)[index] };
    }
};

} // namespace

TEST_CASE("the position counts from one, without grouping")
{
    std::vector<std::string> names;
    for (int i = 0; i < 12; ++i)
        names.push_back(std::to_string(i) + ".jpg");
    Bar bar(names);
    CHECK(bar.at(0).position() == "1 / 12");
    CHECK(bar.at(11).position() == "12 / 12");
}

TEST_CASE("the name is shown as text whatever its bytes")
{
    Bar bar({ "Meer \xff.jpg" });
    CHECK(bar.at(0).name() == "Meer \uFFFD.jpg");
}

TEST_CASE("who cannot see the photo is told its name, its place and its mark")
{
    Bar bar;
    auto const chrome = bar.at(1);
    CHECK(chrome.spokenName() == "b.jpg, 2 von 3");
    bar.desk.model().toggle(1);
    CHECK(chrome.spokenName() == "b.jpg, 2 von 3, ausgewählt");
}

TEST_CASE("the buttons show their symbols and say what they do, with the key")
{
    Bar bar;
    auto const chrome = bar.at(0);
    auto const tip = [&](Action action) { return chrome.button(action).tip; };
    auto const symbol = [&](Action action) { return chrome.button(action).symbol; };
    CHECK(tip(Action::close) == "Zurück zur Übersicht (Esc / Leertaste)");
    CHECK(symbol(Action::close) == "xmark");
    CHECK(tip(Action::select) == "Auswählen und weiter zum nächsten Foto (X)");
    CHECK(tip(Action::info) == "Infos (I)");
    CHECK(symbol(Action::info) == "info.circle");
    CHECK(tip(Action::slideshow) == "Diashow ab hier (D)");
    CHECK(symbol(Action::slideshow) == "play.fill");
    CHECK(tip(Action::trash) == "In den Papierkorb (⌘⌫)");
    CHECK(symbol(Action::trash) == "trash");
    CHECK(tip(Action::share) == "Teilen");
    CHECK(symbol(Action::share) == "square.and.arrow.up");
    CHECK(tip(Action::fullScreen) == "Vollbild (F)");
    CHECK(symbol(Action::fullScreen) == "arrow.up.left.and.arrow.down.right");
    CHECK(ViewerChrome::order
        == std::array { Action::close, Action::select, Action::info, Action::slideshow,
            Action::trash, Action::share, Action::fullScreen });
}

TEST_CASE("a marked photo has a filled circle in the accent colour")
{
    Bar bar;
    auto const chrome = bar.at(1);
    CHECK(chrome.button(Action::select).symbol == "circle");
    CHECK(chrome.button(Action::select).tint == Tint { ColorRole::primary });
    bar.desk.model().toggle(1);
    CHECK(chrome.button(Action::select).symbol == "checkmark.circle.fill");
    CHECK(chrome.button(Action::select).tint == Tint { ColorRole::accent });
    CHECK(bar.at(0).button(Action::select).symbol == "circle");
}

TEST_CASE("the arrows are nearly invisible, and lit under the pointer")
{
    Bar bar;
    auto chrome = bar.at(1);
    auto const plain = chrome.arrow(Side::left);
    CHECK(plain.symbol == "chevron.left");
    CHECK(plain.fill == Tint { ColorRole::black, 0.001 });
    CHECK(plain.tint == Tint { ColorRole::white, 0.35 });
    chrome.hoverRight = true;
    CHECK(chrome.arrow(Side::left) == plain);
    CHECK(chrome.arrow(Side::right).symbol == "chevron.right");
    CHECK(chrome.arrow(Side::right).fill == Tint { ColorRole::black, 0.35 });
    CHECK(chrome.arrow(Side::right).tint == Tint { ColorRole::white, 0.95 });
}

TEST_CASE("the arrows step and beep at the ends")
{
    Bar bar;
    auto chrome = bar.at(0);
    chrome.step(Side::left);
    CHECK(bar.desk.window.beepCount == 1);
    CHECK(*bar.desk.model().viewerIndex == 0U);
    chrome.step(Side::right);
    chrome.step(Side::right);
    CHECK(*bar.desk.model().viewerIndex == 2U);
    chrome.step(Side::right);
    CHECK(bar.desk.window.beepCount == 2);
}

TEST_CASE("the buttons do it")
{
    Bar bar;
    auto& model = bar.desk.model();
    bar.at(0).perform(Action::select);
    CHECK(bar.desk.marked() == Names { "a.jpg" });
    CHECK(*model.viewerIndex == 1U);
    bar.at(1).perform(Action::info);
    CHECK(model.showInfo);
    bar.at(1).perform(Action::info);
    CHECK_FALSE(model.showInfo);
    bar.at(1).perform(Action::fullScreen);
    CHECK(bar.desk.window.fullScreen);
    bar.at(1).perform(Action::slideshow);
    CHECK(model.isSlideshow);
    CHECK(*model.viewerIndex == 1U);
    model.stopSlideshow();
    // Of marked photos only the one that is shown.
    bar.at(1).perform(Action::trash);
    bar.desk.settle();
    CHECK(bar.desk.names() == Names { "a.jpg", "c.jpg" });
    bar.at(0).perform(Action::close);
    CHECK_FALSE(model.viewerIndex->has_value());
    model.setWindow(nullptr);
    bar.at(0).perform(Action::fullScreen); // without a window nothing happens
}
