#include "codecs/HeifSource.h"
#include "base/Orientation.h"
#include "codecs/DecodeLimits.h"
#include "codecs/HeifDecoder.h"
#include "codecs/HeifIndex.h"
#include "codecs/PhotoSource.h"
#include "codecs/PictureBuilder.h"
#include "codecs/PreviewShape.h"
#include <algorithm>
#include <array>

namespace pixelhain {

namespace {

// The tables of a picture of several hundred tiles.
constexpr std::size_t headBytes = std::size_t { 32 } << 10;

struct Brand {
    std::uint32_t code;
    std::string_view type;
};

constexpr std::array brands {
    Brand { fourCharacters("heic"), "public.heic" },
    Brand { fourCharacters("heix"), "public.heic" },
    Brand { fourCharacters("hevc"), "public.heic" },
    Brand { fourCharacters("hevx"), "public.heic" },
    Brand { fourCharacters("avif"), "public.avif" },
    Brand { fourCharacters("avis"), "public.avif" },
    Brand { fourCharacters("mif1"), "public.heif" },
    Brand { fourCharacters("msf1"), "public.heif" },
};

// The type of the major brand; of one that says nothing about pictures the first that does.
std::string_view typeOf(ByteSpan start)
{
    for (auto const stated : brandsOf(start)) {
        auto const known = std::ranges::find(brands, stated, &Brand::code);
        if (known != brands.end())
            return known->type;
    }
    return {};
}

class HeifSource final : public PhotoSource {
public:
    explicit HeifSource(std::unique_ptr<ByteSource> bytes)
        : PhotoSource(std::move(bytes), headBytes)
        , type_(typeOf(this->bytes().head()))
        , index_(HeifIndex::read(this->bytes()))
    {
        if (!index_)
            return;
        // Its own turns count and no others: EXIF repeats them, and the decoder carries them out.
        PhotoTraits traits;
        traits.size = index_->size();
        setTraits(std::move(traits));
    }

    [[nodiscard]] bool isReadable() const { return index_.has_value(); }
    [[nodiscard]] std::string_view typeIdentifier() const override { return type_; }
    [[nodiscard]] std::size_t frameCount() override { return index_->pictures(); }

    [[nodiscard]] std::vector<PixelSize> previews() override
    {
        std::vector<PixelSize> sizes;
        for (auto const& preview : foundPreviews())
            sizes.push_back(preview.size);
        return sizes;
    }

    [[nodiscard]] std::optional<DecodedImage> decodePreview(
        std::size_t index, int maxPixel) override
    {
        auto const& found = foundPreviews();
        if (index >= found.size())
            return {};
        auto const& preview = found[index];
        if (preview.jpeg)
            return uprightImage(decodeJpegPreview(bytes(), *preview.jpeg, maxPixel, profile()),
                *index_->orientation());
        return decodeItem(preview.item, preview.size, maxPixel);
    }

private:
    struct Preview {
        PixelSize size;
        HeifIndex::ItemId item = 0;
        std::optional<JpegPreview> jpeg;
    };

    [[nodiscard]] std::optional<DecodedImage> decodeStored(int maxPixel) override
    {
        // Of pictures that are cut nothing is to be had.
        if (index_->isCut())
            return {};
        return decodeItem(index_->primary(), index_->size(), maxPixel);
    }

    [[nodiscard]] std::vector<std::uint8_t> readProfile() override
    {
        auto const range = index_->profile();
        return range ? profileAt(*range) : std::vector<std::uint8_t> {};
    }

    std::optional<DecodedImage> decodeItem(HeifIndex::ItemId item, PixelSize size, int maxPixel)
    {
        // Three channels twice, as the library turns a picture by copying it.
        auto const bytesPerPixel = index_->isDeep() ? 12 : 6;
        auto const pixels = index_->decodedPixels(item);
        if (!pixels || *pixels > DecodeLimits::twiceHeld / bytesPerPixel)
            return {};
        return decodeHeif(
            bytes(), { index_->patchesFor(item), size, maxPixel, profile(), index_->codePoints() });
    }

    // A thumbnail in the EXIF block lies as the sensor did, so its turn must be beyond doubt.
    void addExifPreviews(std::vector<Preview>& previews)
    {
        auto const block = index_->exif();
        auto const orientation = index_->orientation();
        if (!block || !orientation)
            return;
        PhotoTraits traits;
        traits.size = index_->storedSize();
        traits.exif = readExif(bytes(), block->offset, block->length);
        if (traits.exif.orientation != *orientation)
            return;
        for (auto const& jpeg : findJpegPreviews(bytes(), traits))
            previews.push_back({ uprightSize(jpeg.shown(), *orientation), 0, jpeg });
    }

    std::vector<Preview> const& foundPreviews()
    {
        if (previews_)
            return *previews_;
        previews_.emplace();
        for (auto const& thumbnail : index_->thumbnails()) {
            if (hasSameShape(thumbnail.size, index_->size()))
                previews_->push_back({ thumbnail.size, thumbnail.item, {} });
        }
        addExifPreviews(*previews_);
        std::ranges::stable_sort(
            *previews_, {}, [](Preview const& preview) { return preview.size.longestSide(); });
        return *previews_;
    }

    std::string_view type_;
    std::optional<HeifIndex> index_;
    std::optional<std::vector<Preview>> previews_;
};

} // namespace

bool isHeif(ByteSpan start)
{
    return !typeOf(start).empty();
}

std::unique_ptr<ImageSource> openHeif(std::unique_ptr<ByteSource> bytes)
{
    return openPhoto<HeifSource>(std::move(bytes));
}

} // namespace pixelhain
