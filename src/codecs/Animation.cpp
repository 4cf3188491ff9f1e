#include "codecs/Animation.h"
#include "base/Resample.h"
#include "codecs/AnimationReader.h"
#include "codecs/ColorConversion.h"
#include "codecs/DecodeLimits.h"
#include "codecs/ImageCodecs.h"
#include <array>
#include <exception>
#include <utility>

namespace pixelhain {

namespace {

class CodecAnimation final : public AnimationSource {
public:
    CodecAnimation(
        std::unique_ptr<ByteSource> bytes, std::unique_ptr<AnimationReader> reader, int maxPixel)
        : bytes_(std::move(bytes))
        , reader_(std::move(reader))
        , maxPixel_(maxPixel)
    {
        if (auto profile = reader_->profile(); changesColors(profile))
            profile_ = std::move(profile);
    }

    [[nodiscard]] bool isReadable() { return canvas_.create(reader_->canvasSize()); }
    [[nodiscard]] PixelSize frameSize() const override
    {
        return fittedSize(canvas_.size(), maxPixel_);
    }
    [[nodiscard]] int loopCount() const override { return reader_->loopCount(); }

    [[nodiscard]] AnimationStep nextFrame() override
    try {
        if (isOver_ || frames_ >= DecodeLimits::frames)
            return AnimationEnd::ofLoop;
        auto const delay = reader_->draw(canvas_);
        isOver_ = !delay;
        if (isOver_)
            return frames_ == 0 ? brokenFirst() : AnimationEnd::ofLoop;
        AnimationFrame frame { canvas_.picture(maxPixel_), shownDelay(*delay) };
        if (frame.bitmap.isEmpty())
            return AnimationEnd::ofPlay;
        convertToSrgb(frame.bitmap, PixelFormat::premultiplied, Channels::color, profile_);
        ++frames_;
        return frame;
    } catch (std::exception const&) {
        isOver_ = true;
        return AnimationEnd::ofPlay;
    }

    void restart() override
    {
        frames_ = 0;
        isOver_ = false;
        canvas_.reset();
        reader_->restart();
    }

    void stop() override { }

private:
    // Of a damaged still picture what is there is shown too.
    [[nodiscard]] AnimationStep brokenFirst()
    {
        auto const still = openImage(std::make_unique<SliceBytes>(*bytes_, 0, bytes_->size()));
        auto image = still ? still->decode(maxPixel_) : std::nullopt;
        if (!image || image->bitmap.size != frameSize())
            return AnimationEnd::ofLoop;
        ++frames_;
        return AnimationFrame { std::move(image->bitmap), shownDelay({}) };
    }

    std::unique_ptr<ByteSource> bytes_;
    std::unique_ptr<AnimationReader> reader_; // reads the bytes
    int maxPixel_;
    std::vector<std::uint8_t> profile_;
    AnimationCanvas canvas_;
    std::size_t frames_ = 0;
    bool isOver_ = false; ///< until the next restart
};

std::unique_ptr<AnimationReader> readerOf(ByteSource const& bytes)
{
    std::array<std::uint8_t, 12> start {};
    auto const known = ByteSpan(start).first(bytes.readAt(0, start));
    if (startsWith(known, "GIF8"))
        return readGifAnimation(bytes);
    if (startsWith(known, "\x89PNG\r\n\x1A\n"))
        return readPngAnimation(bytes);
    if (startsWith(known, "RIFF") && known.size() == 12 && startsWith(known.subspan(8), "WEBP"))
        return readWebpAnimation(bytes);
    return nullptr;
}

} // namespace

std::chrono::microseconds shownDelay(std::chrono::microseconds stated)
{
    using namespace std::chrono_literals;
    return stated <= 10ms ? 100ms : stated;
}

std::unique_ptr<AnimationSource> openAnimation(std::unique_ptr<ByteSource> bytes, int maxPixel)
try {
    auto reader = bytes ? readerOf(*bytes) : nullptr;
    if (!reader)
        return nullptr;
    auto animation
        = std::make_unique<CodecAnimation>(std::move(bytes), std::move(reader), maxPixel);
    if (!animation->isReadable())
        return nullptr;
    return animation;
} catch (std::exception const&) {
    return nullptr;
}

} // namespace pixelhain
