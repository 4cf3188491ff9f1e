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
