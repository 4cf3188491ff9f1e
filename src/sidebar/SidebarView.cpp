#include "sidebar/SidebarView.h"
#include "base/Text.h"
#include "model/BrowserModel.h"
#include "ports/MainLoop.h"
#include "ports/Workspace.h"
#include <algorithm>
#include <iterator>
#include <utility>

namespace pixelhain {

SidebarView::SidebarView(BrowserModel& model, SidebarPorts const& ports, SidebarObserver& observer)
    : model_(model)
    , ports_(ports)
    , observer_(observer)
    , photoTest_(std::make_shared<PhotoTest>(ports.imageTypes))
    , unreported_(ports.loop, ports.background, ports.folderEvents,
          { [this] { return knownFolders(); }, [this] { return tools(); },
              [this] { model_.refreshTree(); }, photoTest_ })
{
    useFolders();
    rebuild();
}

SidebarView::~SidebarView() = default;

FolderTools SidebarView::tools() const
{
    return { ports_.files, ports_.textOrder, *photoTest_ };
}

void SidebarView::modelChanged()
{
    useFolders();
    rebuild();
    if (seenCounts_.changed(model_.countsVersion) && !isLoading_)
        rowsDrawn(drawn_);
}

void SidebarView::useFolders()
{
    if (!seenFolders_.changed(model_.folders))
        return;
    current_ = { model_.folders->begin(), model_.folders->end() };
    observer_.shownFoldersDidChange();
}

std::vector<FolderNode*> SidebarView::shownNodes()
{
    std::vector<FolderNode*> nodes;
    for (auto const& url : *model_.folders)
        if (auto* const node = find(url))
            nodes.push_back(node);
    return nodes;
}

FolderNode* SidebarView::find(FileUrl const& url)
{
    return root_ ? root_->find(url, ports_.textOrder) : nullptr;
}

FolderRow SidebarView::row(FolderNode const& node) const
{
    FolderRow row;
    row.name = node.name();
    row.path = displayText(node.url().path());
    row.isRoot = &node == root_.get();
    row.isCurrent = isCurrent(node);
    if (auto const state = rows_.find(&node); state != rows_.end())
        row.count = state->second.count;
    return row;
}

bool SidebarView::isBranch(FolderNode const& node) const
{
    if (node.loaded())
        return !node.children().empty();
    auto const state = rows_.find(&node);
    return state != rows_.end() && state->second.wasBranch;
}

std::vector<FolderNode*> SidebarView::openedWith(FolderNode& node)
{
    if (!node.loaded() || std::exchange(rows_[&node].wasOpened, true))
        return {};
    return node.leadingTo(*model_.folders, ports_.textOrder);
}

bool SidebarView::showsBelow(FolderNode const& node) const
{
    return std::ranges::any_of(*model_.folders,
        [&](FileUrl const& url) { return url != node.url() && url.isWithin(node.url()); });
}

void SidebarView::choose(std::span<FolderNode* const> nodes, Others others)
{
    std::vector<FileUrl> urls;
    for (auto const* node : nodes)
        urls.push_back(node->url());
    if (others == Others::keep)
        std::ranges::copy_if(*model_.folders, std::back_inserter(urls),
            [this](FileUrl const& url) { return !find(url); });
    if (urls.empty())
        return;
    ports_.loop.post([this, alive = std::weak_ptr(alive_), urls = std::move(urls)] {
        if (!alive.expired())
            model_.selectFolders(urls, FocusGallery::no);
    });
}

std::vector<FolderCommand> SidebarView::menu(FolderNode const& node) const
{
    return row(node).menu(model_.folders->size());
}

void SidebarView::perform(FolderCommand command, FileUrl const& url)
{
    auto folders = model_.folders.get();
    switch (command) {
    case FolderCommand::showOnly:
        return model_.selectFolders({ url }, FocusGallery::no);
    case FolderCommand::addToSelection:
        folders.push_back(url);
        return model_.selectFolders(std::move(folders), FocusGallery::no);
    case FolderCommand::removeFromSelection:
        std::erase(folders, url);
        return model_.selectFolders(std::move(folders), FocusGallery::no);
    case FolderCommand::makeRoot:
        return model_.setRoot(url, AlsoSelect::yes);
    case FolderCommand::divider:
        return;
    case FolderCommand::reveal:
        if (ports_.workspace)
            ports_.workspace->reveal(std::span(&url, 1));
        return;
    case FolderCommand::reloadTree:
        return model_.reload();
    }
}

void SidebarView::refresh()
{
    model_.refreshTree();
}

bool SidebarView::canGoUp() const
{
    return model_.canGoUp();
}

void SidebarView::goUp()
{
    model_.showParentFolder();
}

void SidebarView::openFolder()
{
    model_.chooseFolder();
}

} // namespace pixelhain
