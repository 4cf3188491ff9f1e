#include "codecs/RawSource.h"
#include "base/Resample.h"
#include "codecs/DecodeLimits.h"
#include "codecs/HeadBytes.h"
#include "codecs/PictureBuilder.h"
#include "codecs/RawContents.h"
#include "codecs/RawDeveloper.h"
#include "codecs/RawPreviews.h"
#include <algorithm>
#include <cmath>

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
        if (contents_->crop.width > 0)
            static_cast<void>(found());
        auto const size = isCropped_ ? contents_->crop : frame();
        return size.width > 0 ? std::optional(size) : std::nullopt;
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
    // The size of all that the sensor's data show.
    PixelSize frame()
    {
        if (!frame_) {
            frame_ = contents_->size;
            if (frame_->width <= 0)
                frame_ = developedSize(head_).value_or(PixelSize {});
        }
        return *frame_;
    }

    std::vector<RawPreview> const& found()
    {
        if (found_)
            return *found_;
        found_ = findRawPreviews(head_, *contents_, frame());
        if (contents_->crop.width > 0) {
            auto cropped = findRawPreviews(head_, *contents_, contents_->crop);
            isCropped_ = !cropped.empty() && cropped.back().isWhole;
            if (isCropped_)
                found_ = std::move(cropped);
        }
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
        static_cast<void>(found());
        if (isUndevelopable_)
            return {};
        auto developed = developRaw(head_, isCropped_ ? uncropped(maxPixel) : maxPixel);
        if (developed && isCropped_)
            crop(developed->image.bitmap, maxPixel);
        if (developed && developed->image.bitmap.isEmpty())
            developed.reset();
        isUndevelopable_ = !developed;
        return developed;
    }

    // How large all must be developed for the crop to reach `maxPixel`.
    [[nodiscard]] int uncropped(int maxPixel)
    {
        auto const ratio = double(frame().longestSide()) / contents_->crop.longestSide();
        return static_cast<int>(std::min(std::ceil(maxPixel * ratio), double(DecodeLimits::side)));
    }

    void crop(Bitmap& bitmap, int maxPixel)
    {
        auto const margin = [](int side, int part, int whole) {
            return static_cast<int>(std::lround(side * (1 - double(part) / whole) / 2));
        };
        PreviewBars const around { margin(bitmap.size.width, contents_->crop.width, frame().width),
            margin(bitmap.size.height, contents_->crop.height, frame().height) };
        bitmap = croppedBars(bitmap, around);
        // A row more or less by rounding must not change the shape.
        auto const isReduced = maxPixel > 0 && bitmap.size.longestSide() >= maxPixel;
        auto const target = isReduced ? fittedSize(contents_->crop, maxPixel) : bitmap.size;
        if (!bitmap.isEmpty() && target != bitmap.size)
            bitmap = resampled(bitmap, target);
    }

    std::unique_ptr<ByteSource> bytes_;
    HeadBytes head_;
    std::optional<RawContents> contents_;
    std::optional<PixelSize> frame_;
    std::optional<std::vector<RawPreview>> found_;
    bool isCropped_ = false; ///< the camera was set to show a part of the sensor's picture
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
