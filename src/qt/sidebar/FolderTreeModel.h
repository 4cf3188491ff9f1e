#pragma once
#include "sidebar/SidebarView.h"
#include <QAbstractItemModel>

namespace pixelhain {

/// The folder tree as the toolkit's views read it.
class FolderTreeModel final : public QAbstractItemModel, private SidebarObserver {
    Q_OBJECT

public:
    FolderTreeModel(BrowserModel& model, SidebarPorts const& ports);

    SidebarView& view() { return view_; }
    SidebarView const& view() const { return view_; }

    QModelIndex indexOf(FolderNode const& node) const;
    static FolderNode* nodeAt(QModelIndex const& index);

    QModelIndex index(int row, int column, QModelIndex const& parent = {}) const override;
    QModelIndex parent(QModelIndex const& child) const override;
    int rowCount(QModelIndex const& parent = {}) const override;
    int columnCount(QModelIndex const& parent = {}) const override;
    bool hasChildren(QModelIndex const& parent = {}) const override;
    QVariant data(QModelIndex const& index, int role = Qt::DisplayRole) const override;
    /// Nobody sees a header; screen readers read it.
    QVariant headerData(
        int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

signals:
    void treeWillBeReplaced();
    void childrenAppeared(QModelIndex const& parent);
    void shownFoldersChanged();

private:
    void treeWillChange() override;
    void treeDidChange() override;
    void childrenWillAppear(FolderNode& node, std::size_t count) override;
    void childrenDidAppear(FolderNode& node) override;
    void rowDidChange(FolderNode& node) override;
    void shownFoldersDidChange() override;

    bool isInserting_ = false;
    SidebarView view_;
};

} // namespace pixelhain
