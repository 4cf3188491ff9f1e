#pragma once
#include "base/Published.h"
#include "window/GridLayout.h"
#include "window/ScrollForecast.h"
#include "window/ThumbnailCell.h"
#include "window/ThumbnailCellLoads.h"
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace pixelhain {

class BrowserModel;

/// The gallery: lays out the model's photos, keeps a cell alive for each one in view and a row
/// around it, and says where to scroll. Whoever draws it calls `layOut` and `showRows` after every
/// change of the model, of its own size and of its scroll position; both are cheap.
class GridView {
public:
    static constexpr std::string_view name = "Galerie"; ///< said by screen readers
    static constexpr double spacing = GridLayout::spacing;
    static constexpr double padding = GridLayout::padding;
    static constexpr std::size_t rowsAhead = 1;

    /// A picture is begun if its cell would still be in view after so long, were the gallery to
    /// scroll on as it does; a look into the file, which takes much less, after a shorter time.
    /// After a leap over more than a view, which may be the first of many, only looks are begun for
    /// one beat.
    static constexpr int loadBeats = 6;
    static constexpr int glanceBeats = 4;

    struct LineHeights {
        double name = 0; ///< of the caption font, points
        double resolution = 0; ///< of the smaller caption font, points
    };

    /// `cellChanged` is called with the photo whose picture or metadata arrived.
    GridView(BrowserModel& model, ThumbnailSource& source, MainLoop& loop,
        std::function<void(FileUrl const&)> cellChanged);

    /// How far around the selection circle a click still means it, points.
    static constexpr double circleReach = 5;

    /// A place of the gallery as the pointer means it.
    struct Hit {
        std::size_t index = 0;
        bool isOnCircle = false;
        bool operator==(Hit const&) const = default;
    };

    /// What stays in view of a page that is turned, so that the eye keeps its place, points.
    static constexpr double pageOverlap = 40;

    /// Device pixels per point of the window's screen.
    double displayScale = 1;

    /// Lays the cells out in `width` points and tells the model the number of columns.
    void layOut(double width, LineHeights const& heights);
    GridLayout const& layout() const { return layout_; }

    /// Keeps cells for what is in view at scroll position `top`, drops the others and with them
    /// their loads. `goal` is where a movement that goes on by itself will end. The turn of cells
    /// in view comes before that of the row ahead, in the direction of the movement; nothing is
    /// begun for what only passes by.
    void showRows(double top, double height, double goal);
    void showRows(double top, double height) { showRows(top, height, top); }

    /// The photos that have cells: those in view and a row around it.
    IndexRange kept() const { return kept_; }

    /// The photos in view at least in part.
    IndexRange inView() const { return inView_; }

    /// Whether every photo in view has its picture or is known to have none.
    bool isComplete() const;

    /// What was read of their files for the pictures in view.
    [[nodiscard]] BytesRead bytesRead() const;

    /// Whether the model's list is as long as it was when it was laid out: views hear of a change
    /// only after it, and a frame or a click may come in between.
    bool isCurrent() const;

    /// What to draw for the photo at `index` of the model's items; nothing if there is none by now.
    ThumbnailCell cell(std::size_t index) const;

    /// The pointer's place in the scrolled content; none while it is elsewhere. Its cell shows the
    /// selection circle.
    void movePointer(std::optional<Point> point) { pointer_ = point; }
    [[nodiscard]] std::optional<std::size_t> hovered() const;

    /// What lies at a point of the scrolled content. A circle that is not shown is not hit.
    [[nodiscard]] std::optional<Hit> hit(Point point) const;

    /// The photos that are dragged along when the one at `index` is: all visible marked ones if it
    /// is one of them.
    [[nodiscard]] std::vector<FileUrl> dragged(std::size_t index) const;

    enum class PageTurn { back, forward };
    struct Page {
        std::ptrdiff_t cursorStep = 0; ///< for the model
        double top = 0;
    };

    /// Where a page key leads from scroll position `top`. A cursor in view is taken along, by as
    /// many whole rows as there is room for, in its column as far as that goes: the next arrow key
    /// goes on from what is seen. Elsewhere only the page turns.
    [[nodiscard]] Page page(PageTurn turn, double top, double height) const;

    /// Where the last changes of the model want the grid to be scrolled to: to the cursor's cell,
    /// or with it in the middle after the viewer was closed. Nothing if nothing asks for it.
    std::optional<double> scrollWish(double top, double height);

private:
    using Cells = std::unordered_map<FileUrl, std::unique_ptr<ThumbnailCellLoads>>;

    void keep(std::size_t index, Turn::Place turn, Cells& kept);
    [[nodiscard]] IndexRange viewAfter(int beats) const;
    [[nodiscard]] Turn::Wish wishFor(std::size_t index) const;
    [[nodiscard]] std::vector<std::size_t> inOrder() const;
    void takeTurns();

    BrowserModel& model_;
    ThumbnailSource& source_;
    std::function<void(FileUrl const&)> cellChanged_;
    GridLayout layout_;
    IndexRange inView_;
    IndexRange kept_;
    double height_ = 0;
    double goal_ = 0;
    ScrollForecast forecast_;
    bool hasNewTurns_ = false;
    std::optional<Point> pointer_;
    Cells cells_;
    LastSeen<FileUrl> first_;
    LastSeen<std::pair<std::optional<std::size_t>, int>> cursor_;
    LastSeen<bool> viewerOpen_;
};

} // namespace pixelhain
