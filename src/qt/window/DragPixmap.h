#pragma once
#include <QFont>
#include <QImage>
#include <QPalette>
#include <QPixmap>
#include <cstddef>

namespace pixelhain {

/// What follows the pointer while photos are dragged.
struct DragPicture {
    static constexpr double longestSide = 112; ///< of the picture, points

    QImage picture; ///< of the photo under the pointer; null if there is none
    std::size_t count = 1;
    double scale = 1; ///< device pixels per point
    QPalette palette;
    QFont font;

    /// The picture, and its number of photos in a corner if there are several.
    [[nodiscard]] QPixmap pixmap() const;
};

} // namespace pixelhain
