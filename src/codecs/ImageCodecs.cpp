#include "codecs/ImageCodecs.h"
#include "codecs/BmpSource.h"
#include "codecs/ByteView.h"
#include "codecs/ExrSource.h"
#include "codecs/GifSource.h"
#include "codecs/HeifDecoder.h"
#include "codecs/HeifSource.h"
#include "codecs/IcoSource.h"
#include "codecs/Jp2Source.h"
#include "codecs/JpegSource.h"
#include "codecs/JxlSource.h"
#include "codecs/PngSource.h"
#include "codecs/PnmSource.h"
#include "codecs/QoiSource.h"
#include "codecs/RadianceSource.h"
#include "codecs/RawContents.h"
#include "codecs/RawSource.h"
#include "codecs/TgaSource.h"
#include "codecs/TiffSource.h"
#include "codecs/WebpSource.h"
#include <algorithm>
#include <array>
#include <exception>

namespace pixelhain {

namespace {

/// Turns running out of memory or of threads into "no picture": nothing is thrown across the port.
class GuardedSource final : public ImageSource {
public:
    explicit GuardedSource(std::unique_ptr<ImageSource> source)
        : source_(std::move(source))
    {
    }
    [[nodiscard]] std::string_view typeIdentifier() const override
    {
        return source_->typeIdentifier();
    }
    [[nodiscard]] std::size_t frameCount() override
    {
        return guarded(
            [this] { return std::max<std::size_t>(1, source_->frameCount()); }, std::size_t { 1 });
    }
    [[nodiscard]] std::optional<PixelSize> pixelSize() override
    {
        return guarded([this] { return source_->pixelSize(); }, std::optional<PixelSize> {});
    }
    [[nodiscard]] int orientation() override { return source_->orientation(); }
    [[nodiscard]] std::vector<PixelSize> previews() override
    {
        return guarded([this] { return source_->previews(); }, std::vector<PixelSize> {});
    }
    [[nodiscard]] std::optional<DecodedImage> decodePreview(
        std::size_t index, int maxPixel) override
    {
        return guarded([&] { return source_->decodePreview(index, maxPixel); }, nothing);
    }
    [[nodiscard]] std::optional<DecodedImage> decode(int maxPixel) override
    {
        return guarded([&] { return source_->decode(maxPixel); }, nothing);
    }
    [[nodiscard]] std::optional<DecodedImage> decodeWhole() override
    {
        return guarded([this] { return source_->decodeWhole(); }, nothing);
    }
    [[nodiscard]] CodedJpeg codedPicture(int maxPixel) override
    {
        return guarded([&] { return source_->codedPicture(maxPixel); }, CodedJpeg {});
    }
    [[nodiscard]] CodedJpeg codedPreview(std::size_t index, int maxPixel) override
    {
        return guarded([&] { return source_->codedPreview(index, maxPixel); }, CodedJpeg {});
    }

private:
    static inline std::optional<DecodedImage> const nothing {};

    template <typename Work, typename Result> static Result guarded(Work work, Result failed)
    {
        try {
            return work();
        } catch (std::exception const&) {
            return failed;
        }
    }

    std::unique_ptr<ImageSource> source_;
};

struct Codec {
    bool (*knows)(ByteSpan start);
    std::unique_ptr<ImageSource> (*open)(std::unique_ptr<ByteSource>);
};

bool isJpeg(ByteSpan start)
{
    return startsWith(start, "\xFF\xD8\xFF");
}
bool isPng(ByteSpan start)
{
    return startsWith(start, "\x89PNG\r\n\x1A\n");
}
bool isGif(ByteSpan start)
{
    return startsWith(start, "GIF8");
}
bool isBmp(ByteSpan start)
{
    return startsWith(start, "BM");
}

bool isWebp(ByteSpan start)
{
    return startsWith(start, "RIFF") && start.size() >= 12 && startsWith(start.subspan(8), "WEBP");
}

bool isTiff(ByteSpan start)
{
    return startsWith(start, "II*\0") || startsWith(start, "MM\0*") || startsWith(start, "II+\0")
        || startsWith(start, "MM\0+");
}

bool isQoi(ByteSpan start)
{
    return startsWith(start, "qoif");
}

bool isExr(ByteSpan start)
{
    return startsWith(start, "\x76\x2F\x31\x01");
}

bool isRadiance(ByteSpan start)
{
    return startsWith(start, "#?RADIANCE") || startsWith(start, "#?RGBE");
}

bool isIco(ByteSpan start)
{
    return startsWith(start, "\0\0\1\0") && start.size() >= 6 && start[4] != 0;
}

bool isPnm(ByteSpan start)
{
    return start.size() >= 3 && start[0] == 'P' && start[1] >= '1' && start[1] <= '7'
        && (start[2] == '#' || start[2] == ' ' || (start[2] >= '\t' && start[2] <= '\r'));
}

// Cameras wrap their RAW data in a TIFF, which more than the first bytes tells apart.
std::unique_ptr<ImageSource> openTiffOrRaw(std::unique_ptr<ByteSource> bytes)
{
    return isTiffRaw(*bytes) ? openRaw(std::move(bytes)) : openTiff(std::move(bytes));
}

// Asked in this order; the first that knows the bytes gets them.
constexpr Codec codecs[] = {
    { isJpeg, openJpeg },
    { isPng, openPng },
    { isGif, openGif },
    { isWebp, openWebp },
    { isMakersRaw, openRaw },
    { isTiff, openTiffOrRaw },
    { isHeif, openHeif },
    { isJxl, openJxl },
    { isBmp, openBmp },
    { isJp2, openJp2 },
    { isExr, openExr },
    { isRadiance, openRadiance },
    { isQoi, openQoi },
    { isPnm, openPnm },
    { isIco, openIco },
    { looksLikeTga, openTga },
};

std::unique_ptr<ImageSource> openByFirstBytes(std::unique_ptr<ByteSource> bytes)
{
    std::array<std::uint8_t, 64> start {};
    auto const known = ByteSpan(start).first(bytes->readAt(0, start));
    auto const codec
        = std::ranges::find_if(codecs, [&](Codec const& each) { return each.knows(known); });
    return codec != std::end(codecs) ? codec->open(std::move(bytes)) : nullptr;
}

} // namespace

void warmUpCodecs()
{
    warmUpHeif();
}

std::unique_ptr<ImageSource> openImage(std::unique_ptr<ByteSource> bytes)
{
    if (!bytes)
        return nullptr;
    try {
        auto source = openByFirstBytes(std::move(bytes));
        if (!source)
            return nullptr;
        return std::make_unique<GuardedSource>(std::move(source));
    } catch (std::exception const&) {
        return nullptr;
    }
}

} // namespace pixelhain
