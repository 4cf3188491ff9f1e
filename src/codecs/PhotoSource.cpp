#include "codecs/PhotoSource.h"
#include "base/Orientation.h"
#include "codecs/DecodeLimits.h"
#include "codecs/PictureBuilder.h"

namespace pixelhain {

PhotoSource::PhotoSource(std::unique_ptr<ByteSource> bytes, std::size_t headBytes)
    : bytes_(std::move(bytes))
    , head_(*bytes_, headBytes)
{
}

std::vector<PixelSize> PhotoSource::previews()
{
    std::vector<PixelSize> sizes;
    for (auto const& preview : foundPreviews())
        sizes.push_back(uprightSize(preview.shown(), orientation()));
    return sizes;
}

std::optional<DecodedImage> PhotoSource::decodePreview(std::size_t index, int maxPixel)
{
    auto const& found = foundPreviews();
    if (index >= found.size())
        return {};
    return uprightImage(decodeJpegPreview(head_, found[index], maxPixel, profile()), orientation());
}

std::optional<DecodedImage> PhotoSource::decode(int maxPixel)
{
    if (!isWithinLimits(traits_.size))
        return {};
    return uprightImage(decodeStored(maxPixel), orientation());
}

std::optional<DecodedImage> PhotoSource::decodeWhole()
{
    if (!isWithinLimits(traits_.size))
        return {};
    return decodeStored(0);
}

std::vector<std::uint8_t> PhotoSource::profileAt(ByteRange range) const
{
    if (range.length > DecodeLimits::colorProfile)
        return {};
    return bytesAt(head_, range.offset, static_cast<std::size_t>(range.length));
}

std::vector<std::uint8_t> const& PhotoSource::profile()
{
    if (!profile_)
        profile_ = readProfile();
    return *profile_;
}

std::vector<JpegPreview> const& PhotoSource::foundPreviews()
{
    if (!previews_)
        previews_ = findJpegPreviews(head_, traits_);
    return *previews_;
}

} // namespace pixelhain
