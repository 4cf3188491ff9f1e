#include "codecs/TiffSource.h"
#include "codecs/DecodeLimits.h"
#include "codecs/PhotoSource.h"
#include "codecs/TiffDecoder.h"
#include "codecs/TiffReader.h"

namespace pixelhain {

namespace {

constexpr std::size_t headBytes = std::size_t { 16 } << 10;

// The thumbnail in the second directory; what is not said to be a reduced picture is a page.
std::optional<ByteRange> thumbnailIn(ByteSource const& bytes)
{
    auto const reader = TiffReader::open(bytes);
    auto const first = reader ? reader->directory(reader->firstDirectory()) : std::nullopt;
    auto const second = first ? reader->directory(first->next) : std::nullopt;
    if (!second
        || (reader->number(*second, TIFFTAG_SUBFILETYPE).value_or(0) & FILETYPE_REDUCEDIMAGE) == 0)
        return {};
    return readExif(bytes, 0, bytes.size()).thumbnail;
}

class TiffSource final : public PhotoSource {
public:
    explicit TiffSource(std::unique_ptr<ByteSource> bytes)
        : PhotoSource(std::move(bytes), headBytes)
        , file_(this->bytes())
    {
        if (!file_.isOpen())
            return;
        auto const width = file_.number<std::uint32_t>(TIFFTAG_IMAGEWIDTH, 0);
        auto const height = file_.number<std::uint32_t>(TIFFTAG_IMAGELENGTH, 0);
        if (width > DecodeLimits::side || height > DecodeLimits::side)
            return;
        PhotoTraits traits;
        traits.size = { static_cast<int>(width), static_cast<int>(height) };
        auto const orientation = file_.number<std::uint16_t>(TIFFTAG_ORIENTATION, 1);
        if (orientation >= 1 && orientation <= 8)
            traits.exif.orientation = orientation;
        traits.exif.thumbnail = thumbnailIn(this->bytes());
        setTraits(traits);
    }

    [[nodiscard]] bool isReadable() const
    {
        return traits().size.width > 0 && traits().size.height > 0;
    }
    [[nodiscard]] std::string_view typeIdentifier() const override { return "public.tiff"; }

    // Masks and reduced copies of a page are no pages.
    [[nodiscard]] std::size_t frameCount() override
    {
        TiffFile const file(bytes());
        if (!file.isOpen())
            return 1;
        std::size_t pages = 1;
        for (std::size_t i = 1; i < DecodeLimits::directories && TIFFReadDirectory(file.get()) == 1;
             ++i) {
            auto const kind = file.number<std::uint32_t>(TIFFTAG_SUBFILETYPE, 0);
            if ((kind & (FILETYPE_REDUCEDIMAGE | FILETYPE_MASK)) == 0)
                ++pages;
        }
        return pages;
    }

private:
    [[nodiscard]] std::optional<DecodedImage> decodeStored(int maxPixel) override
    {
        return decodeTiff(file_, traits().size, maxPixel, profile());
    }

    [[nodiscard]] std::vector<std::uint8_t> readProfile() override
    {
        std::uint32_t length = 0;
        std::uint8_t const* data = nullptr;
        if (TIFFGetField(file_.get(), TIFFTAG_ICCPROFILE, &length, &data) != 1
            || length > DecodeLimits::colorProfile)
            return {};
        return { data, data + length };
    }

    TiffFile file_;
};

} // namespace

std::unique_ptr<ImageSource> openTiff(std::unique_ptr<ByteSource> bytes)
{
    return openPhoto<TiffSource>(std::move(bytes));
}

} // namespace pixelhain
