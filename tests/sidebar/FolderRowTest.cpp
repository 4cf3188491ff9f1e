#include "sidebar/FolderRow.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

FolderRow rowOf(std::optional<std::size_t> count)
{
    FolderRow row;
    row.name = "Fotos";
    row.path = "/b/Fotos";
    row.count = count;
    return row;
}

using Commands = std::vector<FolderCommand>;
using enum FolderCommand;

} // namespace

TEST_CASE("a folder that is shown has a filled symbol")
{
    FolderRow row;
    CHECK(row.symbol() == "folder");
    row.isCurrent = true;
    CHECK(row.symbol() == "folder.fill");
}

TEST_CASE("a count shows from one photo on")
{
    CHECK(rowOf(std::nullopt).countText().empty());
    CHECK(rowOf(0).countText().empty());
    CHECK(rowOf(1).countText() == "1");
    CHECK(rowOf(1234).countText() == "1234");
}

TEST_CASE("the tip says the path and, once counted, how many photos")
{
    CHECK(rowOf(std::nullopt).helpText() == "/b/Fotos");
    CHECK(rowOf(0).helpText() == "/b/Fotos\n0 Fotos direkt in diesem Ordner");
    CHECK(rowOf(1).helpText() == "/b/Fotos\n1 Foto direkt in diesem Ordner");
    CHECK(rowOf(12).helpText() == "/b/Fotos\n12 Fotos direkt in diesem Ordner");
}

TEST_CASE("screen readers hear the count and the level")
{
    CHECK(rowOf(std::nullopt).spokenDetails(0) == "Ebene 1");
    CHECK(rowOf(12).spokenDetails(2) == "12 Fotos direkt in diesem Ordner, Ebene 3");
}

TEST_CASE("the menu of a folder that is not shown offers to add it")
{
    auto row = rowOf(0);
    CHECK(row.menu(1)
        == Commands { showOnly, addToSelection, makeRoot, divider, reveal, reloadTree });
    row.isRoot = true;
    CHECK(row.menu(1) == Commands { showOnly, addToSelection, divider, reveal, reloadTree });
}

TEST_CASE("the menu of a shown folder offers to remove it unless it is the only one")
{
    auto row = rowOf(0);
    row.isCurrent = true;
    CHECK(row.menu(1) == Commands { showOnly, makeRoot, divider, reveal, reloadTree });
    CHECK(row.menu(2)
        == Commands { showOnly, removeFromSelection, makeRoot, divider, reveal, reloadTree });
    row.isRoot = true;
    CHECK(row.menu(1) == Commands { showOnly, divider, reveal, reloadTree });
}

TEST_CASE("the menu's entries have these titles")
{
    CHECK(titleOf(showOnly) == "Nur diesen Ordner anzeigen");
    CHECK(titleOf(addToSelection) == "Zur Auswahl hinzufügen");
    CHECK(titleOf(removeFromSelection) == "Aus Auswahl entfernen");
    CHECK(titleOf(makeRoot) == "Als oberste Ebene festlegen");
    CHECK(titleOf(divider).empty());
    CHECK(titleOf(reveal) == "Im Finder zeigen");
    CHECK(titleOf(reloadTree) == "Ordnerbaum neu laden");
}

TEST_CASE("deep rows are moved less and less, so that the name keeps its room")
{
    for (double const width : { 150.0, 170.0, 230.0, 420.0 }) {
        CAPTURE(width);
        CHECK(FolderRow::indent(0, width) == 0);
        CHECK(FolderRow::indent(3, width) == doctest::Approx(3 * FolderRow::indent(1, width)));
        for (int level = 1; level <= 20; ++level)
            CHECK(FolderRow::indent(level, width) > FolderRow::indent(level - 1, width));
        CHECK(FolderRow::indent(1000, width) <= width / 2);
        CHECK(FolderRow::indent(1000, width) <= width - FolderRow::roomForName + 0.001);
    }
    CHECK(FolderRow::indent(3, 210) == 3 * FolderRow::indentPerLevel);
}
