#include "codecs/GifSource.h"
#include "codecs/DecodeLimits.h"
#include "codecs/GifReader.h"
#include "codecs/PhotoSource.h"
#include "codecs/PictureBuilder.h"
#include <array>
#include <cstdlib>

namespace pixelhain {

namespace {

constexpr std::size_t headBytes = std::size_t { 4 } << 10;

// Images in the file, by its blocks alone: nothing is decompressed.
std::size_t countFrames(ByteSource const& bytes)
{
    ByteStream stream(bytes);
    std::array<std::uint8_t, 13> screen {};
    if (stream.read(screen.data(), screen.size()) != screen.size())
        return 0;
    auto const skipColors = [&](int flags) {
        if ((flags & 0x80) != 0)
            stream.skip(std::uint64_t { 6 } << (flags & 7));
    };
    auto const skipBlocks = [&] {
        int length = 0;
        while ((length = stream.next()) > 0)
            stream.skip(static_cast<std::uint64_t>(length));
        return length == 0;
    };
    skipColors(screen[10]);
    std::size_t frames = 0;
    while (frames < DecodeLimits::frames) {
        auto const kind = stream.next();
        if (kind == '!') {
            stream.skip(1);
        } else if (kind == ',') {
            std::array<std::uint8_t, 9> image {};
            if (stream.read(image.data(), image.size()) != image.size())
                break;
            skipColors(image[8]);
            stream.skip(1);
            ++frames;
        } else {
            break;
        }
        if (!skipBlocks())
            break;
    }
    return frames;
}

struct Free {
    void operator()(GifByteType* memory) const { std::free(memory); }
};

/// The lines of the first image in the order in which they are shown.
class Lines {
public:
    explicit Lines(GifFileType* gif)
        : gif_(gif)
        , width_(static_cast<std::size_t>(gif->Image.Width))
        , height_(static_cast<std::size_t>(gif->Image.Height))
    {
        auto const lines = gif->Image.Interlace ? height_ : 1;
        if (width_ == 0 || height_ == 0 || width_ * lines > DecodeLimits::memory)
            return;
        pixels_.reset(static_cast<GifByteType*>(std::calloc(lines, width_)));
        if (pixels_ && gif->Image.Interlace)
            readPasses();
    }

    /// The next line; null when no more can be read.
    GifByteType const* next()
    {
        if (!pixels_ || line_ == height_)
            return nullptr;
        if (gif_->Image.Interlace)
            return line_ < available_ ? pixels_.get() + width_ * line_++ : nullptr;
        ++line_;
        if (DGifGetLine(gif_, pixels_.get(), gif_->Image.Width) == GIF_ERROR)
            return nullptr;
        return pixels_.get();
    }

private:
    // A line that a later pass would have brought repeats the one above it.
    void readPasses()
    {
        std::vector<bool> isRead(height_);
        auto isCut = false;
        for (auto const& pass : gifPasses) {
            for (auto y = static_cast<std::size_t>(pass.first); y < height_ && !isCut;
                 y += static_cast<std::size_t>(pass.step)) {
                isCut
                    = DGifGetLine(gif_, pixels_.get() + width_ * y, gif_->Image.Width) == GIF_ERROR;
                isRead[y] = !isCut;
            }
        }
        available_ = isRead[0] ? height_ : 0;
        for (std::size_t y = 1; isCut && y < available_; ++y) {
            if (!isRead[y])
                std::memcpy(pixels_.get() + width_ * y, pixels_.get() + width_ * (y - 1), width_);
        }
    }

    GifFileType* gif_;
    std::size_t width_;
    std::size_t height_;
    std::size_t line_ = 0;
    std::size_t available_ = 0;
    std::unique_ptr<GifByteType, Free> pixels_;
};

// Rows of the canvas: the image where it lies, transparent around it.
bool drawRows(GifFileType* gif, GifColors const& colors, PixelSize canvas, PictureBuilder& builder)
{
    auto const& image = gif->Image;
    auto const shown = std::max(0, std::min(image.Width, canvas.width - image.Left));
    Lines lines(gif);
    auto hasLine = false;
    for (int y = 0; y < canvas.height; ++y) {
        auto* row = builder.nextRow();
        std::memset(row, 0, static_cast<std::size_t>(canvas.width) * 4);
        if (y >= image.Top && y < image.Top + image.Height) {
            auto const* line = lines.next();
            if (line == nullptr)
                return hasLine;
            hasLine = true;
            auto* out = row + std::ptrdiff_t(image.Left) * 4;
            for (int x = 0; x < shown; ++x, out += 4)
                std::memcpy(out, colors[line[x]].data(), 4);
        }
        builder.commitRow();
    }
    return hasLine;
}

class GifSource final : public PhotoSource {
public:
    explicit GifSource(std::unique_ptr<ByteSource> bytes)
        : PhotoSource(std::move(bytes), headBytes)
    {
        auto const head = this->bytes().head();
        if (head.size() < 13)
            return;
        PhotoTraits traits;
        traits.size = { littleEndian16(head.data() + 6), littleEndian16(head.data() + 8) };
        setTraits(traits);
    }

    [[nodiscard]] bool isReadable() const
    {
        return traits().size.width > 0 && traits().size.height > 0;
    }
    [[nodiscard]] std::string_view typeIdentifier() const override { return "com.compuserve.gif"; }
    [[nodiscard]] std::size_t frameCount() override { return countFrames(bytes()); }

private:
    [[nodiscard]] std::optional<DecodedImage> decodeStored(int maxPixel) override
    {
        ByteStream stream(bytes());
        auto const gif = openGifStream(stream);
        auto const control = gif ? goToGifImage(gif.get()) : std::nullopt;
        auto const canvas = traits().size;
        PictureBuilder builder;
        if (!control
            || !builder.begin(canvas, fittedSize(canvas, maxPixel), PixelFormat::premultiplied)
            || !drawRows(
                gif.get(), gifColors(gif.get(), control->TransparentColor), canvas, builder))
            return {};
        DecodedImage image;
        image.bitmap = builder.finish({}, Channels::color);
        image.isIndexed = true;
        if (image.bitmap.isEmpty())
            return {};
        return image;
    }
};

} // namespace

std::unique_ptr<ImageSource> openGif(std::unique_ptr<ByteSource> bytes)
{
    return openPhoto<GifSource>(std::move(bytes));
}

} // namespace pixelhain
