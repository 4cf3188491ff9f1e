#pragma once
#include "window/MainToolbar.h"
#include <QWidget>
#include <functional>
#include <vector>

namespace pixelhain {

class SearchField;
class SizeSlider;
class ToolbarButton;
struct ToolbarWidths;

/// The bar at the top of the window. It keeps its place in a layout while it is hidden, so what
/// stands below it stays where it is.
class ToolbarWidget final : public QWidget {
public:
    ToolbarWidget(BrowserModel& model, ShareMenu* share, QWidget* parent);
    ~ToolbarWidget() override;

    MainToolbar const& toolbar() const { return toolbar_; }
    SizeSlider& slider() { return *slider_; }
    SearchField& search() { return *search_; }
    ToolbarButton& sidebarButton() { return *sidebar_; }
    ToolbarButton& folderButton() { return *folder_; }
    /// The button of an item other than the size.
    ToolbarButton* button(MainToolbar::Item item) const;
    ToolbarButton& moreButton() { return *more_; }

    /// Called when the keyboard is to go to the gallery.
    std::function<void()> leave;
    /// Called when it is to go on there in what was found.
    std::function<void()> goOn;

    /// Shows or hides the folders' column; to be followed by `sidebarToggled`.
    std::function<void()> toggleSidebar;
    void sidebarToggled(bool isShown);

    /// Gives the keyboard to the search field, its text marked; not while the bar is hidden.
    void focusSearch();

    /// To be called after every change of the model.
    void modelChanged();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    struct Part {
        MainToolbar::Item item;
        QWidget* widget;
    };

    ToolbarButton* addButton(std::string_view symbol, std::string_view title);
    void addItem(MainToolbar::Item item);
    void endEditing();
    ToolbarWidths widths() const;
    void layOut();

    MainToolbar toolbar_;
    ToolbarButton* sidebar_;
    ToolbarButton* folder_;
    QWidget* sizeRow_;
    SizeSlider* slider_;
    std::vector<Part> parts_;
    ToolbarButton* more_;
    SearchField* search_;
    std::size_t shown_ = 0; ///< of `parts_`
};

} // namespace pixelhain
