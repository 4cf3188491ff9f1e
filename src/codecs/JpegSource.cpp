#include "codecs/JpegSource.h"
#include "codecs/JpegDecoder.h"
#include "codecs/JpegHeader.h"
#include "codecs/PhotoSource.h"
#include <algorithm>

namespace pixelhain {

namespace {

// Holds the EXIF block of nearly every camera, thumbnail included.
constexpr std::size_t headBytes = std::size_t { 64 } << 10;

class JpegSource final : public PhotoSource {
public:
    explicit JpegSource(std::unique_ptr<ByteSource> bytes)
        : PhotoSource(std::move(bytes), headBytes)
        , header_(readJpegHeader(this->bytes()))
    {
        if (header_)
            setTraits(header_->traits);
    }

    [[nodiscard]] bool isReadable() const { return header_.has_value(); }
    [[nodiscard]] std::string_view typeIdentifier() const override { return "public.jpeg"; }

    // Previews and gain maps are no pictures of their own; the other eye of a stereo pair is.
    [[nodiscard]] std::size_t frameCount() override
    {
        auto const& pictures = traits().pictures;
        auto const others = pictures.empty()
            ? 0
            : std::count_if(pictures.begin() + 1, pictures.end(),
                [](auto const& picture) { return picture.kind == MultiPicture::Kind::view; });
        return static_cast<std::size_t>(others) + 1;
    }

    [[nodiscard]] CodedJpeg codedPicture(int maxPixel) override
    {
        return isUpright() ? passableJpeg(bytes(), maxPixel, profile()) : CodedJpeg {};
    }

    [[nodiscard]] CodedJpeg codedPreview(std::size_t index, int maxPixel) override
    {
        auto const& found = foundPreviews();
        if (!isUpright() || index >= found.size() || found[index].bars != PreviewBars {})
            return {};
        auto const& range = found[index].range;
        auto jpeg
            = passableJpeg(SliceBytes(bytes(), range.offset, range.length), maxPixel, profile());
        return jpeg.size == found[index].stored ? jpeg : CodedJpeg {};
    }

private:
    bool isUpright() { return orientation() == 1; }

    [[nodiscard]] std::optional<DecodedImage> decodeStored(int maxPixel) override
    {
        return decodeJpeg(bytes(), maxPixel, profile());
    }

    [[nodiscard]] std::vector<std::uint8_t> readProfile() override
    {
        return readJpegProfile(bytes(), *header_);
    }

    std::optional<JpegHeader> header_;
};

} // namespace

std::unique_ptr<ImageSource> openJpeg(std::unique_ptr<ByteSource> bytes)
{
    return openPhoto<JpegSource>(std::move(bytes));
}

} // namespace pixelhain
