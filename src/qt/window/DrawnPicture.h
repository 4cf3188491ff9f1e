#pragma once
#include "base/Bitmap.h"
#include <QImage>

namespace pixelhain {

/// The bitmap's pixels as the toolkit's image, without a copy; opaque ones without alpha, so that
/// they are painted without blending.
[[nodiscard]] QImage imageOf(Bitmap const& bitmap);

/// The size at which a picture of `size` fills a square of `edge` pixels, its proportions kept.
[[nodiscard]] PixelSize drawnSize(PixelSize size, int edge);

/// `bitmap` at `size` device pixels, which it has or gets: to be painted pixel by pixel. Callable
/// from any thread.
[[nodiscard]] QImage drawnPicture(Bitmap const& bitmap, PixelSize size);

} // namespace pixelhain
