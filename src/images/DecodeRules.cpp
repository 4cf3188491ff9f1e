#include "images/DecodeRules.h"
#include "base/Orientation.h"
#include "base/Resample.h"
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace pixelhain {

namespace {

bool holdsPixels(std::optional<DecodedImage> const& image)
{
    return image && !image->bitmap.isEmpty();
}

// A damaged preview gives way to the next larger one. The picture's size is asked for only where
// the threshold leaves it open.
std::optional<DecodedImage> decodeAcceptedPreview(ImageSource& source, int maxPixel)
{
    auto const accepts = [&](PixelSize preview) {
        return acceptsPreview(preview, maxPixel, std::nullopt)
            || acceptsPreview(preview, maxPixel, source.pixelSize());
    };
    auto const sizes = source.previews();
    for (std::size_t index = 0; index < sizes.size(); ++index) {
        if (!accepts(sizes[index]))
            continue;
        auto image = source.decodePreview(index, maxPixel);
        if (holdsPixels(image) && accepts(image->bitmap.size))
            return image;
    }
    return std::nullopt;
}

// The smallest preview that is large enough, else the next smaller ones. One with many more pixels
// than are wanted takes as long as the picture itself.
std::optional<DecodedImage> decodeBestPreview(ImageSource& source, int maxPixel)
{
    constexpr int mostTimes = 2;
    auto const sizes = source.previews();
    auto const isEnough = [&](PixelSize size) { return acceptsPreview(size, maxPixel, {}); };
    auto const found = std::ranges::find_if(sizes, isEnough);
    auto index = static_cast<std::size_t>(found - sizes.begin());
    if (found != sizes.end() && found->longestSide() <= mostTimes * maxPixel)
        ++index;
    while (index-- > 0)
        if (auto image = source.decodePreview(index, maxPixel); holdsPixels(image))
            return image;
    return std::nullopt;
}

DecodedPicture finish(
    DecodedImage const& image, int maxPixel, bool isScaledRead, PixelOrigin origin)
{
    if (mustRedraw(image, maxPixel, isScaledRead))
        if (auto redrawn = redrawScaled(image.bitmap, maxPixel); !redrawn.isEmpty())
            return { std::move(redrawn), origin };
    return { image.bitmap, origin };
}

} // namespace

int previewThreshold(int maxPixel)
{
    return static_cast<int>(maxPixel * 0.75);
}

bool acceptsPreview(PixelSize preview, int maxPixel, std::optional<PixelSize> const& picture)
{
    constexpr int tolerance = 2;
    auto const longest = std::min(preview.longestSide(), maxPixel);
    return longest >= previewThreshold(maxPixel)
        || (picture && longest >= picture->longestSide() - tolerance);
}

std::optional<DecodedPicture> decodeImage(
    ImageSource& source, int maxPixel, EmbeddedPreviews previews)
{
    if (previews != EmbeddedPreviews::ignore) {
        auto const preview = previews == EmbeddedPreviews::only
            ? decodeBestPreview(source, maxPixel)
            : decodeAcceptedPreview(source, maxPixel);
        if (preview)
            return finish(*preview, maxPixel, true, PixelOrigin::embedded);
        if (previews == EmbeddedPreviews::only)
            return std::nullopt;
    }
    if (auto const image = source.decode(maxPixel); holdsPixels(image)) {
        auto const origin = image->wasReduced ? PixelOrigin::scaled : PixelOrigin::full;
        return finish(*image, maxPixel, true, origin);
    }
    if (auto const image = source.decodeWhole(); holdsPixels(image))
        return finish(*image, maxPixel, false, PixelOrigin::full);
    return std::nullopt;
}

std::optional<DecodedPicture> passedJpeg(
    ImageSource& source, int maxPixel, EmbeddedPreviews previews)
{
    auto const passed = [](CodedJpeg jpeg, PixelOrigin origin) -> std::optional<DecodedPicture> {
        if (!jpeg)
            return std::nullopt;
        return DecodedPicture { {}, origin, std::move(jpeg) };
    };
    auto const picture = source.pixelSize();
    if (previews == EmbeddedPreviews::prefer) {
        auto const sizes = source.previews();
        for (std::size_t index = 0; index < sizes.size(); ++index)
            if (acceptsPreview(sizes[index], maxPixel, picture))
                return passed(source.codedPreview(index, maxPixel), PixelOrigin::embedded);
    }
    if (!picture || picture->longestSide() > maxPixel)
        return std::nullopt;
    return passed(source.codedPicture(maxPixel), PixelOrigin::full);
}

std::optional<DecodedPicture> decodeFullImage(ImageSource& source)
{
    auto const size = source.pixelSize();
    if (!size)
        return std::nullopt;
    return decodeImage(source, size->longestSide(), EmbeddedPreviews::ignore);
}

ImageMeta readMeta(ImageSource& source)
{
    ImageMeta meta;
    meta.size = source.pixelSize();
    if (meta.size)
        meta.size = uprightSize(*meta.size, source.orientation());
    meta.isAnimated = isAnimatedType(source.typeIdentifier()) && source.frameCount() > 1;
    return meta;
}

// A damaged preview gives way to the next larger one.
Glance glanceAt(ImageSource& source, int maxPixel)
{
    Glance glance { readMeta(source) };
    auto const picture = source.pixelSize();
    auto const sizes = source.previews();
    for (std::size_t index = 0; index < sizes.size(); ++index) {
        if (acceptsPreview(sizes[index], maxPixel, picture)) {
            glance.isQuick = true;
            break;
        }
        if (!glance.embedded.isEmpty())
            continue;
        if (auto const image = source.decodePreview(index, maxPixel); holdsPixels(image))
            glance.embedded = image->bitmap;
    }
    return glance;
}

bool isAnimatedType(std::string_view typeIdentifier)
{
    constexpr std::array<std::string_view, 3> animatedTypes { "com.compuserve.gif", "public.png",
        "org.webmproject.webp" };
    return std::ranges::find(animatedTypes, typeIdentifier) != animatedTypes.end();
}

bool mustRedraw(DecodedImage const& image, int maxPixel, bool isScaledRead)
{
    return !isScaledRead || !image.hasColorSpace || image.isIndexed
        || image.bitmap.size.longestSide() > maxPixel;
}

PixelSize redrawnSize(PixelSize size, int maxPixel)
{
    auto const scale
        = std::min(static_cast<double>(maxPixel) / std::max(size.longestSide(), 1), 1.0);
    auto const scaled
        = [scale](int side) { return std::max(1, static_cast<int>(std::lround(side * scale))); };
    return { scaled(size.width), scaled(size.height) };
}

Bitmap redrawScaled(Bitmap const& bitmap, int maxPixel)
{
    auto const size = redrawnSize(bitmap.size, maxPixel);
    return size == bitmap.size ? bitmap : resampled(bitmap, size);
}

} // namespace pixelhain
