#pragma once
#include "qt/viewer/ViewerWidget.h"
#include "qt/window/GridWidget.h"
#include "window/ContentView.h"
#include <QWidget>
#include <functional>

class QMimeData;
class QSplitter;
class QStackedWidget;

namespace pixelhain {

class EmptyStateWidget;
class SidebarWidget;
class StatusBarWidget;
class ToolbarWidget;
struct SidebarPorts;

/// The content of the main window: the toolbar; below it a column for the folders, and beside that
/// the gallery or an empty state above the status bar; the viewer over all of it while a photo is
/// open. Takes files that are dropped on it.
class ContentWidget final : public QWidget {
public:
    ContentWidget(GridWidget::Services const& services, SidebarPorts const& sidebar,
        QWidget* parent = nullptr);

    ContentView& view() { return view_; }
    GridWidget& grid() { return *grid_; }
    GridWidget const& grid() const { return *grid_; }
    SidebarWidget& sidebar() { return *sidebar_; }
    SidebarWidget const& sidebar() const { return *sidebar_; }
    ToolbarWidget& toolbar() { return *toolbar_; }

    /// Has photos shown large by a viewer from now on; without one they are not.
    void addViewer(ViewerWidget::Services const& services);
    ViewerWidget* viewer() { return viewer_; }
    ViewerWidget const* viewer() const { return viewer_; }

    /// Gives the keyboard to the gallery, or to what stands in its place for now.
    void focusDetail();

    bool showsSidebar() const;
    void toggleSidebar();
    std::function<void()> sidebarToggled; ///< called when it was shown or hidden

    /// How wide the folders' column is, or will be when it shows again.
    int sidebarWidth() const;
    void setSidebarWidth(int width);
    /// Called when the user made the column wider or narrower.
    std::function<void()> sidebarResized;

    /// To be called after every change of the model.
    void modelChanged();

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void goOnInGallery();
    void setDropTargeted(bool targeted);

    BrowserModel& model_;
    ContentView view_;
    // First what measures no text: the fonts may still be on their way.
    SidebarWidget* sidebar_;
    GridWidget* grid_;
    ToolbarWidget* toolbar_;
    QSplitter* columns_;
    int sidebarWidth_ = static_cast<int>(ContentView::sidebarIdealWidth);
    QStackedWidget* detail_;
    EmptyStateWidget* empty_;
    StatusBarWidget* statusBar_;
    ViewerWidget* viewer_ = nullptr;
    QWidget* dropHighlight_;
};

} // namespace pixelhain
