#include "qt/window/DrawnPicture.h"
#include "base/Resample.h"
#include <algorithm>
#include <cmath>

namespace pixelhain {

QImage imageOf(Bitmap const& bitmap)
{
    if (bitmap.isEmpty())
        return {};
    auto* const owner = new std::shared_ptr<std::byte>(bitmap.pixels);
    auto const release = [](void* held) { delete static_cast<std::shared_ptr<std::byte>*>(held); };
    auto const format
        = bitmap.isOpaque ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied;
    return { static_cast<uchar const*>(bitmap.row(0)), bitmap.size.width, bitmap.size.height,
        static_cast<qsizetype>(bitmap.bytesPerRow), format, release, owner };
}

PixelSize drawnSize(PixelSize size, int edge)
{
    if (size.width <= 0 || size.height <= 0 || edge <= 0)
        return {};
    auto const scale = static_cast<double>(edge) / size.longestSide();
    auto const side = [&](int pixels) {
        return std::clamp(static_cast<int>(std::lround(pixels * scale)), 1, edge);
    };
    return { side(size.width), side(size.height) };
}

QImage drawnPicture(Bitmap const& bitmap, PixelSize size)
{
    return size == bitmap.size ? imageOf(bitmap) : imageOf(resampled(bitmap, size));
}

} // namespace pixelhain
