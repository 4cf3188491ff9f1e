#include "qt/ports/IniText.h"
#include <cmath>
#include <doctest/doctest.h>
#include <limits>

using namespace pixelhain;

using Texts = std::vector<std::string>;

TEST_CASE("settings come back as they were stored")
{
    IniText ini;
    CHECK(ini.setBoolean("shuffle", true));
    CHECK(ini.setNumber("thumbSize", 170.25));
    CHECK(ini.setText("sortKey", "date"));
    CHECK(ini.setTexts("lastFolders", { "/a, b", "/c\"d\\", "" }));
    IniText const read(ini.toString());
    CHECK(read.boolean("shuffle") == true);
    CHECK(read.number("thumbSize") == 170.25);
    CHECK(read.text("sortKey") == "date");
    CHECK(read.texts("lastFolders") == Texts { "/a, b", "/c\"d\\", "" });
}

TEST_CASE("paths keep bytes that are not UTF-8, line breaks and blanks at their ends")
{
    for (std::string const path : { "/Urlaub \xe4\xff", "/a\nb\r=\tc", " /x ", "/Fotos für Jürgen",
             "/\xf0\x9f\x93\xb7\xf0\x9f", "/%41\\x41" }) {
        IniText ini;
        ini.setText("lastRoot", path);
        ini.setTexts("lastFolders", { path });
        IniText const read(ini.toString());
        CHECK(read.text("lastRoot") == path);
        CHECK(read.texts("lastFolders") == Texts { path });
    }
}

TEST_CASE("a readable path stays readable in the file")
{
    IniText ini;
    ini.setText("lastRoot", "/home/jürgen/Fotos");
    CHECK(ini.toString() == "lastRoot=\"/home/jürgen/Fotos\"\n");
}

TEST_CASE("every number comes back exactly")
{
    for (double const number : { 0.1, 1.0 / 3, 1e300, -0.0, 4.0 }) {
        IniText ini;
        ini.setNumber("interval", number);
        CHECK(IniText(ini.toString()).number("interval") == number);
    }
}

TEST_CASE("a value of another type reads as nothing")
{
    IniText const ini(
        "flag=true\nnumber=3\nword=\"abc\"\nlist=\"a\", \"b\"\nopen=\"abc\nbad=\"\\xZZ\"\n"
        "one=\"a\",\n");
    CHECK_FALSE(ini.number("flag"));
    CHECK_FALSE(ini.boolean("number"));
    CHECK_FALSE(ini.boolean("word"));
    CHECK_FALSE(ini.number("word"));
    CHECK_FALSE(ini.text("list"));
    CHECK_FALSE(ini.text("one"));
    CHECK_FALSE(ini.text("open"));
    CHECK_FALSE(ini.texts("open"));
    CHECK_FALSE(ini.text("bad"));
    CHECK_FALSE(ini.text("absent"));
    CHECK_FALSE(ini.boolean(""));
}

TEST_CASE("texts written by hand need no quotation marks")
{
    IniText const ini(" sortKey = date \r\nlastFolders=/a b, /c\nlastRoot=\"/a\"\n");
    CHECK(ini.text("sortKey") == "date");
    CHECK(ini.texts("lastFolders") == Texts { "/a b", "/c" });
    CHECK(ini.texts("lastRoot") == Texts { "/a" });
}

TEST_CASE("an editor's mark at the beginning hides no key")
{
    IniText const ini("\xEF\xBB\xBFsortKey=date\n");
    CHECK(ini.text("sortKey") == "date");
}

TEST_CASE("numbers are read the same in every language, and a decimal comma is no number")
{
    IniText const ini("thumbSize=200.5\ninterval=2,5\n");
    CHECK(ini.number("thumbSize") == 200.5);
    CHECK_FALSE(ini.number("interval"));
}

TEST_CASE("the empty list is a list")
{
    IniText ini;
    ini.setTexts("lastFolders", {});
    CHECK(IniText(ini.toString()).texts("lastFolders") == Texts {});
}

TEST_CASE("garbage is dropped and the rest is read")
{
    std::string garbage = "\x01\x02\xff==\n=\n\n[General\n;note\nshuffle=true\nshuffle=false\n";
    garbage += std::string("a\0b=c\n", 6);
    IniText ini(garbage);
    CHECK(ini.boolean("shuffle") == true);
    ini.setText("sortKey", "size");
    CHECK(ini.toString() == "\n[General\n;note\nshuffle=true\nsortKey=\"size\"\n");
}

TEST_CASE("storing the same again is no change")
{
    IniText ini;
    CHECK(ini.setNumber("interval", 4));
    CHECK_FALSE(ini.setNumber("interval", 4));
    CHECK(ini.setNumber("interval", 6));
}
