#pragma once
#include "qt/window/CellPictures.h"
#include "qt/window/Tones.h"
#include "window/GridView.h"
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

    /// Heights of the caption lines in points.
    GridView::LineHeights lineHeights() const;
    QColor ground() const { return tones_.ground(); }

    /// `points` in whole device pixels.
    int pixels(double points) const;

    /// The square that a picture is drawn into, in device pixels.
    int pictureEdge(double thumbSize) const;

    /// Draws the caption lines that are missing or out of date.
    void drawLines(ThumbnailCell const& cell, DrawnCell& drawn) const;
    bool hasLines(ThumbnailCell const& cell, DrawnCell const& drawn) const;

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
    void paintCircle(QPainter& painter, QPoint area, ThumbnailCell const& cell);
    QImage drawnBadge(QString const& label) const;
    struct LineStyle {
        QFont const& font;
        QString text;
        QColor color;
    };

    static bool isLine(DrawnLine const& line, LineStyle const& style);
    LineStyle nameStyle(ThumbnailCell const& cell) const;
    LineStyle resolutionStyle(ThumbnailCell const& cell) const;
    DrawnLine drawnLine(LineStyle const& style, double width) const;
    void drawDigitsEvenly(QPainter& painter, QString const& text, int width, int baseline) const;

    Tones tones_;
    double scale_;
    QFont nameFont_; ///< points
    QFont resolutionFont_;
    std::map<std::tuple<int, QRgb, QRgb, int>, QImage> backs_;
    std::map<QString, QImage> badges_;
};

} // namespace pixelhain
