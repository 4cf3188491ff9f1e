#include "sidebar/FolderNode.h"
#include "model/PhotoTest.h"
#include "sidebar/FolderListing.h"
#include "support/FakeFileSystem.h"
#include "support/FakeImageTypes.h"
#include "support/FakeTextOrder.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

struct Drive {
    FakeFileSystem files;
    FakeTextOrder textOrder;
    FakeImageTypes imageTypes;
    PhotoTest photoTest { imageTypes };
    FolderTools tools { files, textOrder, photoTest };

    explicit Drive(std::initializer_list<char const*> folders)
    {
        for (auto const* path : folders)
            files.addFolder(path);
    }
};

std::vector<std::string> namesOf(FolderNode& node)
{
    std::vector<std::string> names;
    for (auto const& child : node.children())
        names.push_back(child.name());
    return names;
}

using Names = std::vector<std::string>;

} // namespace

TEST_CASE("a node stands for the standardized folder and is named after it")
{
    FolderNode const node(FileUrl("/b//Fotos/../Fotos/"));
    CHECK(node.url() == FileUrl("/b/Fotos"));
    CHECK(node.name() == "Fotos");
    CHECK_FALSE(node.loaded());
    CHECK(node.children().empty());
    CHECK(node.level() == 0);
}

TEST_CASE("the top of the file system is named by its path, other names are shown as text")
{
    CHECK(FolderNode(FileUrl("/")).name() == "/");
    CHECK(FolderNode(FileUrl("/b/\xff")).name() == "\xef\xbf\xbd");
}

TEST_CASE("children are taken once, and know their place")
{
    FolderNode node(FileUrl("/b"));
    node.load(FolderNode::nodesFor({ FileUrl("/b/a"), FileUrl("/b/c") }));
    node.load(FolderNode::nodesFor({ FileUrl("/b/x") }));
    CHECK(node.loaded());
    CHECK(namesOf(node) == Names { "a", "c" });
    auto& second = node.children()[1];
    CHECK(second.parent() == &node);
    CHECK(second.row() == 1);
    CHECK(second.level() == 1);
    CHECK(node.namesHash() == hashOfNames(std::vector { FileUrl("/b/a"), FileUrl("/b/c") }));
}

TEST_CASE("a tree is loaded along the way to the folders that are shown, and no further")
{
    Drive drive { "/r/a/b/c", "/r/a/x/y", "/r/z/q" };
    auto const root = loadTree(drive.tools, FileUrl("/r"), std::vector { FileUrl("/r/a/b/c") });
    CHECK(namesOf(*root) == Names { "a", "z" });
    auto* const b = root->find(FileUrl("/r/a/b"), drive.textOrder);
    REQUIRE(b);
    CHECK(b->loaded());
    CHECK(namesOf(*b) == Names { "c" });
    CHECK_FALSE(b->children()[0].loaded());
    CHECK_FALSE(root->children()[1].loaded());
    CHECK(drive.files.listings().size() == 3);
}

TEST_CASE("a folder is found where it is loaded, also from the top of the file system")
{
    Drive drive { "/a/b", "/a/b10", "/a/b9", "/A/x" };
    auto const root = loadTree(drive.tools, FileUrl("/"), std::vector { FileUrl("/a/b9") });
    for (auto const* path : { "/", "/a", "/A", "/a/b", "/a/b10", "/a/b9" }) {
        CAPTURE(path);
        auto const* const found = root->find(FileUrl(path), drive.textOrder);
        REQUIRE(found);
        CHECK(found->url() == FileUrl(path));
    }
    CHECK_FALSE(root->find(FileUrl("/A/x"), drive.textOrder));
    CHECK_FALSE(root->find(FileUrl("/a/b1"), drive.textOrder));
}

TEST_CASE("only what lies below leads to a folder, not what begins with the same letters")
{
    Drive drive { "/r/Fotos", "/r/Fotos2/innen" };
    auto const root = loadTree(drive.tools, FileUrl("/r"), {});
    auto const leading = [&](std::initializer_list<char const*> shown) {
        std::vector<FileUrl> const folders(shown.begin(), shown.end());
        std::vector<std::string> names;
        for (auto const* node : root->leadingTo(folders, drive.textOrder))
            names.push_back(node->name());
        return names;
    };
    CHECK(leading({ "/r/Fotos2/innen" }) == Names { "Fotos2" });
    CHECK(leading({ "/r/Fotos2" }).empty());
    CHECK(leading({ "/r/Fotos2/x", "/r/Fotos/y", "/r/Fotos2/z", "/r", "/q" })
        == Names { "Fotos", "Fotos2" });
}
