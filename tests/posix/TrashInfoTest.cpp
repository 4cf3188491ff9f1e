#include "posix/TrashInfo.h"
#include <cstdlib>
#include <doctest/doctest.h>

using namespace pixelhain;

TEST_CASE("a path in an info file keeps plain characters and encodes every other byte")
{
    CHECK(percentEncoded("/home/u/A-b_c.d~9.jpg") == "/home/u/A-b_c.d~9.jpg");
    CHECK(percentEncoded("50% #1\n\x7f?.jpg") == "50%25%20%231%0A%7F%3F.jpg");
    CHECK(percentEncoded("caf\xE9 \xC3\xA9") == "caf%E9%20%C3%A9");
    CHECK(percentEncoded(std::string_view("\0\xFF", 2)) == "%00%FF");
}

TEST_CASE("an info file tells the path and the date in local time")
{
    ::setenv("TZ", "XXX-3:30", 1);
    ::tzset();
    CHECK(trashInfoText("/a b.jpg", 0)
        == "[Trash Info]\nPath=/a%20b.jpg\nDeletionDate=1970-01-01T03:30:00\n");
    ::unsetenv("TZ");
    ::tzset();
}

TEST_CASE("the path in an info file is read as it was written, by whatever program")
{
    std::string const path("50% #1\n\x7f?/caf\xE9.jpg");
    CHECK(pathIn(trashInfoText(path, 0)) == path);
    CHECK(pathIn("[Trash Info]\r\nDeletionDate=x\r\nPath=a%c3%a9!.jpg\r\n") == "a\xC3\xA9!.jpg");
    CHECK(pathIn("[Trash Info]\nPath=100%/5%2/%zz%+1%") == "100%/5%2/%zz%+1%");
    CHECK(pathIn("[Trash Info]\nPath=") == "");
    CHECK(pathIn("[Trash Info]\nxPath=/a.jpg\n") == std::nullopt);
    CHECK(pathIn("") == std::nullopt);
}

TEST_CASE("names in the trash are numbered before the extension")
{
    CHECK(trashName("IMG_1.jpg", 1, 200) == "IMG_1.jpg");
    CHECK(trashName("IMG_1.jpg", 2, 200) == "IMG_1 2.jpg");
    CHECK(trashName("IMG.1.jpg", 30, 200) == "IMG.1 30.jpg");
    CHECK(trashName("README", 2, 200) == "README 2");
    CHECK(trashName(".jpg", 2, 200) == ".jpg 2");
    CHECK(trashName("a.", 2, 200) == "a. 2");
}

TEST_CASE("a name too long for the trash is shortened before number and extension")
{
    CHECK(trashName("abcdefghij.jpg", 1, 14) == "abcdefghij.jpg");
    CHECK(trashName("abcdefghij.jpg", 1, 12) == "abcdefgh.jpg");
    CHECK(trashName("abcdefghij.jpg", 2, 12) == "abcdef 2.jpg");
    CHECK(trashName("abc." + std::string(40, 'x'), 1, 20) == "abc." + std::string(16, 'x'));
}

TEST_CASE("shortening a name cuts no character in two")
{
    CHECK(trashName("ab\xC3\xA9"
                    "cd.jpg",
              1, 7)
        == "ab.jpg");
    CHECK(trashName("ab\xC3\xA9"
                    "cd.jpg",
              1, 8)
        == "ab\xC3\xA9.jpg");
    CHECK(trashName("\xF0\x9F\x93\xB7\xF0\x9F\x93\xB7.jpg", 1, 11) == "\xF0\x9F\x93\xB7.jpg");
    // Not UTF-8 at all: there is nothing to keep whole.
    CHECK(trashName(std::string(20, '\x80') + ".jpg", 1, 10) == std::string(6, '\x80') + ".jpg");
}
