#pragma once
#include "base/Bitmap.h"
#include <QImage>

namespace pixelhain {

/// The bitmap's pixels as the toolkit's image, without a copy; opaque ones without alpha, so that
/// they are painted without blending.
[[nodiscard]] QImage imageOf(Bitmap const& bitmap);

/// The size at which a picture of `size` fills a square of `edge` pixels, its proportions kept.
[[nodiscard]] PixelSize drawnSize(PixelSize size, int edge);

/// `bitmap` as it is drawn in a square of `edge` device pixels: to be painted pixel by pixel.
/// Callable from any thread.
[[nodiscard]] QImage drawnPicture(Bitmap const& bitmap, int edge);

} // namespace pixelhain
