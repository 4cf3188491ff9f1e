#pragma once
#include "qt/window/CellPainter.h"
#include "qt/window/CellPictures.h"
#include "qt/window/SmoothScroll.h"
#include "window/GridView.h"
#include "window/ThumbnailMenu.h"
#include <QAbstractScrollArea>
#include <functional>
#include <optional>

class QDrag;

namespace pixelhain {

class Background;
class BrowserModel;
class GalleryAccessible;
class MainLoop;

/// The gallery on the screen: paints what GridView says, scrolls, and passes clicks on. All
/// painting is in whole device pixels, pictures pixel by pixel.
class GridWidget final : public QAbstractScrollArea {
public:
    struct Services {
        BrowserModel& model;
        ThumbnailSource& thumbnails;
        Background& background;
        MainLoop& loop;
        ThumbnailMenu* menu = nullptr; ///< of the cells; none if null
    };

    explicit GridWidget(Services const& services, QWidget* parent = nullptr);

    BrowserModel& model() const { return services_.model; }
    GridView const& view() const { return view_; }

    static constexpr double pointsPerLine = 40; ///< that a line of the mouse wheel scrolls

    /// The scroll position in points.
    double top() const { return top_; }
    void scrollTo(double top);

    /// Whether every cell in view has been painted with its picture or placeholder, in its final
    /// size and with its captions.
    bool isComplete() const { return isComplete_; }
    bool hasShownPicture() const { return hasShownPicture_; }
    /// Whether something of every photo in view has been painted, if only the small picture that
    /// its file holds.
    bool isFilled() const { return isFilled_; }
    /// The same for what is kept ready around it.
    bool isIdle() const;

    /// Whether the caption of every picture in view tells its size.
    bool showsAllSizes() const;

    /// Called after each frame.
    std::function<void()> painted;

    /// Lets the user drag, and returns when that is over. Takes the drag.
    std::function<void(QDrag*)> runDrag;

    /// To be called after every change of the model.
    void modelChanged();

    /// The context menu of a photo, which is brought into view.
    void openMenu(std::size_t index);
    void moveCursorTo(std::size_t index);
    /// Brings the cursor's photo into view, if there is one.
    void showCursor();

protected:
    bool viewportEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void changeEvent(QEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    struct Anchor {
        PhotoItem photo;
        std::size_t index = 0;
        double offset = 0; ///< of its cell's top from the viewport's
    };

    struct Press {
        GridView::Hit hit;
        FileUrl photo;
        QPoint position;
    };

    double viewportHeight() const { return viewport()->height(); }
    void followSearch();
    void catchUp();
    void renewPainter();
    void layOut();
    void showCells();
    void showCell(std::size_t index);
    std::optional<Anchor> anchor() const;
    void updateScrollBar();
    void moveTo(double top);
    void scrollPixels(long long before, long long after);
    long long devicePixels(double points) const;
    CellPainter::Place placeOf(std::size_t index) const;
    void cellChanged(FileUrl const& url);
    void updateCell(std::size_t index);
    void glideTo(double goal);
    void goTo(double goal);
    void turnPage(GridView::PageTurn turn, Qt::KeyboardModifiers held);
    double scrollGoal() const { return motion_.isMoving() ? motion_.goal() : top_; }
    void paintCells(QPainter& painter, QRegion const& dirty);
    bool isEachInFinalState() const;
    bool isEachFilled() const;
    Point contentPoint(QPointF viewportPoint) const;
    void updateHover();
    void startDrag(Press const& press);
    void showMenu(std::size_t index, QPoint globalPosition);
    GalleryAccessible* accessible();
    bool showTip(QPoint position, QPoint globalPosition);
    bool isAboutBadge(std::size_t index, Point point) const;

    Services services_;
    GridView view_;
    std::unique_ptr<CellPainter> painter_;
    CellPictures pictures_;
    SmoothScroll motion_;
    double top_ = 0;
    double barUnit_ = 1; ///< device pixels per step of the scroll bar
    bool isSettingBar_ = false;
    bool isComplete_ = false;
    bool isFilled_ = false;
    bool hasShownPicture_ = false;
    std::optional<QPointF> pointer_; ///< in the viewport, while it is there
    std::optional<std::size_t> hovered_;
    std::optional<Press> pressed_; ///< the left button, on a cell
    std::optional<Anchor> first_; ///< the cell at the top after the last scroll
    LastSeen<std::vector<FileUrl>> shownFolders_;
    LastSeen<std::string> shownSearch_;
    std::optional<std::pair<std::optional<Anchor>, double>> beforeSearch_; ///< `first_`, `top_`
};

} // namespace pixelhain
