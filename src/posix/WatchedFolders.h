#pragma once
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace pixelhain {

/// The folders of one tree that are watched, each known by the number of its watch. A folder knows
/// its name and the folder above it, not its path, so a folder that is renamed takes along whatever
/// lies below it.
class WatchedFolders {
public:
    using Watch = int;
    static constexpr Watch none = -1;

    WatchedFolders() = default;
    WatchedFolders(WatchedFolders const&) = delete;
    WatchedFolders& operator=(WatchedFolders const&) = delete;

    /// Begins anew with the root; forgets everything else.
    void setRoot(Watch root, std::string_view path);

    /// Puts a folder, a new one or one that was detached, below `parent`. What was there under this
    /// name is detached. Does nothing for a folder that has its place, or below an unknown one.
    void attach(Watch watch, Watch parent, std::string_view name);

    /// Takes a folder with all below it from its place; it is still known, but has no path.
    void detach(Watch watch);

    /// Forgets one folder. Those below it are found by `takeDetached`.
    void forget(Watch watch);

    /// Forgets the detached folders and all below them, and tells which they were.
    [[nodiscard]] std::vector<Watch> takeDetached();

    [[nodiscard]] bool hasDetached() const { return hasDetached_; }
    [[nodiscard]] bool knows(Watch watch) const { return folders_.contains(watch); }
    [[nodiscard]] bool isAttached(Watch watch) const;
    [[nodiscard]] std::optional<Watch> find(Watch parent, std::string_view name) const;

    /// The path, unless this folder or one above it is detached or unknown.
    [[nodiscard]] std::optional<std::string> path(Watch watch) const;

    [[nodiscard]] Watch root() const { return root_; }
    [[nodiscard]] std::size_t count() const { return folders_.size(); }

private:
    struct Folder {
        Watch parent = none; ///< none: the root, or detached
        int children = 0; ///< folders whose parent this is
        std::string name; ///< the root's is its path
    };
    struct Place {
        Watch parent;
        std::string_view name;
    };
    // The places are found through the folders, so that no name is stored twice.
    struct HashPlace {
        using is_transparent = void;
        WatchedFolders const* owner;
        std::size_t operator()(Watch watch) const;
        std::size_t operator()(Place const& place) const;
    };
    struct SamePlace {
        using is_transparent = void;
        WatchedFolders const* owner;
        bool operator()(Watch a, Watch b) const { return a == b; }
        bool operator()(Place const& a, Watch b) const;
        bool operator()(Watch a, Place const& b) const { return (*this)(b, a); }
    };

    void leavePlace(Watch watch);
    bool reachesRoot(Watch watch, std::unordered_map<Watch, bool>& known) const;

    Watch root_ = none;
    bool hasDetached_ = false;
    std::unordered_map<Watch, Folder> folders_;
    std::unordered_set<Watch, HashPlace, SamePlace> places_ { 0, HashPlace { this },
        SamePlace { this } };
};

} // namespace pixelhain
