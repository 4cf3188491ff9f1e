#pragma once
#include "qt/sidebar/FolderTreeModel.h"
#include <QTreeView>
#include <optional>

class QMenu;

namespace pixelhain {

/// The tree of folders: what is drawn, chosen and opened there.
class FolderTreeWidget final : public QTreeView {
public:
    explicit FolderTreeWidget(FolderTreeModel& tree, QWidget* parent = nullptr);

    /// The nodes whose rows are on the screen.
    std::vector<FolderNode*> visibleNodes() const;

    /// Opens the context menu of a row as a click with the right button there does.
    QMenu* showMenu(QModelIndex const& index, QPoint const& at);

protected:
    void drawRow(QPainter* painter, QStyleOptionViewItem const& options,
        QModelIndex const& index) const override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void selectionChanged(
        QItemSelection const& selected, QItemSelection const& deselected) override;
    QItemSelectionModel::SelectionFlags selectionCommand(
        QModelIndex const& index, QEvent const* event) const override;

private:
    bool isOnTriangle(QModelIndex const& index, QPoint const& at) const;
    void remember();
    void restore();
    void open(QModelIndex const& index);
    void showShown();
    void follow();

    FolderTreeModel& tree_;
    FileUrl currentFolder_; ///< of the row that the keyboard is at, while the tree is replaced
    FileUrl topFolder_; ///< of the first row on the screen
    int topOffset_ = 0;
    std::optional<FileUrl> menuFolder_; ///< the one an open menu is about
    bool showsAny_ = false; ///< some folder that the gallery shows has a row
    bool isShowing_ = false; ///< the selection follows the model, not the user
    mutable bool keepsOthers_ = false;
};

} // namespace pixelhain
