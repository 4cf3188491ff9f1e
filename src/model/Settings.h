#pragma once
#include "base/FileUrl.h"
#include "model/SortKey.h"
#include <optional>
#include <string_view>
#include <vector>

namespace pixelhain {

class Preferences;

/// The keys under which the settings are stored, and the range of each number. People edit the
/// file by hand: what cannot be used never reaches a field.
namespace settings {
inline constexpr std::string_view sortKeyKey = "sortKey";
inline constexpr std::string_view ascendingKey = "ascending";
inline constexpr std::string_view subfoldersKey = "subfolders";
inline constexpr std::string_view thumbSizeKey = "thumbSize";
inline constexpr std::string_view showFilenamesKey = "showFilenames";
inline constexpr std::string_view showResolutionKey = "showResolution";
inline constexpr std::string_view intervalKey = "interval";
inline constexpr std::string_view shuffleKey = "shuffle";
inline constexpr std::string_view lastFolderKey = "lastFolder";
inline constexpr std::string_view lastFoldersKey = "lastFolders";
inline constexpr std::string_view lastRootKey = "lastRoot";
inline constexpr std::string_view recentFoldersKey = "recentFolders";
inline constexpr std::string_view lastTargetKey = "lastTarget"; ///< of moving and copying

/// Points: the range of the toolbar's slider.
inline constexpr double minThumbSize = 80;
inline constexpr double maxThumbSize = 400;
inline constexpr double defaultThumbSize = 170;

/// Seconds. The menu offers 2 to 20; a file edited by hand may go further, but below half a
/// second pictures would be decoded faster than anyone can look, and a slide that stays longer
/// than an hour is a mistyped number.
inline constexpr double minSlideshowInterval = 0.5;
inline constexpr double maxSlideshowInterval = 3600;
inline constexpr double defaultSlideshowInterval = 4;

/// `points` brought into the range; the default for what is no number.
[[nodiscard]] double thumbSizeInRange(double points);
[[nodiscard]] double slideshowIntervalInRange(double seconds);

/// The place that a stored text names; nothing if that is no absolute path.
[[nodiscard]] std::optional<FileUrl> storedPlace(std::string_view path);
} // namespace settings

/// The settings as they were stored; where a value is absent or of another type, its default.
struct Settings {
    SortKey sortKey = SortKey::name;
    bool ascending = true;
    bool includeSubfolders = false;
    double thumbSize = settings::defaultThumbSize;
    bool showFilenames = true;
    bool showResolution = true;
    double slideshowInterval = settings::defaultSlideshowInterval;
    bool slideshowShuffle = false;

    [[nodiscard]] static Settings read(Preferences const& preferences);
};

/// The folders that were shown last, and the top of their tree; only well-formed absolute paths,
/// standardized. Whether they still exist is not known.
struct LastFolders {
    std::vector<FileUrl> folders;
    std::optional<FileUrl> root;

    [[nodiscard]] static LastFolders read(Preferences const& preferences);
    static void write(Preferences& preferences, std::vector<FileUrl> const& folders);
    static void writeRoot(Preferences& preferences, FileUrl const& root);

    /// The folder that photos were last moved or copied to.
    [[nodiscard]] static std::optional<FileUrl> target(Preferences const& preferences);
    static void writeTarget(Preferences& preferences, FileUrl const& folder);
};

} // namespace pixelhain
