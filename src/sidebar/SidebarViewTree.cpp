#include "model/BrowserModel.h"
#include "ports/Background.h"
#include "sidebar/SidebarView.h"
#include <algorithm>
#include <utility>

namespace pixelhain {

// The tree is read anew as a whole and takes the old one's place when it is there, so that nothing
// flickers. Of another root nothing is known yet but its name, which is shown at once.
void SidebarView::rebuild()
{
    bool const otherRoot = seenRoot_.changed(model_.rootFolder);
    if (!seenTree_.changed(model_.treeVersion) && !otherRoot)
        return;
    if (otherRoot) {
        isLoading_ = false;
        loading_ = Task();
        carried_.clear();
        auto const& root = *model_.rootFolder;
        replace(root ? std::make_shared<FolderNode>(*root) : nullptr);
    }
    loadRoot();
}

void SidebarView::loadRoot()
{
    if (!root_)
        return;
    // A slow drive that changes all the time still gets to show something.
    mustLoadAgain_ = isLoading_;
    if (std::exchange(isLoading_, true))
        return;
    auto const load
        = [tools = tools(), held = photoTest_, url = root_->url(), shown = model_.folders.get()] {
              return Tree(loadTree(tools, url, shown));
          };
    loading_ = runThen(
        ports_.background, ports_.loop, Priority::userInteractive, load, [this](Tree tree) {
            isLoading_ = false;
            carryOver();
            replace(std::move(tree));
            if (std::exchange(mustLoadAgain_, false))
                loadRoot();
        });
}

// Counts and triangles of rows on the screen stay until they are known anew.
void SidebarView::carryOver()
{
    carried_.clear();
    for (auto* const node : drawn_) {
        auto& carried = carried_[node->url()];
        carried.wasBranch = isBranch(*node);
        if (auto const state = rows_.find(node); state != rows_.end())
            carried.count = state->second.count;
    }
}

void SidebarView::replace(Tree tree)
{
    observer_.treeWillChange();
    drawn_.clear();
    rows_.clear();
    unreported_.forget();
    auto old = std::exchange(root_, std::move(tree));
    observer_.treeDidChange();
    // Freeing a large tree takes longer than a frame.
    if (old)
        ports_.background.run(Priority::utility, [old = std::move(old)] {});
}

// Who scrolls far does not wait for all that was passed.
void SidebarView::rowsDrawn(std::vector<FolderNode*> nodes)
{
    std::unordered_set<FolderNode const*> const now(nodes.begin(), nodes.end());
    for (auto const* node : drawn_)
        if (auto const state = rows_.find(node); state != rows_.end() && !now.contains(node)) {
            if (state->second.isCounting)
                state->second.countsVersion = -1;
            state->second.isCounting = false;
            state->second.counting = Task();
            if (!node->loaded())
                state->second.listing = Task();
        }
    drawn_ = std::move(nodes);
    for (auto* const node : drawn_)
        lookAt(*node);
}

void SidebarView::lookAt(FolderNode& node)
{
    auto [place, isNew] = rows_.try_emplace(&node);
    auto& state = place->second;
    if (isNew)
        if (auto const carried = carried_.find(node.url()); carried != carried_.end()) {
            state.wasBranch = carried->second.wasBranch;
            state.count = carried->second.count;
            carried_.erase(carried);
        }
    if (!node.loaded() && !state.listing)
        list(node, state);
    if (state.countsVersion != model_.countsVersion)
        count(node, state);
}

void SidebarView::list(FolderNode& node, RowState& state)
{
    auto const list = [tools = tools(), held = photoTest_, url = node.url()] {
        return FolderNode::nodesFor(subfolderURLs(tools, url));
    };
    state.listing = runThen(ports_.background, ports_.loop, Priority::userInitiated, list,
        [this, &node](FolderNode::Children children) {
            auto const count = children.nodes.size();
            observer_.childrenWillAppear(node, count);
            node.load(std::move(children));
            observer_.childrenDidAppear(node);
        });
}

void SidebarView::count(FolderNode& node, RowState& state)
{
    state.countsVersion = model_.countsVersion;
    state.isCounting = true;
    auto const count = [tools = tools(), held = photoTest_, url = node.url()] {
        return directPhotoCount(tools, url);
    };
    state.counting = runThen(ports_.background, ports_.loop, Priority::utility, count,
        [this, &node](std::size_t photos) {
            auto& known = rows_[&node];
            known.isCounting = false;
            if (std::exchange(known.count, photos) != photos)
                observer_.rowDidChange(node);
        });
}

bool SidebarView::isComplete() const
{
    return !isLoading_ && std::ranges::all_of(drawn_, [this](FolderNode const* node) {
        auto const state = rows_.find(node);
        return state != rows_.end() && node->loaded() && !state->second.isCounting;
    });
}

std::vector<UnreportedFolders::Known> SidebarView::knownFolders() const
{
    std::vector<UnreportedFolders::Known> known;
    for (auto const* node : drawn_)
        if (node->loaded())
            known.push_back({ node->url(), node->namesHash() });
    return known;
}

} // namespace pixelhain
