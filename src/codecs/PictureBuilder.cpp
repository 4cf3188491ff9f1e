#include "codecs/PictureBuilder.h"
#include "base/Orientation.h"
#include "codecs/DecodeLimits.h"
#include <algorithm>
#include <cstring>

namespace pixelhain {

namespace {

bool hasAlpha(PixelFormat format)
{
    return format == PixelFormat::straight || format == PixelFormat::premultiplied;
}

} // namespace

bool PictureBuilder::begin(PixelSize rows, PixelSize target, PixelFormat format)
{
    return begin(rows, { double(rows.width), double(rows.height) }, target, format);
}

bool PictureBuilder::begin(PixelSize rows, Extent filled, PixelSize target, PixelFormat format)
{
    auto const bytes = (static_cast<std::size_t>(target.width) * 4 + 15)
        * static_cast<std::size_t>(target.height);
    if (!isWithinLimits(rows) || !isWithinLimits(target) || bytes > DecodeLimits::bitmap)
        return false;
    bitmap_ = Bitmap::allocate(target, !hasAlpha(format));
    if (bitmap_.isEmpty())
        return false;
    rows_ = rows;
    format_ = format;
    taken_ = 0;
    sawAlpha_ = false;
    resampler_.reset();
    if (rows != target)
        resampler_.emplace(rows, RowResampler::Axis { filled.width / target.width, 0 },
            RowResampler::Axis { filled.height / target.height, 0 }, bitmap_);
    return true;
}

std::uint8_t* PictureBuilder::nextRow()
{
    row_ = resampler_ ? resampler_->nextRow() : bitmap_.row(std::min(taken_, rows_.height - 1));
    return row_;
}

void PictureBuilder::commitRow()
{
    if (taken_ >= rows_.height)
        return;
    if (hasAlpha(format_))
        premultiplyRow(row_);
    ++taken_;
    if (resampler_)
        resampler_->commitRow();
}

void PictureBuilder::premultiplyRow(std::uint8_t* row)
{
    auto* const end = row + std::ptrdiff_t(rows_.width) * 4;
    unsigned all = 255;
    for (auto const* at = row; at != end; at += 4)
        all &= at[3];
    if (all == 255)
        return;
    sawAlpha_ = true;
    if (format_ == PixelFormat::straight) {
        premultiply(row, rows_.width);
        return;
    }
    for (auto* at = row; at != end; at += 4) {
        for (int c = 0; c < 3; ++c)
            at[c] = std::min(at[c], at[3]);
    }
}

void PictureBuilder::fillMissing()
{
    auto const bytes = static_cast<std::size_t>(rows_.width) * 4;
    while (taken_ < rows_.height) {
        std::memset(nextRow(), 0, bytes);
        commitRow();
    }
}

Bitmap PictureBuilder::finish(ByteSpan profile, Channels channels)
{
    if (taken_ == 0)
        return {};
    auto const isWhole = taken_ == rows_.height;
    fillMissing();
    auto const isInk = format_ == PixelFormat::cmyk || format_ == PixelFormat::cmykInverted;
    bitmap_.isOpaque = isInk || (isWhole && !sawAlpha_);
    if (!bitmap_.isOpaque && !hasAlpha(format_)) {
        for (int y = 0; y < bitmap_.size.height; ++y) {
            auto* row = bitmap_.row(y);
            for (auto* const end = row + std::ptrdiff_t(bitmap_.size.width) * 4; row != end;
                 row += 4) {
                for (int c = 0; c < 3; ++c)
                    row[c] = std::min(row[c], row[3]);
            }
        }
    }
    convertToSrgb(bitmap_, format_, channels, profile);
    return std::move(bitmap_);
}

std::optional<DecodedImage> uprightImage(std::optional<DecodedImage> image, int orientation)
{
    if (!image)
        return image;
    image->bitmap = upright(std::move(image->bitmap), orientation);
    if (image->bitmap.isEmpty())
        return {};
    return image;
}

} // namespace pixelhain
