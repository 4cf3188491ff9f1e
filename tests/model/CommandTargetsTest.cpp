#include "model/CommandTargets.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

FileUrl const a("/a");
FileUrl const b("/b");
FileUrl const c("/c");

std::optional<FileUrl> nextIsC(FileUrl const&)
{
    return c;
}

} // namespace

TEST_CASE("the marked photos are meant, without any the current one, without that none")
{
    CHECK(CommandTargets { { a, b }, c }.photosNow() == std::vector { a, b });
    CHECK(CommandTargets { {}, c }.photosNow() == std::vector { c });
    CHECK(CommandTargets { {}, std::nullopt }.photosNow().empty());
}

TEST_CASE("photos that are gone are no targets, and the current one is followed by its successor")
{
    CommandTargets targets { { a, b }, a };
    targets.follow({ a }, nextIsC);
    CHECK(targets.photosNow() == std::vector { b });
    targets.follow({ b }, nextIsC);
    CHECK(targets.photosNow() == std::vector { c });
}

TEST_CASE("a current photo that stays is not exchanged, and one without a successor ends it")
{
    CommandTargets targets { {}, a };
    targets.follow({ b }, nextIsC);
    CHECK(targets.photosNow() == std::vector { a });
    targets.follow({ a }, [](FileUrl const&) { return std::nullopt; });
    CHECK(targets.photosNow().empty());
}
