#pragma once
#include "qt/sidebar/FolderTreeModel.h"
#include <QWidget>

class QLabel;

namespace pixelhain {

class FolderTreeWidget;
class SymbolButton;

/// The left column of the main window: a header with two buttons, the folder tree, and the button
/// that opens another folder.
class SidebarWidget final : public QWidget {
public:
    SidebarWidget(BrowserModel& model, SidebarPorts const& ports, QWidget* parent = nullptr);

    ~SidebarWidget() override;

    SidebarView& view() { return model_.view(); }
    SidebarView const& view() const { return model_.view(); }
    FolderTreeWidget& tree() { return *tree_; }

    QSize sizeHint() const override;

    /// To be called after every change of the model.
    void modelChanged();

protected:
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void useTones();

    FolderTreeModel model_;
    QLabel* header_;
    SymbolButton* refresh_;
    SymbolButton* goUp_;
    FolderTreeWidget* tree_;
    SymbolButton* open_;
};

} // namespace pixelhain
