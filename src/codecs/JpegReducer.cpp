#include "codecs/JpegReducer.h"
#include "codecs/JpegDecoder.h"
#include "codecs/JpegPixels.h"
#include "codecs/JpegReduction.h"
#include "codecs/PictureBuilder.h"

namespace pixelhain {

std::optional<DecodedImage> reduceJpeg(ByteSource const& bytes, int maxPixel, ByteSpan profile)
{
    if (maxPixel <= 0)
        return {};
    JpegReduction reduction(bytes);
    auto const size = reduction.readFrame();
    if (!size || dctEighths(*size, maxPixel) != 1 || !reduction.readMeans())
        return {};
    auto const colors = reduction.colors();
    auto const isInk = colors == JpegColors::cmyk || colors == JpegColors::ycck;
    auto const format = !isInk       ? PixelFormat::opaque
        : reduction.hasAdobeMarker() ? PixelFormat::cmykInverted
                                     : PixelFormat::cmyk;
    auto const rows = eighthOf(*size);
    PictureBuilder builder;
    if (!builder.begin(rows, extentAt(*size, 1), fittedSize(*size, maxPixel), format))
        return {};
    JpegPixels pixels(reduction.planes(), colors, rows.width);
    for (int y = 0; y < rows.height; ++y) {
        pixels.writeRow(y, builder.nextRow());
        builder.commitRow();
    }
    DecodedImage image;
    image.bitmap
        = builder.finish(profile, colors == JpegColors::grey ? Channels::grey : Channels::color);
    image.wasReduced = true;
    if (image.bitmap.isEmpty())
        return {};
    return image;
}

} // namespace pixelhain
