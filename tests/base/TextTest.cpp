#include "base/Text.h"
#include <doctest/doctest.h>

using namespace pixelhain;

TEST_CASE("blanks at both ends are trimmed, line breaks are not")
{
    CHECK(trimmedBlanks(" \tIMG 1\t ") == "IMG 1");
    CHECK(trimmedBlanks("\nIMG\n") == "\nIMG\n");
    CHECK(trimmedBlanks(" \t ").empty());
}

TEST_CASE("only ASCII letters are lowered")
{
    CHECK(asciiLowercased("JPG\xC3\x84") == "jpg\xC3\x84");
}

TEST_CASE("well-formed text is shown as it is")
{
    CHECK(displayText("Grüße – 6000 × 4000 😀") == "Grüße – 6000 × 4000 😀");
}

TEST_CASE("each ill-formed sequence is shown as one replacement character")
{
    CHECK(displayText("gr\xFC\xDF.jpg") == "gr\uFFFD\uFFFD.jpg");
    CHECK(displayText("\xE2\x82") == "\uFFFD");
    CHECK(displayText("a\xF0\x9F\x98z") == "a\uFFFDz");
    CHECK(displayText("\xED\xA0\x80") == "\uFFFD\uFFFD\uFFFD");
    CHECK(displayText("\xC0\xAF") == "\uFFFD\uFFFD");
}
