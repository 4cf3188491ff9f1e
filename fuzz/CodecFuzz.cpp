// One program per codec: PIXELHAIN_OPEN names its opener.
#include "codecs/BmpSource.h"
#include "codecs/ExrSource.h"
#include "codecs/GifSource.h"
#include "codecs/HeifSource.h"
#include "codecs/IcoSource.h"
#include "codecs/ImageCodecs.h"
#include "codecs/Jp2Source.h"
#include "codecs/JpegSource.h"
#include "codecs/JxlSource.h"
#include "codecs/PngSource.h"
#include "codecs/PnmSource.h"
#include "codecs/QoiSource.h"
#include "codecs/RadianceSource.h"
#include "codecs/RawSource.h"
#include "codecs/TgaSource.h"
#include "codecs/TiffSource.h"
#include "codecs/WebpSource.h"
#include "fuzz/Fuzz.h"

using namespace pixelhain;

namespace {

constexpr int smallSide = 48;
// Larger claims only cost time: what bounds them is the limits of a worker.
constexpr std::int64_t fewPixels = 1 << 16;

void checkSize(std::optional<DecodedImage> const& image, int maxPixel)
{
    if (!image)
        return;
    auto const& bitmap = image->bitmap;
    mustHold(!bitmap.isEmpty());
    mustHold(bitmap.size.width > 0 && bitmap.size.height > 0);
    mustHold(bitmap.bytesPerRow >= static_cast<std::size_t>(bitmap.size.width) * 4);
    mustHold(maxPixel == 0 || bitmap.size.longestSide() <= maxPixel);
    for (int y = 0; y < bitmap.size.height; ++y) {
        auto const* at = bitmap.row(y);
        for (int x = 0; x < bitmap.size.width; ++x, at += 4) {
            mustHold(!bitmap.isOpaque || at[3] == 255);
            mustHold(at[0] <= at[3] && at[1] <= at[3] && at[2] <= at[3]);
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t length)
{
    auto const source = PIXELHAIN_OPEN(std::make_unique<SpanBytes>(ByteSpan(data, length)));
    if (!source)
        return 0;
    auto const size = source->pixelSize();
    mustHold(source->orientation() >= 1 && source->orientation() <= 8);
    static_cast<void>(source->frameCount());
    auto const previews = source->previews();
    for (std::size_t i = 0; i < previews.size() && i < 3; ++i)
        checkSize(source->decodePreview(i, smallSide), smallSide);
    if (!size || std::int64_t { size->width } * size->height > fewPixels)
        return 0;
    checkSize(source->decode(smallSide), smallSide);
    checkSize(source->decodeWhole(), 0);
    return 0;
}
