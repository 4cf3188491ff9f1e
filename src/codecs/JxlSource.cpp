#include "codecs/JxlSource.h"
#include "base/Orientation.h"
#include "codecs/DecodeLimits.h"
#include "codecs/IsoBoxes.h"
#include "codecs/JpegDecoder.h"
#include "codecs/JxlDecoder.h"
#include "codecs/JxlStream.h"
#include "codecs/PhotoSource.h"
#include "codecs/PictureBuilder.h"
#include <algorithm>

namespace pixelhain {

namespace {

constexpr std::size_t headBytes = std::size_t { 4 } << 10;

bool isBoxed(ByteSpan start)
{
    constexpr std::uint8_t signature[] = { 0, 0, 0, 12, 'J', 'X', 'L', ' ', 13, 10, 0x87, 10 };
    return start.size() >= sizeof signature
        && std::equal(std::begin(signature), std::end(signature), start.begin());
}

class JxlSource final : public PhotoSource {
public:
    explicit JxlSource(std::unique_ptr<ByteSource> bytes)
        : PhotoSource(std::move(bytes), headBytes)
        , isBoxed_(pixelhain::isBoxed(this->bytes().head()))
        , header_(readJxlHeader(this->bytes()))
    {
        if (!header_)
            return;
        PhotoTraits traits;
        traits.size = header_->size;
        traits.exif.orientation = header_->orientation;
        setTraits(std::move(traits));
    }

    [[nodiscard]] bool isReadable() const { return header_.has_value(); }
    [[nodiscard]] std::string_view typeIdentifier() const override { return "public.jpeg-xl"; }
    [[nodiscard]] std::size_t frameCount() override
    {
        return header_->isAnimated ? countJxlFrames(bytes()) : 1;
    }

    [[nodiscard]] std::vector<PixelSize> previews() override
    {
        std::vector<PixelSize> sizes;
        for (auto const& preview : foundPreviews())
            sizes.push_back(uprightSize(preview.stored, orientation()));
        return sizes;
    }

    [[nodiscard]] std::optional<DecodedImage> decodePreview(
        std::size_t index, int maxPixel) override
    {
        auto const& found = foundPreviews();
        if (index >= found.size())
            return {};
        auto const& jpeg = found[index].jpeg;
        return uprightImage(jpeg ? decodeJpegPreview(SpanBytes(exif_), *jpeg, maxPixel, {})
                                 : decodeJxl(bytes(), JxlPicture::preview, maxPixel),
            orientation());
    }

private:
    struct Preview {
        PixelSize stored;
        std::optional<JpegPreview> jpeg; ///< in the EXIF block
    };

    // To write the JPEG anew that a file was made of and to let that be reduced while it is decoded
    // costs a fifth less than to decode all its pixels here.
    [[nodiscard]] std::optional<DecodedImage> decodeStored(int maxPixel) override
    {
        auto const longest = traits().size.longestSide();
        if (maxPixel > 0 && longest >= 2 * maxPixel && holdsJpeg()) {
            auto const jpeg = reconstructJpeg(bytes());
            auto image = decodeReconstructed(jpeg, maxPixel);
            if (image)
                return image;
        }
        return decodeJxl(bytes(), JxlPicture::first, maxPixel);
    }

    std::optional<DecodedImage> decodeReconstructed(
        std::vector<std::uint8_t> const& jpeg, int maxPixel) const
    {
        SpanBytes const source(jpeg);
        auto const header = readJpegHeader(source);
        if (!header || header->traits.size != traits().size)
            return {};
        return decodeJpeg(source, maxPixel, readJpegProfile(source, *header));
    }

    bool holdsJpeg() const
    {
        return isBoxed_
            && findBox(bytes(), { 0, bytes().size() }, fourCharacters("jbrd")).has_value();
    }

    bool holdsExif() const
    {
        if (!isBoxed_)
            return false;
        auto const boxes = boxesIn(bytes(), { 0, bytes().size() });
        return std::ranges::any_of(boxes, [](IsoBox const& box) {
            return box.type == fourCharacters("Exif") || box.type == fourCharacters("brob");
        });
    }

    std::vector<Preview> const& foundPreviews()
    {
        if (previews_)
            return *previews_;
        previews_.emplace();
        if (header_->preview.width > 0 && hasSameShape(header_->preview, traits().size))
            previews_->push_back({ header_->preview, {} });
        if (holdsExif()) {
            exif_ = readJxlExif(bytes());
            SpanBytes const block(exif_);
            auto found = traits();
            found.exif = readExif(block, 0, exif_.size());
            // One that was turned later on no longer lies like its thumbnail.
            if (found.exif.orientation == orientation()) {
                for (auto const& jpeg : findJpegPreviews(block, found))
                    previews_->push_back({ jpeg.shown(), jpeg });
            }
        }
        std::ranges::stable_sort(
            *previews_, {}, [](Preview const& preview) { return preview.stored.longestSide(); });
        return *previews_;
    }

    bool isBoxed_;
    std::optional<JxlHeader> header_;
    std::vector<std::uint8_t> exif_;
    std::optional<std::vector<Preview>> previews_;
};

} // namespace

bool isJxl(ByteSpan start)
{
    return startsWith(start, "\xFF\x0A") || isBoxed(start);
}

std::unique_ptr<ImageSource> openJxl(std::unique_ptr<ByteSource> bytes)
{
    return openPhoto<JxlSource>(std::move(bytes));
}

} // namespace pixelhain
