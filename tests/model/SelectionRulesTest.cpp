#include "model/SelectionRules.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

FileUrl const a("/a");
FileUrl const b("/b");
FileUrl const c("/c");
FileUrl const hidden("/h");

std::vector<PhotoItem> const items { { c }, { a }, { b } };

} // namespace

TEST_CASE("of the marked photos those remain that are still there")
{
    CHECK(stillPresent({ a, hidden }, items) == UrlSet { a });
    CHECK(stillPresent({}, items).empty());
}

TEST_CASE("the marked photos come in the order of the items")
{
    CHECK(markedPhotos({ b, hidden, c }, items) == std::vector { c, b });
    CHECK(markedPhotos({}, items).empty());
}

TEST_CASE("membership is told by the name, whether or not the bytes are shared")
{
    using Marks = std::vector<bool>;
    UrlSet const copies { items[0].url, items[2].url };
    CHECK(membership(copies, items) == Marks { true, false, true });
    CHECK(membership({ FileUrl("/a"), hidden }, items) == Marks { false, true, false });
    CHECK(
        membership({ items[0].url, FileUrl("/b"), hidden }, items) == Marks { true, false, true });
    CHECK(membership({}, items) == Marks { false, false, false });
    CHECK(membership(copies, {}).empty());
}

TEST_CASE("inverted are those of the items that were not marked")
{
    CHECK(invertedSelection({ b, hidden }, items) == UrlSet { a, c });
    CHECK(allPhotos(items) == UrlSet { a, b, c });
}

TEST_CASE("vanished is what was wanted away, was there before and is there no more")
{
    std::vector<FileUrl> const leaving { a, b, hidden };
    std::vector<PhotoItem> const after { { b }, { c } };
    CHECK(vanishedPhotos(leaving, items, after) == UrlSet { a });
    CHECK(vanishedPhotos({}, items, after).empty());
}
