#include "qt/ports/FileUrlText.h"
#include <doctest/doctest.h>

using namespace pixelhain;

TEST_CASE("a file URI yields the path's bytes")
{
    CHECK(fileUrlFromUri("file:///a/b%20c.jpg") == FileUrl("/a/b c.jpg"));
    CHECK(fileUrlFromUri("file://localhost/a") == FileUrl("/a"));
    CHECK(fileUrlFromUri("FILE:/a") == FileUrl("/a"));
    CHECK(fileUrlFromUri("file:///%E4%ff") == FileUrl("/\xe4\xff"));
    CHECK(fileUrlFromUri("file:///a%23b#part") == FileUrl("/a#b"));
}

TEST_CASE("what is no local file yields nothing")
{
    for (std::string_view const uri : { "", "http://x/a.jpg", "file://server/a", "file:a",
             "file:///a%00b", "file:///%4", "file:///%zz", "smb://host/a" })
        CHECK_FALSE(fileUrlFromUri(uri));
}

TEST_CASE("a list of URIs keeps its order and leaves out comments and other schemes")
{
    auto const urls = fileUrlsFromUriList("#x\r\nfile:///b\r\nhttp://x/\r\nfile:///a\r\n");
    CHECK(urls == std::vector { FileUrl("/b"), FileUrl("/a") });
    CHECK(fileUrlsFromUriList("").empty());
}

TEST_CASE("an argument means a path, from the current folder on, or a file URI")
{
    FileUrl const here("/home/me");
    CHECK(fileUrlFromArgument("/x/../y", here) == FileUrl("/y"));
    CHECK(fileUrlFromArgument("Fotos/", here) == FileUrl("/home/me/Fotos"));
    CHECK(fileUrlFromArgument(".", here) == here);
    CHECK(fileUrlFromArgument("\xe4.jpg", here) == FileUrl("/home/me/\xe4.jpg"));
    CHECK(fileUrlFromArgument("file:///a%20b", here) == FileUrl("/a b"));
    CHECK(fileUrlFromArgument("file://server/a", here) == FileUrl("/home/me/file:/server/a"));
    CHECK_FALSE(fileUrlFromArgument("", here));
}

TEST_CASE("a file's URI brings back its exact bytes")
{
    std::string every = "/";
    for (int byte = 1; byte < 256; ++byte)
        if (byte != '/')
            every += static_cast<char>(byte);
    CHECK(fileUrlFromUri(uriOf(FileUrl(every))) == FileUrl(every));
    CHECK(uriOf(FileUrl("/")) == "file:///");
}

TEST_CASE("a URI is spelt as other programs spell it")
{
    CHECK(uriOf(FileUrl("/Fotos/a b (2)+ü.jpg")) == "file:///Fotos/a%20b%20(2)+%C3%BC.jpg");
    CHECK(uriOf(FileUrl("/\xe4#100%?.jpg")) == "file:///%E4%23100%25%3F.jpg");
}
