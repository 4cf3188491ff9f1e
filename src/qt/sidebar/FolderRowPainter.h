#pragma once
#include "qt/window/Tones.h"
#include "sidebar/FolderRow.h"
#include <QFont>
#include <QPainter>
#include <QPalette>
#include <QRectF>

namespace pixelhain {

/// What a row of the folder tree looks like besides its content.
struct FolderRowLook {
    QRect rect; ///< the whole width of the column
    int level = 0;
    bool isBranch = false;
    bool isOpen = false;
    bool isSelected = false;
    bool isMarked = false; ///< by the keyboard, without being selected
    bool hasMenu = false; ///< a menu about this row is open
    bool hasFocus = false;
};

/// Draws the rows of the folder tree. All measures are whole device pixels, so that lines are
/// sharp at every scale.
class FolderRowPainter {
public:
    FolderRowPainter(QFont const& font, QPalette const& palette, double scale);

    /// The same for every row.
    static int height(QFont const& font);

    /// Where a click opens and closes the row.
    static QRect triangle(QRect const& row, int level);

    void draw(QPainter& painter, FolderRow const& row, FolderRowLook const& look) const;

private:
    void drawGround(QPainter& painter, FolderRowLook const& look) const;
    void drawTriangle(QPainter& painter, FolderRowLook const& look, QColor const& color) const;
    double drawCount(QPainter& painter, QString const& text, FolderRowLook const& look) const;
    double snapped(double points) const;

    QFont font_;
    QFont rootFont_;
    QFont countFont_;
    Tones tones_;
    double scale_;
};

} // namespace pixelhain
