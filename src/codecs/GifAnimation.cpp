#include "codecs/AnimationReader.h"
#include "codecs/GifReader.h"

namespace pixelhain {

namespace {

// The number behind "NETSCAPE2.0" says how often the frames come again; without one they do not.
constexpr int withoutExtension = 1;

// One block of an extension, cut to what the stream has.
std::vector<std::uint8_t> nextBlock(ByteStream& stream)
{
    auto const length = stream.next();
    std::vector<std::uint8_t> block(length > 0 ? static_cast<std::size_t>(length) : 0);
    block.resize(stream.read(block.data(), block.size()));
    return block;
}

// Plays that an application extension asks for, the stream being at its first block.
std::optional<int> playsIn(ByteStream& stream)
{
    std::optional<int> plays;
    auto const name = nextBlock(stream);
    auto const isLoop
        = name.size() == 11 && (startsWith(name, "NETSCAPE2.0") || startsWith(name, "ANIMEXTS1.0"));
    for (auto block = name; !block.empty();) {
        block = nextBlock(stream);
        if (!isLoop || block.size() < 3 || (block[0] & 7) != 1)
            continue;
        auto const again = int { littleEndian16(block.data() + 1) };
        plays = again == 0 ? 0 : again + 1;
    }
    return plays;
}

struct GifHeader {
    PixelSize canvas;
    int plays = withoutExtension;
};

// Goes behind the extensions that follow, and behind the sign of what comes then, which it returns.
int readExtensions(ByteStream& stream, std::optional<int>& plays)
{
    for (;;) {
        auto const sign = stream.next();
        if (sign != '!')
            return sign;
        if (stream.next() != 0xFF) {
            while (!nextBlock(stream).empty()) { }
        } else if (auto const found = playsIn(stream)) {
            plays = found;
        }
    }
}

// Goes behind an image whose sign has been read; false if it takes more than `most` bytes.
bool skipImage(ByteStream& stream, std::size_t most)
{
    std::array<std::uint8_t, 9> head {};
    if (stream.read(head.data(), head.size()) != head.size())
        return false;
    if ((head[8] & 0x80) != 0)
        stream.skip(std::uint64_t { 6 } << (head[8] & 7));
    stream.skip(1);
    for (std::size_t skipped = 0; skipped < most;) {
        auto const length = stream.next();
        if (length <= 0)
            return length == 0;
        stream.skip(static_cast<std::uint64_t>(length));
        skipped += static_cast<std::size_t>(length);
    }
    return false;
}

// What stands in front of the first image, and, of how often it is shown, behind that: some
// writers learn of it only then.
std::optional<GifHeader> readHeader(ByteSource const& bytes)
{
    constexpr std::size_t mostOfImage = std::size_t { 4 } << 20;
    ByteStream stream(bytes);
    std::array<std::uint8_t, 13> screen {};
    if (stream.read(screen.data(), screen.size()) != screen.size())
        return {};
    GifHeader header { { littleEndian16(&screen[6]), littleEndian16(&screen[8]) } };
    if ((screen[10] & 0x80) != 0)
        stream.skip(std::uint64_t { 6 } << (screen[10] & 7));
    std::optional<int> plays;
    auto const sign = readExtensions(stream, plays);
    if (sign == ',' && !plays && skipImage(stream, mostOfImage))
        readExtensions(stream, plays);
    header.plays = plays.value_or(withoutExtension);
    return header;
}

Disposal disposalOf(int mode)
{
    switch (mode) {
    case DISPOSE_BACKGROUND:
        return Disposal::clear;
    case DISPOSE_PREVIOUS:
    case DISPOSE_PREVIOUS + 1: // from writers that took a number for a bit
        return Disposal::restore;
    default:
        return Disposal::keep;
    }
}

class GifAnimation final : public AnimationReader {
public:
    GifAnimation(ByteSource const& bytes, GifHeader const& header)
        : bytes_(bytes)
        , header_(header)
    {
        restart();
    }

    [[nodiscard]] PixelSize canvasSize() const override { return header_.canvas; }
    [[nodiscard]] int loopCount() const override { return header_.plays; }

    void restart() override
    {
        gif_.reset();
        stream_.emplace(bytes_);
        gif_ = openGifStream(*stream_);
    }

    [[nodiscard]] std::optional<std::chrono::microseconds> draw(AnimationCanvas& canvas) override
    {
        auto const control = gif_ ? goToGifImage(gif_.get()) : std::nullopt;
        if (!control)
            return {};
        auto const& image = gif_->Image;
        if (image.Width <= 0 || image.Height <= 0)
            return {};
        canvas.beginFrame({ image.Left, image.Top, { image.Width, image.Height } },
            disposalOf(control->DisposalMode));
        auto const isDrawn = drawLines(canvas, control->TransparentColor);
        forgetImages();
        if (!isDrawn)
            return {};
        return std::chrono::milliseconds(std::int64_t { control->DelayTime } * 10);
    }

private:
    [[nodiscard]] bool drawLines(AnimationCanvas& canvas, int hole)
    {
        auto const& image = gif_->Image;
        auto const colors = gifColors(gif_.get(), hole);
        line_.resize(static_cast<std::size_t>(image.Width));
        if (!image.Interlace)
            return drawPass(canvas, colors, { 0, 1 });
        for (auto const& pass : gifPasses) {
            if (!drawPass(canvas, colors, pass))
                return false;
        }
        return true;
    }

    // All lines are read, those too that nobody sees: the next frame lies behind them.
    [[nodiscard]] bool drawPass(
        AnimationCanvas& canvas, GifColors const& colors, GifPass const& pass)
    {
        for (int y = pass.first; y < gif_->Image.Height; y += pass.step) {
            if (DGifGetLine(gif_.get(), line_.data(), gif_->Image.Width) == GIF_ERROR)
                return false;
            auto const [to, first, count] = canvas.visible(y);
            for (int x = 0; to != nullptr && x < count; ++x) {
                auto const& color = colors[line_[static_cast<std::size_t>(first + x)]];
                if (color[3] != 0)
                    std::memcpy(to + std::ptrdiff_t(x) * 4, color.data(), 4);
            }
        }
        return true;
    }

    // The library remembers every image and its colours for whoever writes them again.
    void forgetImages()
    {
        GifFreeSavedImages(gif_.get());
        gif_->SavedImages = nullptr;
        gif_->ImageCount = 0;
    }

    ByteSource const& bytes_;
    GifHeader header_;
    std::optional<ByteStream> stream_;
    Gif gif_;
    std::vector<std::uint8_t> line_;
};

} // namespace

std::unique_ptr<AnimationReader> readGifAnimation(ByteSource const& bytes)
{
    auto const header = readHeader(bytes);
    return header ? std::make_unique<GifAnimation>(bytes, *header) : nullptr;
}

} // namespace pixelhain
