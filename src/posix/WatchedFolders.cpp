#include "posix/WatchedFolders.h"
#include <utility>

namespace pixelhain {

std::size_t WatchedFolders::HashPlace::operator()(Place const& place) const
{
    constexpr std::size_t spread = 0x9e3779b97f4a7c15;
    return std::hash<std::string_view> {}(place.name)
        ^ (static_cast<std::size_t>(place.parent) * spread);
}

std::size_t WatchedFolders::HashPlace::operator()(Watch watch) const
{
    auto const& folder = owner->folders_.at(watch);
    return (*this)(Place { folder.parent, folder.name });
}

bool WatchedFolders::SamePlace::operator()(Place const& a, Watch b) const
{
    auto const& folder = owner->folders_.at(b);
    return folder.parent == a.parent && folder.name == a.name;
}

void WatchedFolders::setRoot(Watch root, std::string_view path)
{
    places_.clear();
    folders_.clear();
    root_ = root;
    hasDetached_ = false;
    if (root != none)
        folders_[root].name = path;
}

void WatchedFolders::attach(Watch watch, Watch parent, std::string_view name)
{
    if (watch == root_ || isAttached(watch) || !knows(parent))
        return;
    if (auto const former = find(parent, name))
        detach(*former);
    auto& folder = folders_[watch];
    folder.parent = parent;
    folder.name = name;
    ++folders_.at(parent).children;
    places_.insert(watch);
}

void WatchedFolders::leavePlace(Watch watch)
{
    places_.erase(watch);
    auto& folder = folders_.at(watch);
    if (auto const parent = folders_.find(folder.parent); parent != folders_.end())
        --parent->second.children;
    folder.parent = none;
}

void WatchedFolders::detach(Watch watch)
{
    if (!isAttached(watch) || watch == root_)
        return;
    leavePlace(watch);
    hasDetached_ = true;
}

void WatchedFolders::forget(Watch watch)
{
    if (!knows(watch))
        return;
    if (watch != root_ && isAttached(watch))
        leavePlace(watch);
    hasDetached_ = hasDetached_ || folders_.at(watch).children > 0;
    folders_.erase(watch);
}

bool WatchedFolders::reachesRoot(Watch watch, std::unordered_map<Watch, bool>& known) const
{
    std::vector<Watch> way;
    bool reaches = false;
    for (auto at = watch;;) {
        if (at == root_) {
            reaches = true;
            break;
        }
        if (auto const seen = known.find(at); seen != known.end()) {
            reaches = seen->second;
            break;
        }
        auto const folder = folders_.find(at);
        if (folder == folders_.end())
            break;
        way.push_back(at);
        at = folder->second.parent;
    }
    for (auto const passed : way)
        known[passed] = reaches;
    return reaches;
}

std::vector<WatchedFolders::Watch> WatchedFolders::takeDetached()
{
    std::vector<Watch> gone;
    if (!std::exchange(hasDetached_, false))
        return gone;
    std::unordered_map<Watch, bool> known;
    for (auto const& [watch, folder] : folders_)
        if (!reachesRoot(watch, known))
            gone.push_back(watch);
    for (auto const watch : gone)
        forget(watch);
    hasDetached_ = false;
    return gone;
}

bool WatchedFolders::isAttached(Watch watch) const
{
    auto const folder = folders_.find(watch);
    return folder != folders_.end() && (watch == root_ || folder->second.parent != none);
}

std::optional<WatchedFolders::Watch> WatchedFolders::find(Watch parent, std::string_view name) const
{
    auto const place = places_.find(Place { parent, name });
    return place == places_.end() ? std::nullopt : std::optional(*place);
}

std::optional<std::string> WatchedFolders::path(Watch watch) const
{
    std::vector<std::string_view> parts;
    std::size_t length = 0;
    for (auto at = watch;;) {
        auto const folder = folders_.find(at);
        if (folder == folders_.end())
            return std::nullopt;
        parts.push_back(folder->second.name);
        length += folder->second.name.size() + 1;
        if (at == root_)
            break;
        at = folder->second.parent;
    }
    std::string path;
    path.reserve(length);
    for (auto part = parts.rbegin(); part != parts.rend(); ++part) {
        if (!path.empty() && !path.ends_with('/'))
            path += '/';
        path += *part;
    }
    return path;
}

} // namespace pixelhain
