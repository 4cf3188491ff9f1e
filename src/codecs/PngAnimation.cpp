#include "codecs/AnimationReader.h"
#include "codecs/ByteView.h"
#include "codecs/DecodeLimits.h"
#include "codecs/PngDecoder.h"
#include <array>
#include <string_view>

namespace pixelhain {

namespace {

constexpr std::uint64_t signatureBytes = 8;
constexpr std::uint64_t chunkFrame = 12; ///< length, type and check sum
constexpr std::size_t headerBytes = 13;
constexpr std::size_t controlBytes = 26;
// What every frame's pixels are read with; profiles are at most 4 MiB.
constexpr std::size_t mostCommonBytes = DecodeLimits::colorProfile * 2;
// Chunks that are neither frames nor parts of them.
constexpr int mostOthers = 4096;

struct Chunk {
    std::array<std::uint8_t, 4> type {};
    std::uint64_t offset = 0; ///< of the data
    std::uint32_t length = 0;

    [[nodiscard]] bool is(char const (&name)[5]) const { return startsWith(type, name); }
    [[nodiscard]] std::uint64_t next() const { return offset + length + 4; }
};

std::optional<Chunk> chunkAt(ByteSource const& bytes, std::uint64_t offset)
{
    std::array<std::uint8_t, 8> head {};
    if (bytes.readAt(offset, head) != head.size())
        return {};
    Chunk chunk { { head[4], head[5], head[6], head[7] }, offset + head.size(),
        bigEndian32(head.data()) };
    if (chunk.length > 0x7FFFFFFF)
        return {};
    return chunk;
}

std::uint32_t checkSum(ByteSpan type, ByteSpan data)
{
    static constexpr auto table = [] {
        std::array<std::uint32_t, 256> entries {};
        for (std::uint32_t i = 0; i < entries.size(); ++i) {
            auto value = i;
            for (int bit = 0; bit < 8; ++bit)
                value = value >> 1 ^ ((value & 1) != 0 ? 0xEDB88320 : 0);
            entries[i] = value;
        }
        return entries;
    }();
    std::uint32_t sum = 0xFFFFFFFF;
    for (auto const part : { type, data })
        for (auto const byte : part)
            sum = sum >> 8 ^ table[(sum ^ byte) & 0xFF];
    return ~sum;
}

// A chunk's data; nothing if they are cut or damaged.
std::optional<std::vector<std::uint8_t>> soundData(ByteSource const& bytes, Chunk const& chunk)
{
    auto data = bytesAt(bytes, chunk.offset, std::size_t { chunk.length } + 4);
    if (data.size() != std::size_t { chunk.length } + 4)
        return {};
    auto const sum = bigEndian32(data.data() + chunk.length);
    data.resize(chunk.length);
    if (sum != checkSum(chunk.type, data))
        return {};
    return data;
}

void put32(std::vector<std::uint8_t>& out, std::uint32_t value)
{
    for (int shift = 24; shift >= 0; shift -= 8)
        out.push_back(static_cast<std::uint8_t>(value >> shift));
}

void putChunk(std::vector<std::uint8_t>& out, std::string_view type, ByteSpan data)
{
    put32(out, static_cast<std::uint32_t>(data.size()));
    auto const* const name = reinterpret_cast<std::uint8_t const*>(type.data());
    out.insert(out.end(), name, name + type.size());
    out.insert(out.end(), data.begin(), data.end());
    put32(out, checkSum(ByteSpan(name, type.size()), data));
}

/// A frame control chunk.
struct FrameControl {
    FramePlace place;
    std::chrono::microseconds delay {};
    Disposal disposal = Disposal::keep;
    Blend blend = Blend::replace;
};

// Nothing if it says what no frame on this canvas may say.
std::optional<FrameControl> controlIn(ByteSpan data, PixelSize canvas)
{
    auto const number = [&data](std::size_t at) { return std::int64_t { bigEndian32(&data[at]) }; };
    auto const [width, height, x, y] = std::array { number(4), number(8), number(12), number(16) };
    auto const disposal = data[24];
    auto const blend = data[25];
    if (width == 0 || height == 0 || x + width > canvas.width || y + height > canvas.height
        || disposal > 2 || blend > 1)
        return {};
    auto const parts = std::int64_t { bigEndian16(&data[22]) };
    FrameControl control;
    control.place = { static_cast<int>(x), static_cast<int>(y),
        { static_cast<int>(width), static_cast<int>(height) } };
    control.delay = std::chrono::microseconds(
        std::int64_t { bigEndian16(&data[20]) } * 1'000'000 / (parts == 0 ? 100 : parts));
    control.disposal = static_cast<Disposal>(disposal);
    control.blend = blend == 0 ? Blend::replace : Blend::over;
    return control;
}

struct PngHeader {
    std::array<std::uint8_t, headerBytes> start {};
    PixelSize canvas;
    std::uint32_t frames = 0;
    std::uint32_t plays = 0;
    std::vector<std::uint8_t> common; ///< chunks that every frame's pixels are read with
    std::uint64_t firstFrame = 0; ///< where frames begin: a control chunk, or the default image
};

bool isCommon(Chunk const& chunk)
{
    return chunk.is("PLTE") || chunk.is("tRNS") || chunk.is("iCCP") || chunk.is("sRGB")
        || chunk.is("gAMA") || chunk.is("cHRM");
}

bool takeChunk(ByteSource const& bytes, Chunk const& chunk, PngHeader& header)
{
    if (chunk.is("IHDR")) {
        auto const width = bytes.readAt(chunk.offset, header.start) == headerBytes
            ? bigEndian32(header.start.data())
            : 0;
        auto const height = bigEndian32(header.start.data() + 4);
        if (width > DecodeLimits::side || height > DecodeLimits::side)
            return false;
        header.canvas = { static_cast<int>(width), static_cast<int>(height) };
    } else if (chunk.is("acTL")) {
        auto const data = bytesAt(bytes, chunk.offset, 8);
        if (chunk.length < 8 || data.size() < 8)
            return false;
        header.frames = bigEndian32(data.data());
        header.plays = bigEndian32(data.data() + 4);
    } else if (isCommon(chunk) && header.common.size() + chunk.length < mostCommonBytes) {
        auto const whole
            = bytesAt(bytes, chunk.offset - 8, static_cast<std::size_t>(chunk.length + chunkFrame));
        if (whole.size() != chunk.length + chunkFrame)
            return false;
        header.common.insert(header.common.end(), whole.begin(), whole.end());
    }
    return true;
}

std::optional<PngHeader> readHeader(ByteSource const& bytes)
{
    PngHeader header;
    auto offset = signatureBytes;
    for (int i = 0; i < mostOthers; ++i) {
        auto const chunk = chunkAt(bytes, offset);
        if (!chunk)
            return {};
        if (header.firstFrame == 0 && chunk->is("fcTL"))
            header.firstFrame = offset;
        if (chunk->is("IDAT")) {
            if (header.firstFrame == 0)
                header.firstFrame = offset;
            break;
        }
        if (!takeChunk(bytes, *chunk, header))
            return {};
        offset = chunk->next();
    }
    if (header.frames == 0 || header.canvas.width <= 0 || header.canvas.height <= 0)
        return {};
    return header;
}

class PngAnimation final : public AnimationReader {
public:
    PngAnimation(ByteSource const& bytes, PngHeader header)
        : bytes_(bytes)
        , header_(std::move(header))
    {
        restart();
    }

    [[nodiscard]] PixelSize canvasSize() const override { return header_.canvas; }
    [[nodiscard]] int loopCount() const override
    {
        return static_cast<int>(std::min<std::uint32_t>(header_.plays, 0x7FFFFFFF));
    }

    void restart() override
    {
        offset_ = header_.firstFrame;
        sequence_ = 0;
        drawn_ = 0;
    }

    [[nodiscard]] std::optional<std::chrono::microseconds> draw(AnimationCanvas& canvas) override
    {
        auto const control = drawn_ < header_.frames ? nextControl() : std::nullopt;
        auto const packed = control ? frameAsFile(control->place.size) : std::nullopt;
        auto const image = packed ? decodeCompletePng(SpanBytes(*packed)) : std::nullopt;
        if (!image || image->bitmap.size != control->place.size)
            return {};
        // There is nothing yet that the first frame could bring back.
        auto const isFirst = drawn_++ == 0;
        auto const disposal = isFirst && control->disposal == Disposal::restore ? Disposal::clear
                                                                                : control->disposal;
        canvas.beginFrame(control->place, disposal);
        for (int y = 0; y < image->bitmap.size.height; ++y)
            canvas.drawRow(y, image->bitmap.row(y), control->blend);
        return control->delay;
    }

private:
    // Whether a chunk's data bring the number that is due.
    [[nodiscard]] bool isInSequence(ByteSpan data)
    {
        return data.size() >= 4 && bigEndian32(data.data()) == sequence_++;
    }

    [[nodiscard]] std::optional<FrameControl> nextControl()
    {
        for (int others = 0; others < mostOthers;) {
            auto const chunk = chunkAt(bytes_, offset_);
            if (!chunk || chunk->is("IEND") || chunk->is("fdAT"))
                return {};
            offset_ = chunk->next();
            if (!chunk->is("fcTL")) {
                others += chunk->is("IDAT") ? 0 : 1; // the default image may have any number
                continue;
            }
            auto const data
                = chunk->length == controlBytes ? soundData(bytes_, *chunk) : std::nullopt;
            if (!data || !isInSequence(*data))
                return {};
            return controlIn(*data, header_.canvas);
        }
        return {};
    }

    // The frame that begins at `offset_` as a file of its own.
    [[nodiscard]] std::optional<std::vector<std::uint8_t>> frameAsFile(PixelSize size)
    {
        auto const pixels = framePixels();
        if (!pixels)
            return {};
        constexpr std::array<std::uint8_t, signatureBytes> signature { 0x89, 'P', 'N', 'G', '\r',
            '\n', 0x1A, '\n' };
        std::vector<std::uint8_t> file(signature.begin(), signature.end());
        std::vector<std::uint8_t> start;
        put32(start, static_cast<std::uint32_t>(size.width));
        put32(start, static_cast<std::uint32_t>(size.height));
        start.insert(start.end(), header_.start.begin() + 8, header_.start.end());
        file.reserve(pixels->size() + header_.common.size() + 100);
        putChunk(file, "IHDR", start);
        file.insert(file.end(), header_.common.begin(), header_.common.end());
        putChunk(file, "IDAT", *pixels);
        putChunk(file, "IEND", {});
        return file;
    }

    // The packed pixels behind a control chunk; nothing if they are none, damaged or out of order.
    [[nodiscard]] std::optional<std::vector<std::uint8_t>> framePixels()
    {
        std::vector<std::uint8_t> pixels;
        for (int others = 0; others < mostOthers;) {
            auto const chunk = chunkAt(bytes_, offset_);
            auto const isEnd = !chunk || chunk->is("fcTL") || chunk->is("IEND");
            if (isEnd)
                break;
            offset_ = chunk->next();
            auto const isLater = chunk->is("fdAT");
            if (!isLater && !chunk->is("IDAT")) {
                ++others;
                continue;
            }
            if (pixels.size() + chunk->length > DecodeLimits::packedFrame)
                return {};
            auto const data = soundData(bytes_, *chunk);
            if (!data || (isLater && !isInSequence(*data)))
                return {};
            pixels.insert(pixels.end(), data->begin() + (isLater ? 4 : 0), data->end());
        }
        if (pixels.empty())
            return {};
        return pixels;
    }

    ByteSource const& bytes_;
    PngHeader header_;
    std::uint64_t offset_ = 0;
    std::uint32_t sequence_ = 0; ///< the number that is due
    std::uint32_t drawn_ = 0;
};

} // namespace

std::unique_ptr<AnimationReader> readPngAnimation(ByteSource const& bytes)
{
    auto header = readHeader(bytes);
    return header ? std::make_unique<PngAnimation>(bytes, std::move(*header)) : nullptr;
}

} // namespace pixelhain
