#include "qt/sidebar/FolderTreeModel.h"
#include "qt/ports/FileUrlText.h"
#include "qt/window/PlainTip.h"
#include <algorithm>
#include <limits>
#include <utility>

namespace pixelhain {

namespace {

int rowsOf(std::size_t count)
{
    return static_cast<int>(
        std::min<std::size_t>(count, static_cast<std::size_t>(std::numeric_limits<int>::max())));
}

} // namespace

FolderTreeModel::FolderTreeModel(BrowserModel& model, SidebarPorts const& ports)
    : view_(model, ports, *this)
{
}

QModelIndex FolderTreeModel::indexOf(FolderNode const& node) const
{
    return createIndex(static_cast<int>(node.row()), 0, const_cast<FolderNode*>(&node));
}

FolderNode* FolderTreeModel::nodeAt(QModelIndex const& index)
{
    return static_cast<FolderNode*>(index.internalPointer());
}

QModelIndex FolderTreeModel::index(int row, int column, QModelIndex const& parent) const
{
    if (row < 0 || column != 0)
        return {};
    auto& view = const_cast<SidebarView&>(view_);
    if (!parent.isValid())
        return row == 0 && view.root() ? createIndex(0, 0, view.root()) : QModelIndex();
    auto const children = nodeAt(parent)->children();
    auto const at = static_cast<std::size_t>(row);
    return at < children.size() ? createIndex(row, 0, &children[at]) : QModelIndex();
}

QModelIndex FolderTreeModel::parent(QModelIndex const& child) const
{
    auto const* const above = child.isValid() ? nodeAt(child)->parent() : nullptr;
    return above ? indexOf(*above) : QModelIndex();
}

int FolderTreeModel::rowCount(QModelIndex const& parent) const
{
    if (!parent.isValid())
        return const_cast<SidebarView&>(view_).root() ? 1 : 0;
    return rowsOf(nodeAt(parent)->children().size());
}

int FolderTreeModel::columnCount(QModelIndex const&) const
{
    return 1;
}

bool FolderTreeModel::hasChildren(QModelIndex const& parent) const
{
    return parent.isValid() ? view_.isBranch(*nodeAt(parent)) : rowCount() > 0;
}

QVariant FolderTreeModel::data(QModelIndex const& index, int role) const
{
    if (!index.isValid())
        return {};
    auto const& node = *nodeAt(index);
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return shownText(node.name());
    case Qt::AccessibleDescriptionRole:
        return shownText(view_.row(node).spokenDetails(node.level()));
    case Qt::ToolTipRole:
        return plainTip(shownText(view_.row(node).helpText()));
    default:
        return {};
    }
}

QVariant FolderTreeModel::headerData(int, Qt::Orientation, int role) const
{
    return role == Qt::DisplayRole ? QVariant(shownText(SidebarView::header)) : QVariant();
}

void FolderTreeModel::treeWillChange()
{
    emit treeWillBeReplaced();
    beginResetModel();
}

void FolderTreeModel::treeDidChange()
{
    endResetModel();
}

void FolderTreeModel::childrenWillAppear(FolderNode& node, std::size_t count)
{
    isInserting_ = count > 0;
    if (isInserting_)
        beginInsertRows(indexOf(node), 0, rowsOf(count) - 1);
}

void FolderTreeModel::childrenDidAppear(FolderNode& node)
{
    if (std::exchange(isInserting_, false))
        endInsertRows();
    emit childrenAppeared(indexOf(node));
}

void FolderTreeModel::rowDidChange(FolderNode& node)
{
    auto const index = indexOf(node);
    emit dataChanged(index, index);
}

void FolderTreeModel::shownFoldersDidChange()
{
    emit shownFoldersChanged();
}

} // namespace pixelhain
