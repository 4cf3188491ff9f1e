#include "codecs/AnimationReader.h"
#include "codecs/ByteView.h"
#include "codecs/DecodeLimits.h"
#include <array>

#include <webp/decode.h>

namespace pixelhain {

namespace {

constexpr std::uint64_t firstChunk = 12;
constexpr std::uint64_t frameHeader = 16;
// Chunks besides the frames: a hole in a file reads as empty ones without end.
constexpr int mostOthers = 4096;

int number24(std::uint8_t const* at)
{
    return at[0] | at[1] << 8 | at[2] << 16;
}

struct Chunk {
    std::array<std::uint8_t, 4> type {};
    std::uint64_t offset = 0; ///< of the data
    std::uint32_t length = 0;

    [[nodiscard]] bool is(char const (&name)[5]) const { return startsWith(type, name); }
    [[nodiscard]] std::uint64_t next() const { return offset + length + (length & 1); }
};

std::optional<Chunk> chunkAt(ByteSource const& bytes, std::uint64_t offset)
{
    std::array<std::uint8_t, 8> head {};
    if (bytes.readAt(offset, head) != head.size())
        return {};
    return Chunk { { head[0], head[1], head[2], head[3] }, offset + head.size(),
        littleEndian32(head.data() + 4) };
}

struct WebpHeader {
    PixelSize canvas;
    bool isAnimated = false;
    int plays = 1;
    std::vector<std::uint8_t> profile;
    std::uint64_t firstFrame = 0;
};

void takeChunk(ByteSource const& bytes, Chunk const& chunk, WebpHeader& header)
{
    auto const data = bytesAt(bytes, chunk.offset, std::min<std::size_t>(chunk.length, 10));
    if (chunk.is("VP8X") && data.size() >= 10) {
        header.isAnimated = (data[0] & 0x02) != 0;
        header.canvas = { number24(&data[4]) + 1, number24(&data[7]) + 1 };
    } else if (chunk.is("ANIM") && data.size() >= 6) {
        header.plays = littleEndian16(&data[4]);
    } else if (chunk.is("ICCP") && chunk.length <= DecodeLimits::colorProfile) {
        header.profile = bytesAt(bytes, chunk.offset, chunk.length);
    }
}

// What stands in front of the first frame.
std::optional<WebpHeader> readHeader(ByteSource const& bytes)
{
    WebpHeader header;
    auto offset = firstChunk;
    for (int i = 0; i < mostOthers; ++i) {
        auto const chunk = chunkAt(bytes, offset);
        if (!chunk)
            break;
        if (chunk->is("ANMF")) {
            header.firstFrame = offset;
            break;
        }
        takeChunk(bytes, *chunk, header);
        offset = chunk->next();
    }
    if (!header.isAnimated || header.firstFrame == 0)
        return {};
    return header;
}

/// The head of a frame chunk.
struct FrameHead {
    FramePlace place;
    std::chrono::milliseconds delay {};
    Disposal disposal = Disposal::keep;
    Blend blend = Blend::over;
};

FrameHead headIn(std::uint8_t const* data)
{
    FrameHead head;
    head.place = { number24(data) * 2, number24(data + 3) * 2,
        { number24(data + 6) + 1, number24(data + 9) + 1 } };
    head.delay = std::chrono::milliseconds(number24(data + 12));
    head.disposal = (data[15] & 1) != 0 ? Disposal::clear : Disposal::keep;
    head.blend = (data[15] & 2) != 0 ? Blend::replace : Blend::over;
    return head;
}

class WebpAnimation final : public AnimationReader {
public:
    WebpAnimation(ByteSource const& bytes, WebpHeader header)
        : bytes_(bytes)
        , header_(std::move(header))
        , offset_(header_.firstFrame)
    {
    }

    [[nodiscard]] PixelSize canvasSize() const override { return header_.canvas; }
    [[nodiscard]] int loopCount() const override { return header_.plays; }
    [[nodiscard]] std::vector<std::uint8_t> profile() const override { return header_.profile; }
    void restart() override { offset_ = header_.firstFrame; }

    [[nodiscard]] std::optional<std::chrono::microseconds> draw(AnimationCanvas& canvas) override
    {
        auto const chunk = nextFrame();
        if (!chunk || chunk->length <= frameHeader || chunk->length > DecodeLimits::packedFrame)
            return {};
        packed_.resize(chunk->length);
        if (bytes_.readAt(chunk->offset, packed_) != packed_.size())
            return {};
        auto const head = headIn(packed_.data());
        canvas.beginFrame(head.place, head.disposal);
        if (!drawPicture(canvas, head))
            return {};
        return head.delay;
    }

private:
    [[nodiscard]] std::optional<Chunk> nextFrame()
    {
        for (int others = 0; others < mostOthers; ++others) {
            auto const chunk = chunkAt(bytes_, offset_);
            if (!chunk)
                return {};
            offset_ = chunk->next();
            if (chunk->is("ANMF"))
                return chunk;
        }
        return {};
    }

    [[nodiscard]] bool drawPicture(AnimationCanvas& canvas, FrameHead const& head)
    {
        auto const data = ByteSpan(packed_).subspan(frameHeader);
        auto const size = head.place.size;
        auto const canvasSize = canvas.size();
        WebPDecoderConfig config {};
        if (WebPInitDecoderConfig(&config) == 0
            || WebPGetFeatures(data.data(), data.size(), &config.input) != VP8_STATUS_OK
            || config.input.width != size.width || config.input.height != size.height
            || std::int64_t { size.width } * size.height > DecodeLimits::canvasPixels)
            return false;
        auto const isInside = head.place.x + size.width <= canvasSize.width
            && head.place.y + size.height <= canvasSize.height;
        // What hides all that is below it needs no place of its own.
        if (isInside && (head.blend == Blend::replace || config.input.has_alpha == 0)) {
            auto const stride = static_cast<std::size_t>(canvasSize.width) * 4;
            return decode(data, config, canvas.visible(0).to, stride);
        }
        auto const stride = static_cast<std::size_t>(size.width) * 4;
        pixels_.resize(stride * static_cast<std::size_t>(size.height));
        if (!decode(data, config, pixels_.data(), stride))
            return false;
        for (int y = 0; y < size.height; ++y)
            canvas.drawRow(y, pixels_.data() + stride * static_cast<std::size_t>(y), head.blend);
        return true;
    }

    [[nodiscard]] static bool decode(
        ByteSpan data, WebPDecoderConfig& config, std::uint8_t* to, std::size_t stride)
    {
        auto const height = static_cast<std::size_t>(config.input.height);
        auto const lastRow = static_cast<std::size_t>(config.input.width) * 4;
        config.output.colorspace = MODE_bgrA;
        config.output.is_external_memory = 1;
        config.output.u.RGBA = { to, static_cast<int>(stride), stride * (height - 1) + lastRow };
        return WebPDecode(data.data(), data.size(), &config) == VP8_STATUS_OK;
    }

    ByteSource const& bytes_;
    WebpHeader header_;
    std::uint64_t offset_;
    std::vector<std::uint8_t> packed_;
    std::vector<std::uint8_t> pixels_;
};

} // namespace

std::unique_ptr<AnimationReader> readWebpAnimation(ByteSource const& bytes)
{
    auto header = readHeader(bytes);
    return header ? std::make_unique<WebpAnimation>(bytes, std::move(*header)) : nullptr;
}

} // namespace pixelhain
