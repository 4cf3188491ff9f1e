#pragma once
#include "qt/window/CellPainter.h"
#include "qt/window/CellPictures.h"
#include "qt/window/SmoothScroll.h"
#include "window/GridView.h"
#include <QAbstractScrollArea>
#include <functional>
#include <optional>

namespace pixelhain {

class Background;
class BrowserModel;
class MainLoop;

/// The gallery on the screen: paints what GridView says, scrolls, and does nothing else. All
/// painting is in whole device pixels, pictures pixel by pixel.
class GridWidget final : public QAbstractScrollArea {
public:
    struct Services {
        BrowserModel& model;
        ThumbnailSource& thumbnails;
        Background& background;
        MainLoop& loop;
    };

    explicit GridWidget(Services const& services, QWidget* parent = nullptr);

    GridView const& view() const { return view_; }

    /// The scroll position in points.
    double top() const { return top_; }
    void scrollTo(double top);

    /// Whether every cell in view has been painted with its picture or placeholder, in its final
    /// size and with its captions.
    bool isComplete() const { return isComplete_; }
    bool hasShownPicture() const { return hasShownPicture_; }
    /// The same for what is kept ready around it.
    bool isIdle() const;

    /// Whether the caption of every picture in view tells its size.
    bool showsAllSizes() const;

    /// Called after each frame.
    std::function<void()> painted;

    /// To be called after every change of the model.
    void modelChanged();

protected:
    bool viewportEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    struct Anchor {
        FileUrl url;
        std::size_t index = 0;
        double offset = 0; ///< of its cell's top from the viewport's
    };

    double viewportHeight() const { return viewport()->height(); }
    void renewPainter();
    void layOut();
    void showCells();
    void showCell(std::size_t index);
    std::optional<Anchor> anchor() const;
    std::optional<std::size_t> indexOf(Anchor const& anchor) const;
    void updateScrollBar();
    void moveTo(double top);
    void scrollPixels(long long before, long long after);
    long long devicePixels(double points) const;
    CellPainter::Place placeOf(std::size_t index) const;
    void cellChanged(FileUrl const& url);
    void updateCell(std::size_t index);
    void glideTo(double goal);
    void paintCells(QPainter& painter, QRegion const& dirty);
    bool isEachInFinalState() const;
    bool showBadgeTip(QPoint position, QPoint globalPosition);

    Services services_;
    GridView view_;
    std::unique_ptr<CellPainter> painter_;
    CellPictures pictures_;
    SmoothScroll motion_;
    double top_ = 0;
    double barUnit_ = 1; ///< device pixels per step of the scroll bar
    bool isSettingBar_ = false;
    bool isComplete_ = false;
    bool hasShownPicture_ = false;
    std::optional<Anchor> first_; ///< the cell at the top after the last scroll
    LastSeen<std::vector<FileUrl>> shownFolders_;
};

} // namespace pixelhain
