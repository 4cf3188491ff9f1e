#pragma once
#include "base/FileUrl.h"
#include "base/Task.h"
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace pixelhain {

class BrowserModel;
class MainLoop;
class MainWindow;

/// The root content of the main window: what is shown where, what happens on a drop, and how the
/// model learns of its window. Lengths are points.
class ContentView {
public:
    static constexpr double minimumWidth = 640;
    static constexpr double minimumHeight = 420;
    static constexpr double defaultWidth = 1200;
    static constexpr double defaultHeight = 800;
    static constexpr double sidebarMinimumWidth = 170;
    static constexpr double sidebarIdealWidth = 230;
    static constexpr double sidebarMaximumWidth = 420;
    static constexpr double dropCornerRadius = 12;
    static constexpr double dropInset = 8;
    static constexpr double dropLineWidth = 4; ///< dashed, accent colour

    enum class Detail { noFolder, noPhotos, gallery };

    ContentView(BrowserModel& model, MainLoop& loop)
        : model_(model)
        , loop_(loop)
    {
    }

    /// What fills the detail area; the viewer lies over the gallery.
    [[nodiscard]] Detail detail() const;
    [[nodiscard]] bool showsViewer() const;
    [[nodiscard]] bool showsToolbar() const { return !showsViewer(); }
    [[nodiscard]] std::string title() const;

    /// "12 Fotos"; empty while no folder is shown.
    [[nodiscard]] std::string subtitle() const;

    /// To be called when the content first appears.
    void appeared();

    /// Has the keys passed to the model by what `install` gives, unless they are already.
    void monitorKeys(std::function<Task()> const& install);

    /// Hands the hosting window to the model, after the current turn of the loop, unless the model
    /// holds it already. The window outlives this or takes itself back with
    /// BrowserModel::setWindow.
    void hosted(MainWindow* window);

    /// Opens the first of the files let go over the window. False if there is none.
    [[nodiscard]] bool drop(std::span<FileUrl const> urls);

    bool dropTargeted = false; ///< a drag with files hovers over the window

private:
    BrowserModel& model_;
    MainLoop& loop_;
    std::shared_ptr<char> alive_ = std::make_shared<char>();
};

} // namespace pixelhain
