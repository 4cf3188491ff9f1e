#include "codecs/WebpSource.h"
#include "codecs/DecodeLimits.h"
#include "codecs/PhotoSource.h"
#include "codecs/PictureBuilder.h"
#include <array>
#include <cstring>

#include <webp/decode.h>

namespace pixelhain {

namespace {

constexpr std::size_t headBytes = std::size_t { 4 } << 10;
constexpr std::uint64_t firstChunk = 12;
// Chunks besides the frames: a hole in a file reads as empty ones without end.
constexpr std::size_t mostOthers = 4096;

struct WebpHeader {
    PhotoTraits traits; ///< the size is the canvas's
    bool isAnimated = false;
    std::size_t frames = 0;
    ByteRange picture; ///< the chunks of the (first) picture
    int x = 0; ///< where it lies on the canvas
    int y = 0;
    ByteRange profile;
};

int number24(std::uint8_t const* at)
{
    return at[0] | at[1] << 8 | at[2] << 16;
}

void takeFrame(ByteSource const& bytes, ByteRange contents, WebpHeader& header)
{
    constexpr std::uint64_t frameHeader = 16;
    std::array<std::uint8_t, frameHeader> frame {};
    if (header.frames++ > 0 || bytes.readAt(contents.offset, frame) != frame.size()
        || contents.length < frameHeader)
        return;
    header.x = number24(frame.data()) * 2;
    header.y = number24(frame.data() + 3) * 2;
    header.picture = { contents.offset + frameHeader, contents.length - frameHeader };
}

void takeExif(ByteSource const& bytes, ByteRange contents, WebpHeader& header)
{
    std::array<std::uint8_t, 6> start {};
    auto const hasPrefix = bytes.readAt(contents.offset, start) == start.size()
        && startsWith(start, "Exif\0") && contents.length > start.size();
    auto const skip = hasPrefix ? start.size() : 0;
    header.traits.exif = readExif(bytes, contents.offset + skip, contents.length - skip);
}

void takeChunk(ByteSource const& bytes, ByteSpan type, ByteRange contents, WebpHeader& header)
{
    if (startsWith(type, "VP8X")) {
        std::array<std::uint8_t, 10> start {};
        if (bytes.readAt(contents.offset, start) != start.size())
            return;
        header.isAnimated = (start[0] & 0x02) != 0;
        header.traits.size = { number24(start.data() + 4) + 1, number24(start.data() + 7) + 1 };
    } else if (startsWith(type, "ICCP")) {
        header.profile = contents;
    } else if (startsWith(type, "EXIF")) {
        takeExif(bytes, contents, header);
    } else if (startsWith(type, "ANMF")) {
        takeFrame(bytes, contents, header);
    } else if (!header.isAnimated && header.picture.length == 0
        && (startsWith(type, "VP8 ") || startsWith(type, "VP8L") || startsWith(type, "ALPH"))) {
        // All that follows: the alpha stands in a chunk of its own in front of the colours.
        header.picture = { contents.offset - 8, bytes.size() - (contents.offset - 8) };
    }
}

std::optional<WebpHeader> readHeader(ByteSource const& bytes)
{
    WebpHeader header;
    auto offset = firstChunk;
    for (std::size_t chunks = 0;
         header.frames < DecodeLimits::frames && chunks < header.frames + mostOthers; ++chunks) {
        std::array<std::uint8_t, 8> head {};
        if (bytes.readAt(offset, head) != head.size())
            break;
        auto const length = littleEndian32(head.data() + 4);
        takeChunk(bytes, ByteSpan(head).first(4), { offset + head.size(), length }, header);
        offset += head.size() + std::uint64_t { length } + (length & 1);
    }
    if (header.picture.length == 0)
        return {};
    if (header.traits.size == PixelSize {}) {
        auto const start = bytesAt(bytes, header.picture.offset, 64);
        int width = 0;
        int height = 0;
        if (WebPGetInfo(start.data(), start.size(), &width, &height) == 0)
            return {};
        header.traits.size = { width, height };
    }
    return header;
}

/// One picture's pixels, decoded as far as its bytes reach.
class WebpPixels {
public:
    WebpPixels() { WebPInitDecoderConfig(&config_); }
    ~WebpPixels()
    {
        if (decoder_ != nullptr)
            WebPIDelete(decoder_);
        WebPFreeDecBuffer(&config_.output);
    }
    WebpPixels(WebpPixels const&) = delete;
    WebpPixels& operator=(WebpPixels const&) = delete;

    /// `scaled`: what the decoder itself is to reduce the picture to.
    bool decode(std::vector<std::uint8_t> const& chunks, int maxPixel)
    {
        if (WebPGetFeatures(chunks.data(), chunks.size(), &config_.input) != VP8_STATUS_OK)
            return false;
        PixelSize const full { config_.input.width, config_.input.height };
        size_ = full;
        // The decoder's own reduction averages areas: good enough down to twice the size.
        if (maxPixel > 0 && full.longestSide() >= 4 * maxPixel) {
            size_ = fittedSize(full, 2 * maxPixel);
            config_.options.use_scaling = 1;
            config_.options.scaled_width = size_.width;
            config_.options.scaled_height = size_.height;
        }
        auto const bytes
            = static_cast<std::size_t>(full.width) * static_cast<std::size_t>(full.height) * 4;
        if (bytes > DecodeLimits::memory)
            return false;
        config_.output.colorspace = MODE_bgrA;
        decoder_ = WebPIDecode(nullptr, 0, &config_);
        if (decoder_ == nullptr)
            return false;
        auto const status = WebPIUpdate(decoder_, chunks.data(), chunks.size());
        if (status != VP8_STATUS_OK && status != VP8_STATUS_SUSPENDED)
            return false;
        pixels_ = WebPIDecGetRGB(decoder_, &rows_, nullptr, nullptr, &stride_);
        return pixels_ != nullptr && rows_ > 0;
    }

    [[nodiscard]] PixelSize size() const { return size_; }
    [[nodiscard]] bool isScaled() const { return config_.options.use_scaling != 0; }
    [[nodiscard]] int rows() const { return rows_; }
    [[nodiscard]] std::uint8_t const* row(int y) const
    {
        return pixels_ + std::ptrdiff_t(stride_) * y;
    }

private:
    WebPDecoderConfig config_ {};
    WebPIDecoder* decoder_ = nullptr;
    PixelSize size_;
    std::uint8_t const* pixels_ = nullptr;
    int rows_ = 0;
    int stride_ = 0;
};

// The picture on its canvas, transparent around it.
void drawRows(
    WebpPixels const& pixels, PixelSize canvas, int left, int top, PictureBuilder& builder)
{
    auto const shown = std::max(0, std::min(pixels.size().width, canvas.width - left));
    for (int y = 0; y < canvas.height; ++y) {
        auto* row = builder.nextRow();
        auto const line = y - top;
        if (line >= pixels.rows() && line < pixels.size().height)
            return;
        if (shown < canvas.width || line < 0 || line >= pixels.rows())
            std::memset(row, 0, static_cast<std::size_t>(canvas.width) * 4);
        if (line >= 0 && line < pixels.rows() && shown > 0)
            std::memcpy(row + std::ptrdiff_t(left) * 4, pixels.row(line),
                static_cast<std::size_t>(shown) * 4);
        builder.commitRow();
    }
}

class WebpSource final : public PhotoSource {
public:
    explicit WebpSource(std::unique_ptr<ByteSource> bytes)
        : PhotoSource(std::move(bytes), headBytes)
        , header_(readHeader(this->bytes()))
    {
        if (header_)
            setTraits(header_->traits);
    }

    [[nodiscard]] bool isReadable() const { return header_.has_value(); }
    [[nodiscard]] std::string_view typeIdentifier() const override
    {
        return "org.webmproject.webp";
    }
    [[nodiscard]] std::size_t frameCount() override { return header_->frames; }

private:
    [[nodiscard]] std::optional<DecodedImage> decodeStored(int maxPixel) override
    {
        auto const canvas = traits().size;
        auto const& place = header_->picture;
        if (place.length > DecodeLimits::wholeFile)
            return {};
        auto const chunks = bytesAt(bytes(), place.offset, static_cast<std::size_t>(place.length));
        WebpPixels pixels;
        // On a canvas of its own size a frame must keep its place to the pixel.
        if (!pixels.decode(chunks, header_->isAnimated ? 0 : maxPixel))
            return {};
        auto const target = fittedSize(canvas, maxPixel);
        auto const rows = header_->isAnimated ? canvas : pixels.size();
        PictureBuilder builder;
        if (!builder.begin(rows, target, PixelFormat::premultiplied))
            return {};
        drawRows(pixels, rows, header_->x, header_->y, builder);
        DecodedImage image;
        image.bitmap = builder.finish(profile(), Channels::color);
        image.wasReduced = pixels.isScaled();
        if (image.bitmap.isEmpty())
            return {};
        return image;
    }

    [[nodiscard]] std::vector<std::uint8_t> readProfile() override
    {
        return profileAt(header_->profile);
    }

    std::optional<WebpHeader> header_;
};

} // namespace

std::unique_ptr<ImageSource> openWebp(std::unique_ptr<ByteSource> bytes)
{
    return openPhoto<WebpSource>(std::move(bytes));
}

} // namespace pixelhain
