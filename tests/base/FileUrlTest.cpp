#include "base/FileUrl.h"
#include <doctest/doctest.h>

using pixelhain::FileUrl;

TEST_CASE("a file URL keeps bytes that are not UTF-8")
{
    FileUrl const url("/tmp/gr\xFC\xDF.jpg");
    CHECK(url.path() == "/tmp/gr\xFC\xDF.jpg");
    CHECK(url.name() == "gr\xFC\xDF.jpg");
    CHECK(url.extension() == "jpg");
}

TEST_CASE("a folder has one spelling with and without a closing slash")
{
    CHECK(FileUrl("/a/b/") == FileUrl("/a/b"));
    CHECK(FileUrl("/").path() == "/");
}

TEST_CASE("the extension is what follows the last dot of the name")
{
    CHECK(FileUrl("/a.b/photo").extension().empty());
    CHECK(FileUrl("/photo.tar.gz").extension() == "gz");
    CHECK(FileUrl("/photo.").extension().empty());
    CHECK(FileUrl("/.jpg").extension().empty());
    CHECK(FileUrl("/.hidden.jpg").extension() == "jpg");
}

TEST_CASE("parent and child are each other's inverse, and the root is its own parent")
{
    FileUrl const folder("/a");
    CHECK(folder.child("b.jpg").path() == "/a/b.jpg");
    CHECK(folder.child("b.jpg").parent() == folder);
    CHECK(folder.parent().path() == "/");
    CHECK(folder.parent().parent().path() == "/");
    CHECK(FileUrl("/").child("a").path() == "/a");
}

TEST_CASE("standardizing removes dots and repeated slashes without following links")
{
    CHECK(FileUrl("/a//b/./c/../d/").standardized().path() == "/a/b/d");
    CHECK(FileUrl("/../..").standardized().path() == "/");
    CHECK(FileUrl().standardized().empty());
}

TEST_CASE("a folder contains itself and what lies beneath, not its namesakes")
{
    FileUrl const root("/photos");
    CHECK(root.isWithin(root));
    CHECK(FileUrl("/photos/2023/a.jpg").isWithin(root));
    CHECK_FALSE(FileUrl("/photos2/a.jpg").isWithin(root));
    CHECK_FALSE(FileUrl("/").isWithin(root));
    CHECK(root.isWithin(FileUrl("/")));
    CHECK_FALSE(root.isWithin(FileUrl()));
}

TEST_CASE("copies of a file URL share their bytes")
{
    FileUrl const url("/a/b.jpg");
    FileUrl const copy = url;
    CHECK(copy.path().data() == url.path().data());
}

TEST_CASE("the empty URL is safe to ask")
{
    FileUrl const none;
    CHECK(none.empty());
    CHECK(none.name().empty());
    CHECK(none.extension().empty());
    CHECK(std::string_view(none.cString()).empty());
}
