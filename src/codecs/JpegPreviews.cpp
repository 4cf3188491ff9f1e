#include "codecs/JpegPreviews.h"
#include "base/Resample.h"
#include "codecs/DecodeLimits.h"
#include "codecs/HeadBytes.h"
#include "codecs/JpegDecoder.h"
#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace pixelhain {

namespace {

constexpr std::size_t headBytes = 4096;
// Letterboxed thumbnails are those of 160 × 120 and their like.
constexpr int largestWithBars = 640;

bool isNearBlack(Bitmap const& bitmap, int left, int top, int width, int height)
{
    constexpr std::uint64_t level = 24;
    std::uint64_t sum = 0;
    for (int y = top; y < top + height; ++y) {
        auto const* at = bitmap.row(y) + std::ptrdiff_t(left) * 4;
        for (int x = 0; x < width; ++x, at += 4)
            sum += static_cast<std::uint64_t>(std::max({ at[0], at[1], at[2] }));
    }
    return sum <= level * static_cast<std::uint64_t>(width) * static_cast<unsigned>(height);
}

// Sets the bars that would give the preview the picture's shape; false if there are none.
bool findBars(ByteSource const& bytes, JpegPreview& preview, PixelSize picture)
{
    auto const size = preview.stored;
    if (size.longestSide() > largestWithBars)
        return false;
    auto const high = double(size.width) * picture.height / picture.width;
    auto const wide = double(size.height) * picture.width / picture.height;
    if (high < size.height)
        preview.cropY = static_cast<int>(std::ceil((size.height - high) / 2));
    else
        preview.cropX = static_cast<int>(std::ceil((size.width - wide) / 2));
    auto const shown = preview.shown();
    if (shown.width < 16 || shown.height < 16 || !hasSameShape(shown, picture))
        return false;
    SliceBytes const slice(bytes, preview.range.offset, preview.range.length);
    auto const image = decodeJpeg(slice, 0, {});
    if (!image || image->bitmap.size != size)
        return false;
    auto const& bitmap = image->bitmap;
    // The innermost line may be half picture.
    auto const bar = std::max(preview.cropX, preview.cropY) - 1;
    if (bar < 1)
        return true;
    if (preview.cropY > 0)
        return isNearBlack(bitmap, 0, 0, size.width, bar)
            && isNearBlack(bitmap, 0, size.height - bar, size.width, bar);
    return isNearBlack(bitmap, 0, 0, bar, size.height)
        && isNearBlack(bitmap, size.width - bar, 0, bar, size.height);
}

void addPreview(
    ByteSource const& bytes, ByteRange range, PixelSize picture, std::vector<JpegPreview>& previews)
{
    if (range.length < 4 || range.offset >= bytes.size()
        || range.length > bytes.size() - range.offset)
        return;
    SliceBytes const slice(bytes, range.offset, range.length);
    HeadBytes const head(slice, headBytes);
    if (!startsWith(head.head(), "\xFF\xD8"))
        return;
    auto const own = readJpegHeader(head);
    if (!own || !isWithinLimits(own->traits.size))
        return;
    JpegPreview preview { range, own->traits.size };
    if (hasSameShape(preview.stored, picture) || findBars(bytes, preview, picture))
        previews.push_back(preview);
}

std::optional<DecodedImage> withoutBars(DecodedImage image, JpegPreview const& preview)
{
    auto cropped = Bitmap::allocate(preview.shown(), image.bitmap.isOpaque);
    if (cropped.isEmpty() || image.bitmap.size != preview.stored)
        return {};
    for (int y = 0; y < cropped.size.height; ++y) {
        std::memcpy(cropped.row(y),
            image.bitmap.row(y + preview.cropY) + std::ptrdiff_t(preview.cropX) * 4,
            static_cast<std::size_t>(cropped.size.width) * 4);
    }
    image.bitmap = std::move(cropped);
    return image;
}

} // namespace

bool hasSameShape(PixelSize preview, PixelSize picture)
{
    auto const across = double(preview.width) * picture.height;
    auto const down = double(preview.height) * picture.width;
    auto const tolerance
        = std::max(0.02 * down, 0.75 * std::max(double(picture.height), double(picture.width)));
    return std::abs(across - down) <= tolerance;
}

std::vector<JpegPreview> findJpegPreviews(ByteSource const& bytes, PhotoTraits const& traits)
{
    std::vector<JpegPreview> previews;
    for (auto const& range : std::array { traits.exif.thumbnail, traits.exif.makerPreview }) {
        if (range)
            addPreview(bytes, *range, traits.size, previews);
    }
    for (auto const& picture : traits.pictures) {
        if (picture.kind == MultiPicture::Kind::preview)
            addPreview(bytes, picture.range, traits.size, previews);
    }
    std::ranges::stable_sort(
        previews, {}, [](JpegPreview const& preview) { return preview.shown().longestSide(); });
    return previews;
}

std::optional<DecodedImage> decodeJpegPreview(ByteSource const& bytes, JpegPreview const& preview,
    int maxPixel, std::vector<std::uint8_t> const& mainProfile)
{
    SliceBytes const slice(bytes, preview.range.offset, preview.range.length);
    HeadBytes const head(slice, headBytes);
    auto const own = readJpegHeader(head);
    if (!own)
        return {};
    auto profile = readJpegProfile(head, *own);
    if (profile.empty())
        profile = mainProfile;
    if (preview.cropX == 0 && preview.cropY == 0)
        return decodeJpeg(head, maxPixel, profile);
    auto image = decodeJpeg(head, 0, profile);
    if (image)
        image = withoutBars(*std::move(image), preview);
    auto const target = fittedSize(preview.shown(), maxPixel);
    if (image && target != image->bitmap.size) {
        image->bitmap = resampled(image->bitmap, target);
        if (image->bitmap.isEmpty())
            return {};
    }
    return image;
}

} // namespace pixelhain
