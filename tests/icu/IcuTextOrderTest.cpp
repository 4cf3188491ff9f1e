#include "icu/IcuTextOrder.h"
#include <algorithm>
#include <doctest/doctest.h>
#include <map>
#include <string>
#include <thread>
#include <vector>

using namespace pixelhain;

namespace {

using Names = std::vector<std::string>;

Names sorted(IcuTextOrder const& order, Names names)
{
    std::ranges::stable_sort(
        names, [&](auto const& a, auto const& b) { return order.compare(a, b) < 0; });
    return names;
}

std::string keyOf(IcuTextOrder const& order, std::string_view name)
{
    std::string key;
    order.appendSortKey(name, key);
    return key;
}

std::string localeFrom(std::map<std::string, char const*> const& variables)
{
    return orderingLocale([&](char const* name) -> char const* {
        auto const found = variables.find(name);
        return found == variables.end() ? nullptr : found->second;
    });
}

} // namespace

TEST_CASE("digit runs are ordered by their value, letter case is ignored")
{
    IcuTextOrder const order("de_DE");
    Names const right { "img_1.jpg", "IMG_2.jpg", "img_10.jpg", "IMG_100.jpg" };
    CHECK(sorted(order, { right[3], right[2], right[1], right[0] }) == right);
    CHECK(order.compare("IMG.JPG", "img.jpg") == std::weak_ordering::equivalent);
    CHECK(order.compare("007.jpg", "7.jpg") == std::weak_ordering::equivalent);
    CHECK(order.compare("9", "99999999999999999999999999999999") < 0);
}

TEST_CASE("accents and umlauts stand beside their letter, after it")
{
    IcuTextOrder const order("de_DE");
    Names const right { "a.jpg", "\xC3\xA4.jpg", "b.jpg", "e.jpg", "\xC3\xA9.jpg", "z.jpg" };
    auto shuffled = right;
    std::ranges::reverse(shuffled);
    CHECK(sorted(order, shuffled) == right);
}

TEST_CASE("the order is that of the language")
{
    CHECK(IcuTextOrder("de_DE").compare("\xC3\xB6", "z") < 0);
    CHECK(IcuTextOrder("sv_SE").compare("\xC3\xB6", "z") > 0);
}

TEST_CASE("punctuation tells names apart in every language")
{
    for (char const* const locale : { "de_DE", "th_TH", "no_such_language" }) {
        CAPTURE(locale);
        IcuTextOrder const order(locale);
        CHECK(order.compare("a-b.jpg", "ab.jpg") != 0);
        CHECK(order.compare("a b.jpg", "ab.jpg") != 0);
        CHECK(order.compare("img2", "img10") < 0);
    }
}

TEST_CASE("a letter is the same whether it is written in one piece or two")
{
    IcuTextOrder const order("de_DE");
    CHECK(order.compare("\xC3\xA4.jpg", "a\xCC\x88.jpg") == std::weak_ordering::equivalent);
    CHECK(
        order.compare("q\xCC\xA3\xCC\x87", "q\xCC\x87\xCC\xA3") == std::weak_ordering::equivalent);
    CHECK(order.folded("\xC3\x84") == order.folded("a\xCC\x88"));
}

TEST_CASE("ill-formed bytes count as replacement characters")
{
    IcuTextOrder const order("de_DE");
    CHECK(order.compare("a\xFF.jpg", "a\xEF\xBF\xBD.jpg") == std::weak_ordering::equivalent);
    CHECK(order.folded("A\xFF") == "a\xEF\xBF\xBD");
    CHECK(order.folded("caf\xE9") == "caf\xEF\xBF\xBD");
}

TEST_CASE("sort keys give the order of compare")
{
    IcuTextOrder const order("de_DE");
    Names const names { "", "a", "A", "a1", "a01", "a2", "a10", "\xC3\xA4", "a\xCC\x88", "ae", "b",
        "-", "_", " ", "\xFF", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", std::string(300, 'x'),
        std::string(300, 'x') + "y", std::string(200, '9'), std::string(5000, '\xFC'),
        std::string("a\0b", 3) };
    for (auto const& a : names)
        for (auto const& b : names)
            CHECK((keyOf(order, a) <=> keyOf(order, b)) == order.compare(a, b));
}

TEST_CASE("a key is appended to what is there")
{
    IcuTextOrder const order("de_DE");
    std::string keys = "before";
    order.appendSortKey("a.jpg", keys);
    CHECK(keys == "before" + keyOf(order, "a.jpg"));
}

TEST_CASE("folding ignores letter case but not accents")
{
    IcuTextOrder const order("de_DE");
    CHECK(order.folded("IMG_0001.JPG") == "img_0001.jpg");
    CHECK(order.folded("\xC3\x84RGER") == "\xC3\xA4rger");
    CHECK(order.folded("STRASSE")
        == order.folded("stra\xC3\x9F"
                        "e"));
    CHECK(order.folded("\xC3\xA9").find(order.folded("e")) == std::string::npos);
    CHECK(order.folded("e\xCC\x81").find(order.folded("e")) == std::string::npos);
    // J with caron has a composed form in lower case only.
    CHECK(order.folded("J\xCC\x8C") == order.folded("\xC7\xB0"));
    CHECK(order.folded("").empty());
}

TEST_CASE("the language comes from LC_ALL, then LC_COLLATE, then LANG")
{
    CHECK(localeFrom({ { "LC_ALL", "sv_SE.UTF-8" }, { "LANG", "en_US.UTF-8" } }) == "sv_SE");
    CHECK(localeFrom({ { "LC_ALL", "" }, { "LC_COLLATE", "fr_FR@euro" }, { "LANG", "en_US" } })
        == "fr_FR");
    CHECK(localeFrom({ { "LANG", "en_US.UTF-8" } }) == "en_US");
}

TEST_CASE("it is German where the environment names no language")
{
    CHECK(localeFrom({}) == "de_DE");
    CHECK(localeFrom({ { "LANG", "C" } }) == "de_DE");
    CHECK(localeFrom({ { "LANG", "C.UTF-8" } }) == "de_DE");
    CHECK(localeFrom({ { "LC_ALL", "POSIX" }, { "LANG", "sv_SE" } }) == "de_DE");
    CHECK(localeFrom({ { "LANG", ".UTF-8" } }) == "de_DE");
}

TEST_CASE("many threads may order and fold at once")
{
    IcuTextOrder const order("de_DE");
    auto const key = keyOf(order, "\xC3\x84 12.jpg");
    auto const folded = order.folded("\xC3\x84 12.jpg");
    std::vector<int> wrong(4);
    {
        std::vector<std::jthread> threads;
        for (auto& mine : wrong)
            threads.emplace_back([&] {
                for (int i = 0; i < 500; ++i)
                    mine += keyOf(order, "\xC3\x84 12.jpg") != key
                        || order.folded("\xC3\x84 12.jpg") != folded
                        || order.compare("a", "b") >= 0;
            });
    }
    CHECK(wrong == std::vector<int>(4));
}
