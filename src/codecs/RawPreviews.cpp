#include "codecs/RawPreviews.h"
#include "base/Orientation.h"
#include "base/Resample.h"
#include "codecs/ColorConversion.h"
#include "codecs/DecodeLimits.h"
#include "codecs/HeadBytes.h"
#include "codecs/JpegDecoder.h"
#include "codecs/JpegHeader.h"
#include "codecs/MakerNote.h"
#include "codecs/PictureBuilder.h"
#include "codecs/TiffReader.h"
#include <algorithm>
#include <array>

namespace pixelhain {

namespace {

constexpr std::size_t headBytes = 4096;
constexpr std::size_t mostPreviews = 32;

/// A JPEG whose first byte counts as 0xFF: some cameras overwrite it.
class JpegBytes final : public ByteSource {
public:
    JpegBytes(ByteSource const& whole, ByteRange range)
        : slice_(whole, range.offset, range.length)
    {
    }
    [[nodiscard]] std::uint64_t size() const override { return slice_.size(); }
    [[nodiscard]] std::size_t readAt(
        std::uint64_t offset, std::span<std::uint8_t> into) const override
    {
        auto const got = slice_.readAt(offset, into);
        if (offset == 0 && got > 0)
            into[0] = 0xFF;
        return got;
    }

private:
    SliceBytes slice_;
};

/// What a preview says about itself; it counts for more than what its file says.
struct OwnWords {
    int orientation = 0; ///< 0: none
    RawColors colors = RawColors::unknown;
};

OwnWords ownWords(ByteSource const& jpeg, JpegHeader const& header)
{
    constexpr std::uint16_t orientation = 0x0112;
    constexpr std::uint16_t exifDirectory = 0x8769;
    OwnWords words;
    auto const reader = header.exif ? TiffReader::open(jpeg, header.exif->offset) : std::nullopt;
    auto const first = reader ? reader->directory(reader->firstDirectory()) : std::nullopt;
    if (!first)
        return words;
    if (first->find(orientation) != nullptr)
        words.orientation = header.traits.exif.orientation;
    auto const at = reader->number(*first, exifDirectory);
    auto const exif = at ? reader->directory(*at) : std::nullopt;
    if (exif)
        words.colors = exifColors(*reader, *exif);
    return words;
}

// Lossless ones hold the sensor's data.
bool isPicture(JpegHeader const& header)
{
    constexpr std::array<std::uint8_t, 5> decodable { 0xC0, 0xC1, 0xC2, 0xC9, 0xCA };
    return header.precision == 8 && isWithinLimits(header.traits.size)
        && std::ranges::find(decodable, header.frame) != decodable.end();
}

bool isInside(ByteSource const& bytes, ByteRange range)
{
    return range.length >= 4 && range.offset < bytes.size()
        && range.length <= bytes.size() - range.offset;
}

Bitmap decodedForBars(ByteSource const& bytes, RawPreview const& preview)
{
    auto plain = preview;
    plain.bars = {};
    plain.orientation = 1;
    auto image = decodeRawPreview(bytes, plain, 0);
    return image && image->bitmap.size == preview.stored ? image->bitmap : Bitmap {};
}

class PreviewSearch {
public:
    PreviewSearch(ByteSource const& bytes, RawContents const& contents, PixelSize picture)
        : bytes_(bytes)
        , contents_(contents)
        , upright_(uprightSize(picture, contents.orientation))
    {
    }

    std::vector<RawPreview> search()
    {
        for (auto const& range : contents_.jpegs)
            addJpeg(range, true);
        for (auto const& plain : contents_.plains)
            addPlain(plain);
        std::ranges::stable_sort(
            found_, {}, [](RawPreview const& each) { return each.shown().longestSide(); });
        return std::move(found_);
    }

private:
    [[nodiscard]] bool isKnown(std::uint64_t offset) const
    {
        return std::ranges::any_of(
            found_, [&](RawPreview const& each) { return each.range.offset == offset; });
    }

    // A preview with a directory of its own may hold a smaller one.
    void addJpeg(ByteRange range, bool isOuter)
    {
        std::array<std::uint8_t, 3> start {};
        if (!isInside(bytes_, range) || isKnown(range.offset) || found_.size() >= mostPreviews
            || bytes_.readAt(range.offset, start) != start.size()
            || !startsWith(ByteSpan(start).subspan(1), "\xD8\xFF"))
            return;
        JpegBytes const jpeg(bytes_, range);
        HeadBytes const head(jpeg, headBytes);
        auto const header = readJpegHeader(head);
        if (!header || !isPicture(*header))
            return;
        auto const own = ownWords(head, *header);
        RawPreview preview;
        preview.range = range;
        preview.stored = header->traits.size;
        preview.colors = own.colors != RawColors::unknown ? own.colors : contents_.colors;
        place(preview, own.orientation);
        found_.push_back(preview);
        if (isOuter)
            addInner(range, header->traits);
    }

    void addInner(ByteRange outer, PhotoTraits const& traits)
    {
        auto const add = [&](ByteRange inner) {
            if (inner.length <= outer.length && inner.offset <= outer.length - inner.length)
                addJpeg({ outer.offset + inner.offset, inner.length }, false);
        };
        for (auto const& range : { traits.exif.thumbnail, traits.exif.makerPreview }) {
            if (range)
                add(*range);
        }
        for (auto const& picture : traits.pictures) {
            if (picture.kind == MultiPicture::Kind::preview)
                add(picture.range);
        }
    }

    void addPlain(PlainPicture const& plain)
    {
        RawPreview preview;
        preview.kind = RawPreview::Kind::plain;
        preview.range = { plain.offset,
            std::uint64_t(plain.size.width) * std::uint64_t(plain.size.height) * 3 };
        preview.stored = plain.size;
        preview.colors = contents_.colors;
        if (!isInside(bytes_, preview.range) || found_.size() >= mostPreviews)
            return;
        place(preview, 0);
        found_.push_back(preview);
    }

    // The preview's own word first, then the file's, then none: whichever gives it the picture's
    // shape.
    void place(RawPreview& preview, int ownOrientation)
    {
        auto const first = ownOrientation != 0 ? ownOrientation : contents_.orientation;
        preview.orientation = first;
        if (upright_.width <= 0) {
            preview.isWhole = true;
            return;
        }
        for (auto const orientation : { first, contents_.orientation, 1 }) {
            if (hasSameShape(uprightSize(preview.stored, orientation), upright_)) {
                preview.orientation = orientation;
                preview.isWhole = true;
                return;
            }
        }
        auto const bars = possibleBars(preview.stored, uprightSize(upright_, first));
        if (!bars)
            return;
        auto const bitmap = decodedForBars(bytes_, preview);
        if (bitmap.isEmpty() || !areBarsBlack(bitmap, *bars))
            return;
        preview.bars = *bars;
        preview.isWhole = true;
    }

    ByteSource const& bytes_;
    RawContents const& contents_;
    PixelSize upright_;
    std::vector<RawPreview> found_;
};

std::vector<std::uint8_t> profileOf(RawColors colors)
{
    if (colors != RawColors::adobeRgb)
        return {};
    constexpr double gamma = 563.0 / 256;
    return makeProfile(
        { { 0.3127, 0.3290 }, { 0.64, 0.33 }, { 0.21, 0.71 }, { 0.15, 0.06 } }, gamma);
}

std::optional<DecodedImage> decodeJpegOf(
    ByteSource const& bytes, RawPreview const& preview, int maxPixel)
{
    JpegBytes const jpeg(bytes, preview.range);
    HeadBytes const head(jpeg, headBytes);
    auto const header = readJpegHeader(head);
    if (!header || header->traits.size != preview.stored)
        return {};
    auto profile = readJpegProfile(head, *header);
    if (profile.empty())
        profile = profileOf(preview.colors);
    return decodeJpeg(head, maxPixel, profile);
}

std::optional<DecodedImage> decodePlain(
    ByteSource const& bytes, RawPreview const& preview, int maxPixel)
{
    PictureBuilder builder;
    if (!builder.begin(preview.stored, fittedSize(preview.stored, maxPixel), PixelFormat::opaque))
        return {};
    std::vector<std::uint8_t> row(static_cast<std::size_t>(preview.stored.width) * 3);
    for (int y = 0; y < preview.stored.height; ++y) {
        auto const at = preview.range.offset + row.size() * static_cast<std::size_t>(y);
        if (bytes.readAt(at, row) != row.size())
            break;
        auto* to = builder.nextRow();
        for (std::size_t x = 0; x < row.size(); x += 3, to += 4) {
            to[0] = row[x + 2];
            to[1] = row[x + 1];
            to[2] = row[x];
            to[3] = 255;
        }
        builder.commitRow();
    }
    DecodedImage image;
    image.bitmap = builder.finish(profileOf(preview.colors), Channels::color);
    return image;
}

std::optional<DecodedImage> decodeStored(
    ByteSource const& bytes, RawPreview const& preview, int maxPixel)
{
    return preview.kind == RawPreview::Kind::jpeg ? decodeJpegOf(bytes, preview, maxPixel)
                                                  : decodePlain(bytes, preview, maxPixel);
}

} // namespace

PixelSize RawPreview::upright() const
{
    return uprightSize(shown(), orientation);
}

std::vector<RawPreview> findRawPreviews(
    ByteSource const& bytes, RawContents const& contents, PixelSize picture)
{
    return PreviewSearch(bytes, contents, picture).search();
}

std::optional<DecodedImage> decodeRawPreview(
    ByteSource const& bytes, RawPreview const& preview, int maxPixel)
{
    auto const hasBars = preview.bars != PreviewBars {};
    auto image = decodeStored(bytes, preview, hasBars ? 0 : maxPixel);
    if (!image || image->bitmap.isEmpty())
        return {};
    if (hasBars) {
        if (image->bitmap.size != preview.stored)
            return {};
        image->bitmap = croppedBars(image->bitmap, preview.bars);
        auto const target = fittedSize(preview.shown(), maxPixel);
        if (!image->bitmap.isEmpty() && target != image->bitmap.size)
            image->bitmap = resampled(image->bitmap, target);
        if (image->bitmap.isEmpty())
            return {};
    }
    return uprightImage(std::move(image), preview.orientation);
}

} // namespace pixelhain
