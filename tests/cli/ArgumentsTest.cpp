#include "cli/Arguments.h"
#include <array>
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

using Parsed = std::variant<Arguments, Failure>;
using Words = std::vector<std::string_view>;

Parsed parse(Words const& words)
{
    static constexpr auto options = std::to_array<Option>(
        { { "--recursive" }, { "--sort", OptionValue::required }, { "-0" } });
    return Arguments::parse(words, options);
}

Arguments parsed(Words const& words)
{
    auto const result = parse(words);
    REQUIRE(std::holds_alternative<Arguments>(result));
    return std::get<Arguments>(result);
}

std::string reason(Words const& words)
{
    auto const result = parse(words);
    REQUIRE(std::holds_alternative<Failure>(result));
    return std::get<Failure>(result).reason;
}

} // namespace

TEST_CASE("options may stand before, between and after operands")
{
    auto const arguments = parsed({ "a", "--recursive", "b", "--sort", "size", "-0", "c" });
    CHECK(arguments.has("--recursive"));
    CHECK(arguments.has("-0"));
    CHECK(arguments.value("--sort") == "size");
    CHECK(arguments.operands() == Words { "a", "b", "c" });
}

TEST_CASE("a value may be joined by an equals sign; of a repeated option the last counts")
{
    CHECK(parsed({ "--sort=date" }).value("--sort") == "date");
    CHECK(parsed({ "--sort=" }).value("--sort") == "");
    CHECK(parsed({ "--sort=a=b" }).value("--sort") == "a=b");
    CHECK(parsed({ "--sort", "date", "--sort=size" }).value("--sort") == "size");
    CHECK(parsed({ "--sort", "--recursive" }).value("--sort") == "--recursive");
    CHECK_FALSE(parsed({ "x" }).value("--sort"));
}

TEST_CASE("what follows two dashes is an operand, as is a single dash or nothing")
{
    auto const arguments = parsed({ "-", "", "--", "--recursive", "--" });
    CHECK(arguments.operands() == Words { "-", "", "--recursive", "--" });
    CHECK_FALSE(arguments.has("--recursive"));
}

TEST_CASE("a wrong option is named")
{
    CHECK(reason({ "--colour" }) == "unknown option: --colour");
    CHECK(reason({ "--colour=red" }) == "unknown option: --colour");
    CHECK(reason({ "-x" }) == "unknown option: -x");
    CHECK(reason({ "--rec" }) == "unknown option: --rec");
    CHECK(reason({ "--sort" }) == "option lacks its value: --sort");
    CHECK(reason({ "--recursive=yes" }) == "option takes no value: --recursive");
    CHECK(reason({ "-\xFF" }) == "unknown option: -\xEF\xBF\xBD");
}

TEST_CASE("a number is whole, decimal and within its bounds")
{
    CHECK(parseNumber("1", 1, 10) == 1);
    CHECK(parseNumber("10", 1, 10) == 10);
    for (char const* const text : { "", "0", "11", "1x", " 1", "1.0", "0x1", "99999999999", "-1" })
        CHECK_FALSE(parseNumber(text, 1, 10));
}
