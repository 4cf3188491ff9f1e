#include "posix/WatchedFolders.h"
#include <algorithm>
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

// /r with a (2), a/b (3), a/b/c (4) and d (5).
struct Tree : WatchedFolders {
    Tree()
    {
        setRoot(1, "/r");
        attach(2, 1, "a");
        attach(3, 2, "b");
        attach(4, 3, "c");
        attach(5, 1, "d");
    }

    std::vector<int> gone()
    {
        auto watches = takeDetached();
        std::ranges::sort(watches);
        return watches;
    }
};

} // namespace

TEST_CASE("a folder's path leads through those above it")
{
    Tree tree;
    CHECK(tree.path(1) == "/r");
    CHECK(tree.path(4) == "/r/a/b/c");
    CHECK(tree.find(3, "c") == 4);
    CHECK_FALSE(tree.find(1, "c"));
    CHECK_FALSE(tree.path(99));
}

TEST_CASE("below the top of the file system paths begin with one stroke")
{
    WatchedFolders folders;
    folders.setRoot(1, "/");
    folders.attach(2, 1, "a");
    CHECK(folders.path(1) == "/");
    CHECK(folders.path(2) == "/a");
}

TEST_CASE("a folder that is moved takes along what lies below it")
{
    Tree tree;
    tree.detach(3);
    CHECK_FALSE(tree.path(4));
    CHECK_FALSE(tree.find(2, "b"));
    tree.attach(3, 5, "neu");
    CHECK(tree.path(4) == "/r/d/neu/c");
    CHECK(tree.gone().empty());
    CHECK(tree.count() == 5);
}

TEST_CASE("a folder that was moved away is let go with what lies below it")
{
    Tree tree;
    tree.detach(2);
    CHECK(tree.hasDetached());
    CHECK(tree.gone() == std::vector { 2, 3, 4 });
    CHECK_FALSE(tree.hasDetached());
    CHECK(tree.count() == 2);
    CHECK(tree.path(5) == "/r/d");
}

TEST_CASE("what lay below a forgotten folder is let go too")
{
    Tree tree;
    tree.forget(3);
    CHECK(tree.gone() == std::vector { 4 });
    tree.forget(5);
    CHECK_FALSE(tree.hasDetached());
    CHECK(tree.count() == 2);
}

TEST_CASE("another folder of the same name takes the place")
{
    Tree tree;
    tree.attach(6, 1, "a");
    CHECK(tree.find(1, "a") == 6);
    CHECK(tree.path(6) == "/r/a");
    CHECK_FALSE(tree.path(3));
    CHECK(tree.gone() == std::vector { 2, 3, 4 });
}

TEST_CASE("a folder that has its place keeps it, so no circle can arise")
{
    Tree tree;
    tree.attach(1, 4, "schleife");
    tree.attach(2, 4, "schleife");
    tree.attach(7, 99, "niemandes");
    CHECK(tree.path(4) == "/r/a/b/c");
    CHECK_FALSE(tree.knows(7));
    CHECK(tree.count() == 5);
}

TEST_CASE("a new root forgets everything")
{
    Tree tree;
    tree.setRoot(9, "/neu");
    CHECK(tree.count() == 1);
    CHECK_FALSE(tree.find(1, "a"));
    tree.setRoot(WatchedFolders::none, {});
    CHECK(tree.count() == 0);
    CHECK_FALSE(tree.knows(WatchedFolders::none));
}
