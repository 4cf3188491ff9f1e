#include "sidebar/FolderRow.h"
#include <algorithm>
#include <cmath>

namespace pixelhain {

namespace {

std::string directPhotos(std::size_t count)
{
    return (count == 1 ? "1 Foto" : std::to_string(count) + " Fotos") + " direkt in diesem Ordner";
}

} // namespace

std::string_view titleOf(FolderCommand command)
{
    switch (command) {
    case FolderCommand::showOnly:
        return "Nur diesen Ordner anzeigen";
    case FolderCommand::addToSelection:
        return "Zur Auswahl hinzufügen";
    case FolderCommand::removeFromSelection:
        return "Aus Auswahl entfernen";
    case FolderCommand::makeRoot:
        return "Als oberste Ebene festlegen";
    case FolderCommand::divider:
        break;
    case FolderCommand::reveal:
        return "Im Finder zeigen";
    case FolderCommand::reloadTree:
        return "Ordnerbaum neu laden";
    }
    return {};
}

std::string FolderRow::countText() const
{
    return count.value_or(0) > 0 ? std::to_string(*count) : std::string();
}

std::string FolderRow::helpText() const
{
    return count ? path + "\n" + directPhotos(*count) : path;
}

std::string FolderRow::spokenDetails(int level) const
{
    auto const depth = "Ebene " + std::to_string(level + 1);
    return count ? directPhotos(*count) + ", " + depth : depth;
}

std::vector<FolderCommand> FolderRow::menu(std::size_t shownFolders) const
{
    std::vector entries { FolderCommand::showOnly };
    if (!isCurrent)
        entries.push_back(FolderCommand::addToSelection);
    else if (shownFolders > 1)
        entries.push_back(FolderCommand::removeFromSelection);
    if (!isRoot)
        entries.push_back(FolderCommand::makeRoot);
    entries.insert(entries.end(),
        { FolderCommand::divider, FolderCommand::reveal, FolderCommand::reloadTree });
    return entries;
}

double FolderRow::indent(int level, double width)
{
    constexpr int equalSteps = 5;
    constexpr double equalShare = 0.8; // of what there is to move, in narrow columns
    double const most = std::clamp(width - roomForName, 2 * indentPerLevel, width * 0.42);
    double const step = std::min(indentPerLevel, most * equalShare / equalSteps);
    double const even = std::min(level, equalSteps) * step;
    double const room = std::max(step, most - equalSteps * step);
    double const deeper = std::max(0, level - equalSteps) * step;
    return even + room * (1 - std::exp(-deeper / room));
}

} // namespace pixelhain
