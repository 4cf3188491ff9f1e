#include "model/CursorRules.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

using Index = std::optional<std::size_t>;
constexpr Index none;

struct Move {
    Index cursor;
    std::ptrdiff_t delta;
    std::size_t count;
    std::size_t expected;
};

} // namespace

TEST_CASE("without a cursor, steps come in from the ends")
{
    for (auto const& move : {
             Move { none, +1, 10, 0 }, // → first
             Move { none, -1, 10, 9 }, // ← last
             Move { none, +5, 10, 4 }, // ↓ the last of the first row
             Move { none, -5, 10, 5 }, // ↑ in the last row
             Move { none, +5, 5, 4 },
             Move { none, -5, 5, 0 },
             Move { none, +5, 3, 2 }, // shorter than a row: the last photo
             Move { none, -5, 3, 2 },
             Move { none, +1, 1, 0 },
             Move { none, -1, 1, 0 },
             Move { none, -7, 1, 0 },
         }) {
        CAPTURE(move.delta);
        CAPTURE(move.count);
        CHECK(movedCursor(move.cursor, move.delta, move.count) == move.expected);
    }
}

TEST_CASE("a cursor moves within the photos and never leaves them")
{
    for (auto const& move : {
             Move { 3, +1, 10, 4 },
             Move { 3, -1, 10, 2 },
             Move { 9, +1, 10, 9 },
             Move { 0, -1, 10, 0 },
             Move { 1, +4, 10, 5 },
             Move { 5, -4, 10, 1 },
             Move { 6, +4, 10, 6 }, // ↓ on the last row
             Move { 3, -4, 10, 3 }, // ↑ on the first row
             Move { 5, +4, 10, 9 },
             Move { 4, -4, 10, 0 },
             Move { 0, +5, 3, 0 }, // a cursor that exists stays
             Move { 2, -5, 3, 2 },
             Move { 12, +1, 10, 9 },
         }) {
        CAPTURE(*move.cursor);
        CAPTURE(move.delta);
        CHECK(movedCursor(move.cursor, move.delta, move.count) == move.expected);
    }
}

TEST_CASE("the place of a photo that goes is taken by the next that stays, else by the one before")
{
    std::vector<bool> const gone { true, false, true, true, false, true };
    CHECK(survivor(0, gone) == Index(1));
    CHECK(survivor(1, gone) == Index(1));
    CHECK(survivor(2, gone) == Index(4));
    CHECK(survivor(3, gone) == Index(4));
    CHECK(survivor(4, gone) == Index(4));
    CHECK(survivor(5, gone) == Index(4));
    CHECK(survivor(6, gone) == none);
    CHECK(survivor(none, gone) == none);
    CHECK(survivor(1, { true, true }) == none);
    CHECK(survivor(0, {}) == none);
}

TEST_CASE("photos that stay move up by as many as went before them")
{
    std::vector<bool> const gone { true, false, true, true, false, false };
    CHECK(indexAfterRemoval(1, gone) == 0);
    CHECK(indexAfterRemoval(4, gone) == 1);
    CHECK(indexAfterRemoval(5, gone) == 2);
}
