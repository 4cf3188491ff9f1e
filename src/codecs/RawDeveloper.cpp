#include "codecs/RawDeveloper.h"
#include "codecs/DecodeLimits.h"
#include "codecs/PictureBuilder.h"
#include "codecs/RawStream.h"
#include <algorithm>
#include <chrono>
#include <memory>
#include <vector>

namespace pixelhain {

namespace {

constexpr int mostThreads = 2;

// One thread's share of what the request may take: the other's time is not seen.
double mostSeconds(std::chrono::seconds time)
{
    return static_cast<double>(time.count()) / mostThreads;
}

class Library {
public:
    Library(ByteSource const& bytes, std::chrono::seconds time)
        : limit_(mostSeconds(time))
        , stream_(bytes, limit_)
        , library_(std::make_unique<LibRaw>())
    {
        library_->set_memerror_handler(nullptr, nullptr);
        library_->set_dataerror_handler(nullptr, nullptr);
        library_->set_progress_handler(watch, this);
        auto& settings = library_->imgdata.params;
        settings.max_raw_memory_mb = static_cast<unsigned>(DecodeLimits::memory >> 20);
        settings.use_camera_wb = 1;
        settings.output_color = 1; // sRGB
        settings.output_bps = 8;
        settings.gamm[0] = 1 / 2.4;
        settings.gamm[1] = 12.92;
        settings.user_flip = 0; // turned by whoever knows the orientation
        settings.user_qual = 2; // PPG: nearly as good as the default, in a third of its time
    }
    Library(Library const&) = delete;
    Library& operator=(Library const&) = delete;

    [[nodiscard]] bool open()
    {
        auto const& sizes = library_->imgdata.sizes;
        return library_->open_datastream(&stream_) == LIBRAW_SUCCESS
            && isWithinLimits(sizes.raw_width, sizes.raw_height)
            && isWithinLimits(sizes.width, sizes.height);
    }

    [[nodiscard]] PixelSize size() const
    {
        auto const& sizes = library_->imgdata.sizes;
        return { sizes.iwidth, sizes.iheight };
    }

    [[nodiscard]] std::optional<PixelSize> finalSize()
    {
        if (library_->adjust_sizes_info_only() != LIBRAW_SUCCESS || !isWithinLimits(size()))
            return {};
        return size();
    }

    [[nodiscard]] std::optional<DevelopedRaw> develop(int maxPixel)
    {
        auto const isHalved = chooseHalf(maxPixel);
        stream_.expectPixels();
        omp_set_num_threads(std::min(omp_get_num_procs(), mostThreads));
        if (library_->unpack() != LIBRAW_SUCCESS || !stream_.hasPixels()
            || library_->dcraw_process() != LIBRAW_SUCCESS)
            return {};
        DevelopedRaw developed;
        developed.isCut = stream_.isCut();
        developed.image.bitmap = picture(maxPixel);
        developed.image.wasReduced = isHalved;
        if (developed.image.bitmap.isEmpty())
            return {};
        return developed;
    }

private:
    static int watch(void* self, LibRaw_progress, int, int)
    {
        return static_cast<Library*>(self)->limit_.isOver() ? 1 : 0;
    }

    // Only a mosaic can be halved without loss of detail.
    bool chooseHalf(int maxPixel)
    {
        constexpr std::int64_t bytesPerPixel = 16;
        constexpr std::int64_t mostBytes = std::int64_t { DecodeLimits::memory } / 2 * 3;
        auto const& sizes = library_->imgdata.sizes;
        auto const isEnough = maxPixel > 0 && std::max(sizes.width, sizes.height) / 2 >= maxPixel;
        auto const isTooMuch
            = std::int64_t { sizes.raw_width } * sizes.raw_height * bytesPerPixel > mostBytes;
        auto const isHalved = library_->imgdata.idata.filters != 0 && (isEnough || isTooMuch);
        library_->imgdata.params.half_size = isHalved ? 1 : 0;
        return isHalved;
    }

    [[nodiscard]] Bitmap picture(int maxPixel)
    {
        int width = 0;
        int height = 0;
        int colors = 0;
        int bits = 0;
        library_->get_mem_image_format(&width, &height, &colors, &bits);
        PixelSize const size { width, height };
        if (!isWithinLimits(size) || bits != 8 || (colors != 3 && colors != 1))
            return {};
        auto const stride = static_cast<std::size_t>(width) * static_cast<std::size_t>(colors);
        std::vector<std::uint8_t> pixels(stride * static_cast<std::size_t>(height));
        constexpr int blueFirst = 1;
        if (library_->copy_mem_image(pixels.data(), static_cast<int>(stride), blueFirst)
            != LIBRAW_SUCCESS)
            return {};
        PictureBuilder builder;
        if (!builder.begin(size, fittedSize(size, maxPixel), PixelFormat::opaque))
            return {};
        for (int y = 0; y < height; ++y) {
            auto const* from = pixels.data() + stride * static_cast<std::size_t>(y);
            auto* to = builder.nextRow();
            for (int x = 0; x < width; ++x, from += colors, to += 4) {
                to[0] = from[0];
                to[1] = colors == 3 ? from[1] : from[0];
                to[2] = colors == 3 ? from[2] : from[0];
                to[3] = 255;
            }
            builder.commitRow();
        }
        return builder.finish({}, colors == 3 ? Channels::color : Channels::grey);
    }

    ThreadTimeLimit limit_;
    RawStream stream_;
    std::unique_ptr<LibRaw> library_;
};

// The library throws numbers of its own, and whatever its containers throw.
template <typename Work> auto guarded(Work work) -> decltype(work())
{
    try {
        return work();
    } catch (...) {
        return {};
    }
}

} // namespace

std::optional<PixelSize> developedSize(ByteSource const& bytes)
{
    return guarded([&]() -> std::optional<PixelSize> {
        Library library(bytes, DecodeLimits::metadataTime);
        return library.open() ? library.finalSize() : std::nullopt;
    });
}

std::optional<DevelopedRaw> developRaw(ByteSource const& bytes, int maxPixel)
{
    return guarded([&]() -> std::optional<DevelopedRaw> {
        Library library(bytes, decodeTime(maxPixel));
        return library.open() ? library.develop(maxPixel) : std::nullopt;
    });
}

} // namespace pixelhain
