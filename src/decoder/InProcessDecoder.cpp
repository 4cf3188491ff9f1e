#include "decoder/InProcessDecoder.h"
#include "codecs/Animation.h"
#include "codecs/CountedBytes.h"
#include "codecs/FileProperties.h"
#include "codecs/ImageCodecs.h"
#include "images/DecodeRules.h"
#include "posix/OpenedFile.h"
#include <algorithm>
#include <exception>
#include <memory>
#include <utility>

namespace pixelhain {

namespace {

// Runs `read` with the opened image and counts what is read of its file. A picture for which there
// is not enough memory counts as one that cannot be read.
template <typename Result, typename Read>
std::optional<Result> withImage(FileUrl const& file, std::uint64_t& count, Read read)
try {
    auto bytes = OpenedFile::open(file);
    if (!bytes || bytes->size() == 0)
        return std::nullopt;
    auto const image = openImage(std::make_unique<CountedBytes>(std::move(bytes), count));
    return image ? read(*image) : std::nullopt;
} catch (std::exception const&) {
    return std::nullopt;
}

} // namespace

std::optional<DecodedPicture> InProcessDecoder::decode(DecodeRequest const& request)
{
    std::uint64_t count = 0;
    auto picture = withImage<DecodedPicture>(request.file, count, [&](ImageSource& image) {
        if (request.smallJpegs == SmallJpegs::pass)
            if (auto passed = passedJpeg(image, request.maxPixel, request.previews))
                return passed;
        return request.maxPixel > 0 ? decodeImage(image, request.maxPixel, request.previews)
                                    : decodeFullImage(image);
    });
    if (picture)
        picture->bytesRead = count;
    return picture;
}

std::optional<ImageMeta> InProcessDecoder::readMeta(FileUrl const& file)
{
    std::uint64_t count = 0;
    return withImage<ImageMeta>(
        file, count, [](ImageSource& image) { return std::optional(pixelhain::readMeta(image)); });
}

std::optional<Glance> InProcessDecoder::glance(FileUrl const& file, int maxPixel)
{
    std::uint64_t count = 0;
    auto glance = withImage<Glance>(file, count,
        [maxPixel](ImageSource& image) { return std::optional(glanceAt(image, maxPixel)); });
    if (glance)
        glance->bytesRead = count;
    return glance;
}

std::optional<PhotoProperties> InProcessDecoder::readProperties(FileUrl const& file)
try {
    auto bytes = OpenedFile::open(file);
    if (!bytes || bytes->size() == 0)
        return std::nullopt;
    return readFileProperties(std::move(bytes), openImage);
} catch (std::exception const&) {
    return std::nullopt;
}

std::unique_ptr<AnimationSource> InProcessDecoder::openAnimation(FileUrl const& file, int maxPixel)
{
    return pixelhain::openAnimation(OpenedFile::open(file), std::max(maxPixel, 0));
}

std::unique_ptr<ImageDecoder> inProcessDecoder()
{
    return std::make_unique<InProcessDecoder>();
}

} // namespace pixelhain
