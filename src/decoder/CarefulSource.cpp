#include "decoder/CarefulSource.h"
#include <algorithm>
#include <array>
#include <utility>

namespace pixelhain {

namespace {

struct Appetite {
    std::string_view typeIdentifier;
    std::uint64_t bytesPerPixel;
};

// Peaks of whole processes over pictures of 12 to 200 megapixels. A baseline JPEG takes next to
// nothing; a progressive one without subsampling is what counts here.
constexpr auto appetites = std::to_array<Appetite>({
    { "public.jpeg", 6 },
    { "public.png", 8 },
    { "public.tiff", 8 },
    { "org.webmproject.webp", 8 },
    { "com.compuserve.gif", 8 },
    { "com.microsoft.bmp", 4 },
    { "public.heic", 8 },
    { "public.heif", 8 },
    { "public.avif", 8 },
    { "public.jpeg-xl", 8 },
});

// Raw files, and whatever is not in the table.
constexpr std::uint64_t mostBytesPerPixel = 16;

} // namespace

std::uint64_t decodingMemory(std::string_view typeIdentifier, PixelSize size)
{
    auto const known = std::ranges::find(appetites, typeIdentifier, &Appetite::typeIdentifier);
    auto const each = known != appetites.end() ? known->bytesPerPixel : mostBytesPerPixel;
    return each * static_cast<std::uint64_t>(std::max(size.width, 0))
        * static_cast<std::uint64_t>(std::max(size.height, 0));
}

CarefulSource::CarefulSource(std::unique_ptr<ImageSource> source, std::uint64_t memory)
    : source_(std::move(source))
    , memory_(memory)
{
}

bool CarefulSource::isTooLarge()
{
    auto const size = source_->pixelSize();
    auto const needed = size ? decodingMemory(source_->typeIdentifier(), *size) : 0;
    if (needed <= memory_)
        return false;
    missing_ = needed;
    return true;
}

std::string_view CarefulSource::typeIdentifier() const
{
    return source_->typeIdentifier();
}

std::size_t CarefulSource::frameCount()
{
    return source_->frameCount();
}

std::optional<PixelSize> CarefulSource::pixelSize()
{
    return source_->pixelSize();
}

int CarefulSource::orientation()
{
    return source_->orientation();
}

std::vector<PixelSize> CarefulSource::previews()
{
    return source_->previews();
}

std::optional<DecodedImage> CarefulSource::decodePreview(std::size_t index, int maxPixel)
{
    return source_->decodePreview(index, maxPixel);
}

std::optional<DecodedImage> CarefulSource::decode(int maxPixel)
{
    return isTooLarge() ? std::nullopt : source_->decode(maxPixel);
}

std::optional<DecodedImage> CarefulSource::decodeWhole()
{
    return isTooLarge() ? std::nullopt : source_->decodeWhole();
}

CodedJpeg CarefulSource::codedPicture(int maxPixel)
{
    return isTooLarge() ? CodedJpeg {} : source_->codedPicture(maxPixel);
}

CodedJpeg CarefulSource::codedPreview(std::size_t index, int maxPixel)
{
    return source_->codedPreview(index, maxPixel);
}

} // namespace pixelhain
