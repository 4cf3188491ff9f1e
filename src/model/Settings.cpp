#include "model/Settings.h"
#include "ports/Preferences.h"
#include <algorithm>
#include <cmath>
#include <string>

namespace pixelhain {

namespace {

double inRange(double value, double least, double most, double otherwise)
{
    return std::isnan(value) ? otherwise : std::clamp(value, least, most);
}

} // namespace

double settings::thumbSizeInRange(double points)
{
    return inRange(points, minThumbSize, maxThumbSize, defaultThumbSize);
}

double settings::slideshowIntervalInRange(double seconds)
{
    return inRange(seconds, minSlideshowInterval, maxSlideshowInterval, defaultSlideshowInterval);
}

// A path with a NUL byte would silently name another file to the system.
std::optional<FileUrl> settings::storedPlace(std::string_view path)
{
    if (!path.starts_with('/') || path.find('\0') != std::string_view::npos)
        return std::nullopt;
    return FileUrl(path).standardized();
}

Settings Settings::read(Preferences const& preferences)
{
    Settings const defaults;
    auto const boolean = [&](std::string_view key, bool value) {
        return preferences.boolean(key).value_or(value);
    };
    auto const number = [&](std::string_view key, double value) {
        return preferences.number(key).value_or(value);
    };
    Settings read;
    read.sortKey = sortKeyFromRawValue(preferences.text(settings::sortKeyKey).value_or(""));
    read.ascending = boolean(settings::ascendingKey, defaults.ascending);
    read.includeSubfolders = boolean(settings::subfoldersKey, defaults.includeSubfolders);
    read.thumbSize = settings::thumbSizeInRange(number(settings::thumbSizeKey, defaults.thumbSize));
    read.showFilenames = boolean(settings::showFilenamesKey, defaults.showFilenames);
    read.showResolution = boolean(settings::showResolutionKey, defaults.showResolution);
    read.slideshowInterval = settings::slideshowIntervalInRange(
        number(settings::intervalKey, defaults.slideshowInterval));
    read.slideshowShuffle = boolean(settings::shuffleKey, defaults.slideshowShuffle);
    return read;
}

LastFolders LastFolders::read(Preferences const& preferences)
{
    auto paths = preferences.texts(settings::lastFoldersKey);
    if (!paths) {
        paths.emplace();
        if (auto const single = preferences.text(settings::lastFolderKey))
            paths->push_back(*single);
    }
    LastFolders last;
    for (auto const& path : *paths)
        if (auto const place = settings::storedPlace(path))
            last.folders.push_back(*place);
    if (auto const root = preferences.text(settings::lastRootKey))
        last.root = settings::storedPlace(*root);
    return last;
}

void LastFolders::write(Preferences& preferences, std::vector<FileUrl> const& folders)
{
    std::vector<std::string> paths;
    paths.reserve(folders.size());
    for (auto const& folder : folders)
        paths.emplace_back(folder.path());
    preferences.setText(settings::lastFolderKey, paths.empty() ? std::string() : paths.front());
    preferences.setTexts(settings::lastFoldersKey, paths);
}

void LastFolders::writeRoot(Preferences& preferences, FileUrl const& root)
{
    preferences.setText(settings::lastRootKey, std::string(root.path()));
}

std::optional<FileUrl> LastFolders::target(Preferences const& preferences)
{
    auto const path = preferences.text(settings::lastTargetKey);
    return path ? settings::storedPlace(*path) : std::nullopt;
}

void LastFolders::writeTarget(Preferences& preferences, FileUrl const& folder)
{
    preferences.setText(settings::lastTargetKey, std::string(folder.path()));
}

} // namespace pixelhain
