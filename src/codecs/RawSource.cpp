#include "codecs/RawSource.h"
#include "codecs/DecodeLimits.h"
#include "codecs/HeadBytes.h"
#include "codecs/PictureBuilder.h"
#include "codecs/RawContents.h"
#include "codecs/RawDeveloper.h"
#include "codecs/RawPreviews.h"
#include <algorithm>

namespace pixelhain {

namespace {

// Holds the first directories of most cameras.
constexpr std::size_t headBytes = std::size_t { 8 } << 10;
// A preview of nine tenths of the sensor's side shows as much as the sensor's data would.
constexpr double nearlyAll = 0.9;

class RawSource final : public ImageSource {
public:
    RawSource(std::unique_ptr<ByteSource> bytes)
        : bytes_(std::move(bytes))
        , head_(*bytes_, headBytes)
        , contents_(readRawContents(head_))
    {
    }

    [[nodiscard]] bool isReadable() const { return contents_.has_value(); }

    [[nodiscard]] std::string_view typeIdentifier() const override
    {
        return contents_->isDng ? "com.adobe.raw-image" : "public.camera-raw-image";
    }
    [[nodiscard]] std::size_t frameCount() override { return 1; }
    [[nodiscard]] int orientation() override { return contents_->orientation; }

    [[nodiscard]] std::optional<PixelSize> pixelSize() override
    {
        if (!size_) {
            size_ = contents_->size;
            if (size_->width <= 0)
                size_ = developedSize(head_).value_or(PixelSize {});
        }
        return size_->width > 0 ? size_ : std::nullopt;
    }

    [[nodiscard]] std::vector<PixelSize> previews() override
    {
        std::vector<PixelSize> sizes;
        for (auto const& preview : found()) {
            if (preview.isWhole)
                sizes.push_back(preview.upright());
        }
        return sizes;
    }

    [[nodiscard]] std::optional<DecodedImage> decodePreview(
        std::size_t index, int maxPixel) override
    {
        for (auto const& preview : found()) {
            if (preview.isWhole && index-- == 0)
                return decodeRawPreview(head_, preview, maxPixel);
        }
        return {};
    }

    [[nodiscard]] std::optional<DecodedImage> decode(int maxPixel) override
    {
        if (auto image = decodeLargest(enough(maxPixel), maxPixel))
            return image;
        auto developed = develop(maxPixel);
        if (developed && !developed->isCut)
            return uprightImage(std::move(developed->image), orientation());
        if (auto image = decodeLargest(1, maxPixel))
            return image;
        if (developed)
            return uprightImage(std::move(developed->image), orientation());
        return decodeRest(maxPixel);
    }

    [[nodiscard]] std::optional<DecodedImage> decodeWhole() override
    {
        auto developed = develop(0);
        if (!developed)
            return {};
        return std::move(developed->image);
    }

private:
    std::vector<RawPreview> const& found()
    {
        if (!found_)
            found_ = findRawPreviews(head_, *contents_, pixelSize().value_or(PixelSize {}));
        return *found_;
    }

    // The longest side from which on a preview does for a picture of `maxPixel`.
    [[nodiscard]] int enough(int maxPixel)
    {
        auto const size = pixelSize();
        if (!size)
            return maxPixel;
        auto const nearly = static_cast<int>(nearlyAll * size->longestSide());
        return maxPixel > 0 ? std::min(maxPixel, nearly) : nearly;
    }

    std::optional<DecodedImage> decodeLargest(int least, int maxPixel)
    {
        auto const& all = found();
        for (auto preview = all.rbegin(); preview != all.rend(); ++preview) {
            if (!preview->isWhole || preview->shown().longestSide() < least)
                continue;
            if (auto image = decodeRawPreview(head_, *preview, maxPixel))
                return image;
        }
        return {};
    }

    // A preview of another shape is better than none.
    std::optional<DecodedImage> decodeRest(int maxPixel)
    {
        auto const& all = found();
        for (auto preview = all.rbegin(); preview != all.rend(); ++preview) {
            if (auto image = decodeRawPreview(head_, *preview, maxPixel))
                return image;
        }
        return {};
    }

    // What failed once is not tried again: it can take long.
    std::optional<DevelopedRaw> develop(int maxPixel)
    {
        if (isUndevelopable_)
            return {};
        auto developed = developRaw(head_, maxPixel);
        isUndevelopable_ = !developed;
        return developed;
    }

    std::unique_ptr<ByteSource> bytes_;
    HeadBytes head_;
    std::optional<RawContents> contents_;
    std::optional<PixelSize> size_;
    std::optional<std::vector<RawPreview>> found_;
    bool isUndevelopable_ = false;
};

} // namespace

std::unique_ptr<ImageSource> openRaw(std::unique_ptr<ByteSource> bytes)
{
    auto source = std::make_unique<RawSource>(std::move(bytes));
    if (!source->isReadable())
        return nullptr;
    return source;
}

} // namespace pixelhain
