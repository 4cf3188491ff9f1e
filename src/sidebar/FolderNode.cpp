#include "sidebar/FolderNode.h"
#include "base/Text.h"
#include "ports/TextOrder.h"
#include "sidebar/FolderListing.h"
#include <algorithm>
#include <utility>

namespace pixelhain {

namespace {

// The child of `folder` at or above `url`, which lies below `folder`.
FileUrl firstStep(FileUrl const& folder, FileUrl const& url)
{
    auto const path = url.path();
    auto const begin = folder.path().size() + (folder.path().ends_with('/') ? 0 : 1);
    return FileUrl(path.substr(0, path.find('/', begin)));
}

} // namespace

FolderNode::FolderNode(FileUrl const& url)
    : url_(url.standardized())
{
}

std::string FolderNode::name() const
{
    auto const name = url_.name();
    return displayText(name.empty() ? url_.path() : name);
}

std::size_t FolderNode::row() const
{
    return parent_ ? static_cast<std::size_t>(this - parent_->children_.data()) : 0;
}

int FolderNode::level() const
{
    int level = 0;
    for (auto const* above = parent_; above; above = above->parent_)
        ++level;
    return level;
}

FolderNode::Children FolderNode::nodesFor(std::vector<FileUrl> urls)
{
    Children children;
    children.namesHash = hashOfNames(urls);
    children.nodes.reserve(urls.size());
    for (auto& url : urls)
        children.nodes.push_back(FolderNode(std::move(url), Listed {}));
    return children;
}

void FolderNode::load(Children children)
{
    if (std::exchange(loaded_, true))
        return;
    children_ = std::move(children.nodes);
    namesHash_ = children.namesHash;
    for (auto& child : children_)
        child.parent_ = this;
}

FolderNode* FolderNode::child(FileUrl const& url, TextOrder const& order)
{
    auto const precedes = [&](FolderNode const& node, FileUrl const& sought) {
        auto const named = order.compare(node.url_.name(), sought.name());
        return named == 0 ? node.url_ < sought : named < 0;
    };
    auto const at = std::lower_bound(children_.begin(), children_.end(), url, precedes);
    return at != children_.end() && at->url_ == url ? &*at : nullptr;
}

FolderNode* FolderNode::find(FileUrl const& url, TextOrder const& order)
{
    auto* node = url.isWithin(url_) ? this : nullptr;
    while (node && node->url_ != url)
        node = node->child(firstStep(node->url_, url), order);
    return node;
}

std::vector<FolderNode*> FolderNode::leadingTo(
    std::span<FileUrl const> folders, TextOrder const& order)
{
    std::vector<FolderNode*> leading;
    for (auto const& folder : folders) {
        if (folder == url_ || !folder.isWithin(url_))
            continue;
        auto const step = firstStep(url_, folder);
        if (step == folder)
            continue;
        if (auto* const next = child(step, order))
            leading.push_back(next);
    }
    std::ranges::sort(leading);
    leading.erase(std::unique(leading.begin(), leading.end()), leading.end());
    return leading;
}

namespace {

void loadAlong(FolderNode& node, FolderTools const& tools, std::span<FileUrl const> shown)
{
    node.load(FolderNode::nodesFor(subfolderURLs(tools, node.url())));
    for (auto* const next : node.leadingTo(shown, tools.textOrder))
        loadAlong(*next, tools, shown);
}

} // namespace

std::unique_ptr<FolderNode> loadTree(
    FolderTools const& tools, FileUrl const& root, std::span<FileUrl const> shown)
{
    auto node = std::make_unique<FolderNode>(root);
    loadAlong(*node, tools, shown);
    return node;
}

} // namespace pixelhain
