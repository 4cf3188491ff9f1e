#include "model/BrowserModel.h"
#include "model/Settings.h"
#include "ports/Preferences.h"

namespace pixelhain {

void BrowserModel::setSearchText(std::string text)
{
    if (*searchText == text)
        return;
    searchText = std::move(text);
    applyFilter();
}

void BrowserModel::setSortKey(SortKey key)
{
    auto const changed = *sortKey != key;
    sortKey = key;
    ports_.preferences.setText(settings::sortKeyKey, std::string(rawValue(key)));
    if (changed)
        applyFilter();
}

void BrowserModel::setAscending(bool value)
{
    auto const changed = *ascending != value;
    ascending = value;
    ports_.preferences.setBoolean(settings::ascendingKey, value);
    if (changed)
        applyFilter();
}

void BrowserModel::setIncludeSubfolders(bool value)
{
    auto const changed = *includeSubfolders != value;
    includeSubfolders = value;
    ports_.preferences.setBoolean(settings::subfoldersKey, value);
    if (changed)
        startScan();
}

void BrowserModel::setThumbSize(double points)
{
    thumbSize = settings::thumbSizeInRange(points);
    ports_.preferences.setNumber(settings::thumbSizeKey, thumbSize);
}

void BrowserModel::setShowFilenames(bool value)
{
    showFilenames = value;
    ports_.preferences.setBoolean(settings::showFilenamesKey, value);
}

void BrowserModel::setShowResolution(bool value)
{
    showResolution = value;
    ports_.preferences.setBoolean(settings::showResolutionKey, value);
}

void BrowserModel::setSlideshowInterval(double seconds)
{
    slideshowInterval = settings::slideshowIntervalInRange(seconds);
    ports_.preferences.setNumber(settings::intervalKey, slideshowInterval);
}

void BrowserModel::setSlideshowShuffle(bool value)
{
    slideshowShuffle = value;
    ports_.preferences.setBoolean(settings::shuffleKey, value);
}

} // namespace pixelhain
