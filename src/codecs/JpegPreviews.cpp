#include "codecs/JpegPreviews.h"
#include "base/Resample.h"
#include "codecs/BareJpeg.h"
#include "codecs/ColorConversion.h"
#include "codecs/DecodeLimits.h"
#include "codecs/HeadBytes.h"
#include "codecs/JpegDecoder.h"
#include <algorithm>
#include <array>

namespace pixelhain {

namespace {

constexpr std::size_t headBytes = 4096;

// Sets the bars that would give the preview the picture's shape; false if there are none.
bool findBars(ByteSource const& bytes, JpegPreview& preview, PixelSize picture)
{
    auto const bars = possibleBars(preview.stored, picture);
    if (!bars)
        return false;
    SliceBytes const slice(bytes, preview.range.offset, preview.range.length);
    auto const image = decodeJpeg(slice, 0, {});
    if (!image || image->bitmap.size != preview.stored)
        return false;
    preview.bars = *bars;
    return areBarsBlack(image->bitmap, *bars);
}

// Its own, else that of the picture that it is a preview of.
std::vector<std::uint8_t> profileOf(
    ByteSource const& bytes, JpegHeader const& header, std::vector<std::uint8_t> const& mainProfile)
{
    auto own = readJpegProfile(bytes, header);
    return own.empty() ? mainProfile : own;
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
    JpegPreview preview { range, own->traits.size, {} };
    if (hasSameShape(preview.stored, picture) || findBars(bytes, preview, picture))
        previews.push_back(preview);
}

} // namespace

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
    auto const profile = profileOf(head, *own, mainProfile);
    if (preview.bars == PreviewBars {})
        return decodeJpeg(head, maxPixel, profile);
    auto image = decodeJpeg(head, 0, profile);
    if (!image || image->bitmap.size != preview.stored)
        return {};
    image->bitmap = croppedBars(image->bitmap, preview.bars);
    auto const target = fittedSize(preview.shown(), maxPixel);
    if (!image->bitmap.isEmpty() && target != image->bitmap.size)
        image->bitmap = resampled(image->bitmap, target);
    if (image->bitmap.isEmpty())
        return {};
    return image;
}

CodedJpeg passableJpeg(
    ByteSource const& bytes, int maxPixel, std::vector<std::uint8_t> const& mainProfile)
{
    HeadBytes const head(bytes, headBytes);
    auto const header = readJpegHeader(head);
    if (!header)
        return {};
    auto const profile = profileOf(head, *header, mainProfile);
    auto jpeg = bareJpeg(head, maxPixel);
    // What a profile of another kind than the pixels does to them only a decoder knows.
    if (!jpeg || jpeg->size != header->traits.size || (jpeg->isGrey && !profile.empty())
        || changesColors(profile) || !isSoundJpeg(jpeg->bytes))
        return {};
    return { jpeg->size,
        std::make_shared<std::vector<std::uint8_t> const>(std::move(jpeg->bytes)) };
}

} // namespace pixelhain
