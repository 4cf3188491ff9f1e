#include "icu/IcuTextFormats.h"
#include <doctest/doctest.h>
#include <map>
#include <string>
#include <thread>
#include <vector>

using namespace pixelhain;
using namespace std::chrono_literals;

namespace {

// 2023-05-17 12:30:12 in Greenwich
Timestamp const afternoon { std::chrono::sys_days { std::chrono::year(2023) / 5 / 17 } + 12h + 30min
    + 12s };

IcuTextFormats formatsOf(std::string const& locale, std::string const& timeZone = "Europe/Berlin")
{
    return IcuTextFormats({ locale, locale }, timeZone);
}

IcuTextFormats::Locales localesFrom(std::map<std::string, char const*> const& variables)
{
    return formatLocales([&](char const* name) -> char const* {
        auto const found = variables.find(name);
        return found == variables.end() ? nullptr : found->second;
    });
}

} // namespace

TEST_CASE("sizes are written as in Germany, with plain spaces")
{
    auto const formats = formatsOf("de_DE");
    CHECK(formats.byteCount(1) == "1 Byte");
    CHECK(formats.byteCount(512) == "512 Byte");
    CHECK(formats.byteCount(999) == "999 Byte");
    CHECK(formats.byteCount(1000) == "1 KB");
    CHECK(formats.byteCount(1499) == "1 KB");
    CHECK(formats.byteCount(1500) == "2 KB");
    CHECK(formats.byteCount(345'678) == "346 KB");
    CHECK(formats.byteCount(5'240'000) == "5,2 MB");
    CHECK(formats.byteCount(5'250'000) == "5,3 MB");
    CHECK(formats.byteCount(5'000'000) == "5 MB");
    CHECK(formats.byteCount(1'230'000'000) == "1,23 GB");
    CHECK(formats.byteCount(2'500'000'000'000) == "2,5 TB");
    CHECK(formats.byteCount(7'000'000'000'000'000) == "7 PB");
}

TEST_CASE("no size is a thousand of a unit that has a next one")
{
    auto const formats = formatsOf("de_DE");
    CHECK(formats.byteCount(999'499) == "999 KB");
    CHECK(formats.byteCount(999'500) == "1 MB");
    CHECK(formats.byteCount(999'949'999) == "999,9 MB");
    CHECK(formats.byteCount(999'950'000) == "1 GB");
    CHECK(formats.byteCount(999'995'000'000) == "1 TB");
    CHECK(formats.byteCount(INT64_MAX) == "9.223,37 PB");
}

TEST_CASE("an empty file has a word for its size")
{
    CHECK(formatsOf("de_DE").byteCount(0) == "Null KB");
    CHECK(formatsOf("en_US").byteCount(0) == "Zero KB");
    CHECK(formatsOf("sv_SE").byteCount(0) == "0 byte");
    CHECK(formatsOf("de_DE").byteCount(-1) == "Null KB");
}

TEST_CASE("sizes are written as the user's country does")
{
    CHECK(formatsOf("en_US").byteCount(512) == "512 bytes");
    CHECK(formatsOf("en_US").byteCount(5'240'000) == "5.2 MB");
    CHECK(formatsOf("en_GB.UTF-8").byteCount(17'000) == "17 KB");
    CHECK(formatsOf("de_CH").byteCount(5'240'000) == "5.2 MB");
    CHECK(formatsOf("fr_FR").byteCount(5'240'000) == "5,2 Mo");
}

TEST_CASE("dates are written as in Germany")
{
    auto const formats = formatsOf("de_DE");
    CHECK(formats.dateAndTime(afternoon) == "17.05.2023, 14:30");
    CHECK(formats.date(afternoon) == "17.05.2023");
    CHECK(formats.dateAndTime(afternoon + 29s) == "17.05.2023, 14:30");
}

TEST_CASE("dates are written as the user's country does, with plain spaces")
{
    CHECK(formatsOf("en_US").dateAndTime(afternoon) == "May 17, 2023, 2:30 PM");
    CHECK(formatsOf("en_GB").dateAndTime(afternoon) == "17 May 2023, 14:30");
    CHECK(formatsOf("sv_SE").date(afternoon) == "17 maj 2023");
}

TEST_CASE("times are those of the zone")
{
    CHECK(formatsOf("de_DE", "UTC").dateAndTime(afternoon) == "17.05.2023, 12:30");
    CHECK(formatsOf("de_DE", "Asia/Tokyo").dateAndTime(afternoon) == "17.05.2023, 21:30");
    auto const winter = afternoon - 24h * 120;
    CHECK(formatsOf("de_DE").dateAndTime(winter) == "17.01.2023, 13:30");
}

TEST_CASE("moments before 1970 are dates as well")
{
    CHECK(formatsOf("de_DE", "UTC").dateAndTime(Timestamp(-1ns)) == "31.12.1969, 23:59");
    CHECK(formatsOf("de_DE", "UTC").date(distantPast) == "21.09.1677");
}

TEST_CASE("numbers and dates may follow different countries")
{
    IcuTextFormats const formats({ "en_US", "de_DE" }, "Europe/Berlin");
    CHECK(formats.byteCount(5'240'000) == "5.2 MB");
    CHECK(formats.dateAndTime(afternoon) == "17.05.2023, 14:30");
}

TEST_CASE("the environment says whose conventions are asked for")
{
    auto const all = [](std::map<std::string, char const*> const& variables) {
        auto const locales = localesFrom(variables);
        return locales.numbers + " " + locales.dates;
    };
    CHECK(all({}) == "de_DE de_DE");
    CHECK(all({ { "LANG", "en_US.UTF-8" } }) == "en_US en_US");
    CHECK(all({ { "LANG", "en_US.UTF-8" }, { "LC_TIME", "de_DE.UTF-8" } }) == "en_US de_DE");
    CHECK(all({ { "LANG", "en_US.UTF-8" }, { "LC_NUMERIC", "sv_SE" } }) == "sv_SE en_US");
    CHECK(all({ { "LC_ALL", "fr_FR" }, { "LC_TIME", "de_DE.UTF-8" } }) == "fr_FR fr_FR");
    CHECK(all({ { "LC_ALL", "C.UTF-8" } }) == "de_DE de_DE");
}

TEST_CASE("several threads may ask at once")
{
    auto const formats = formatsOf("de_DE");
    std::vector<std::string> answers(4);
    {
        std::vector<std::jthread> threads;
        for (auto& answer : answers)
            threads.emplace_back([&] {
                for (int i = 0; i < 200; ++i)
                    answer = formats.dateAndTime(afternoon) + formats.byteCount(5'240'000);
            });
    }
    CHECK(answers == std::vector<std::string>(4, "17.05.2023, 14:305,2 MB"));
}
