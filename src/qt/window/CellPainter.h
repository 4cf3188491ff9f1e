#pragma once
#include "qt/window/CaptionPainter.h"
#include "qt/window/CellPictures.h"
#include "qt/window/Tones.h"
#include "window/ThumbnailCell.h"
#include <QFont>
#include <QImage>
#include <QPainter>
#include <map>
#include <tuple>

namespace pixelhain {

/// Paints gallery cells in whole device pixels, from parts that are drawn once and then only
/// copied. Main thread only.
class CellPainter {
public:
    CellPainter(QPalette const& palette, QFont const& font, double scale);

    CaptionPainter& captions() { return captions_; }
    CaptionPainter const& captions() const { return captions_; }
    QColor ground() const { return tones_.ground(); }

    /// `points` in whole device pixels.
    int pixels(double points) const;

    /// The square that a picture is drawn into, in device pixels.
    int pictureEdge(double thumbSize) const;

    /// Where the parts of a cell lie, in device pixels of the painter's own system.
    struct Place {
        QPoint area;
        QPoint nameLine;
        QPoint resolutionLine;
    };

    void paint(
        QPainter& painter, Place const& place, ThumbnailCell const& cell, DrawnCell const* drawn);

private:
    QImage const& back(ThumbnailCell const& cell);
    void paintPicture(
        QPainter& painter, QPoint area, ThumbnailCell const& cell, DrawnCell const* drawn) const;
    void paintBadge(QPainter& painter, QPoint area, ThumbnailCell const& cell);
    static void paintLine(QPainter& painter, QPoint at, QImage const& line, int width);
    void paintCircle(QPainter& painter, QPoint area, ThumbnailCell const& cell);
    QImage drawnBadge(QString const& label) const;

    Tones tones_;
    double scale_;
    CaptionPainter captions_;
    QFont font_;
    std::map<std::tuple<int, QRgb, QRgb, int>, QImage> backs_;
    std::map<QString, QImage> badges_;
};

} // namespace pixelhain
