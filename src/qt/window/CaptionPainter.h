#pragma once
#include "qt/window/CellPictures.h"
#include "qt/window/Tones.h"
#include "window/GridView.h"
#include "window/ThumbnailCell.h"
#include <QFont>
#include <QImage>
#include <map>

class QPainter;

namespace pixelhain {

/// Draws the lines below a cell's picture, each once, as opaque images that are then only copied.
class CaptionPainter {
public:
    CaptionPainter(Tones const& tones, QFont const& font, double scale);

    /// In points.
    GridView::LineHeights lineHeights() const;

    /// Draws the lines that are missing or out of date. Marked photos have their names in the
    /// accent, as far as that can be read.
    void draw(ThumbnailCell const& cell, DrawnCell& drawn);
    bool isDrawn(ThumbnailCell const& cell, DrawnCell const& drawn) const;

private:
    bool isNameDrawn(ThumbnailCell const& cell, DrawnLine const& line) const;
    bool isResolutionDrawn(ThumbnailCell const& cell, DrawnLine const& line) const;
    int width(ThumbnailCell const& cell) const;
    QColor nameColor(ThumbnailCell const& cell) const;
    QImage emptyLine(int width, QFont const& font) const;
    QImage drawnName(ThumbnailCell const& cell) const;
    QImage drawnResolution(ThumbnailCell const& cell);
    void drawDigitsEvenly(QPainter& painter, QString const& text) const;

    Tones tones_;
    QColor markedName_;
    double scale_;
    QFont nameFont_; ///< points
    QFont resolutionFont_;
    std::map<std::pair<QString, int>, QImage> resolutions_; ///< most photos of a camera share one
};

} // namespace pixelhain
