#include "codecs/JxlStream.h"
#include "codecs/DecodeLimits.h"
#include <algorithm>

#include <jxl/thread_parallel_runner.h>

namespace pixelhain {

namespace {

// Each worker has a processor to itself where pictures wait, and only the one in front of the user
// may take a second.
constexpr std::size_t mostThreads = 2;
// A header or a preview needs little, pixels come faster in large pieces.
constexpr std::uint64_t firstPiece = std::uint64_t { 4 } << 10;
constexpr std::uint64_t largestPiece = std::uint64_t { 1 } << 20;
// A JPEG keeps its EXIF block in 64 KiB.
constexpr std::size_t mostExif = std::size_t { 1 } << 20;

/// Memory that a decoder writes into and asks for more of.
class Growing {
public:
    explicit Growing(std::size_t first) { bytes_.resize(first); }

    [[nodiscard]] std::uint8_t* free() { return bytes_.data() + used_; }
    [[nodiscard]] std::size_t freeBytes() const { return bytes_.size() - used_; }
    /// `left`: what the decoder has not written into of `freeBytes`.
    void take(std::size_t left) { used_ = bytes_.size() - left; }
    [[nodiscard]] bool grow(std::size_t most)
    {
        if (bytes_.size() >= most)
            return false;
        bytes_.resize(std::min(most, bytes_.size() * 2));
        return true;
    }
    [[nodiscard]] std::vector<std::uint8_t> finish()
    {
        bytes_.resize(used_);
        return std::move(bytes_);
    }

private:
    std::vector<std::uint8_t> bytes_;
    std::size_t used_ = 0;
};

bool isExif(JxlDecoder* decoder)
{
    JxlBoxType type {};
    return JxlDecoderGetBoxType(decoder, type, JXL_TRUE) == JXL_DEC_SUCCESS
        && std::equal(std::begin(type), std::end(type), "Exif");
}

std::vector<std::uint8_t> readExifBox(JxlStream& stream)
{
    auto* decoder = stream.decoder();
    Growing box(std::size_t { 64 } << 10);
    if (JxlDecoderSetBoxBuffer(decoder, box.free(), box.freeBytes()) != JXL_DEC_SUCCESS)
        return {};
    while (stream.next() == JXL_DEC_BOX_NEED_MORE_OUTPUT) {
        box.take(JxlDecoderReleaseBoxBuffer(decoder));
        if (!box.grow(mostExif)
            || JxlDecoderSetBoxBuffer(decoder, box.free(), box.freeBytes()) != JXL_DEC_SUCCESS)
            return {};
    }
    box.take(JxlDecoderReleaseBoxBuffer(decoder));
    return box.finish();
}

} // namespace

JxlStream::JxlStream(ByteSource const& bytes, int events, Threads threads)
    : bytes_(bytes)
    , decoder_(JxlDecoderCreate(nullptr), JxlDecoderDestroy)
    , endsWithFile_((events & JXL_DEC_BOX) != 0)
{
    if (threads == Threads::some)
        runner_ = std::shared_ptr<void>(
            JxlThreadParallelRunnerCreate(nullptr, mostThreads), JxlThreadParallelRunnerDestroy);
    auto* decoder = decoder_.get();
    isReady_ = decoder != nullptr
        && (!runner_
            || JxlDecoderSetParallelRunner(decoder, JxlThreadParallelRunner, runner_.get())
                == JXL_DEC_SUCCESS)
        && JxlDecoderSubscribeEvents(decoder, events) == JXL_DEC_SUCCESS
        && JxlDecoderSetKeepOrientation(decoder, JXL_TRUE) == JXL_DEC_SUCCESS;
}

JxlDecoderStatus JxlStream::next()
{
    if (!isReady_)
        return JXL_DEC_ERROR;
    for (;;) {
        auto const status = JxlDecoderProcessInput(decoder_.get());
        if (status != JXL_DEC_NEED_MORE_INPUT || !feed())
            return status;
    }
}

bool JxlStream::feed()
{
    if (offset_ >= bytes_.size())
        return false;
    auto const left = JxlDecoderReleaseInput(decoder_.get());
    std::copy(piece_.end() - static_cast<std::ptrdiff_t>(left), piece_.end(), piece_.begin());
    auto const wanted = std::clamp(3 * offset_, firstPiece, largestPiece);
    auto const there = std::min<std::uint64_t>(wanted, bytes_.size() - offset_);
    piece_.resize(left + static_cast<std::size_t>(there));
    auto const got = bytes_.readAt(offset_, std::span(piece_).subspan(left));
    piece_.resize(left + got);
    offset_ += got;
    if (JxlDecoderSetInput(decoder_.get(), piece_.data(), piece_.size()) != JXL_DEC_SUCCESS)
        return false;
    // Whoever reads boxes must be told where the last one ends; a picture that is cut there would
    // count as an error.
    if (endsWithFile_ && offset_ >= bytes_.size())
        JxlDecoderCloseInput(decoder_.get());
    return got > 0;
}

std::optional<JxlHeader> readJxlHeader(ByteSource const& bytes)
{
    JxlStream stream(bytes, JXL_DEC_BASIC_INFO);
    JxlBasicInfo info {};
    if (stream.next() != JXL_DEC_BASIC_INFO
        || JxlDecoderGetBasicInfo(stream.decoder(), &info) != JXL_DEC_SUCCESS
        || !isWithinLimits(info.xsize, info.ysize))
        return {};
    JxlHeader header;
    header.size = { static_cast<int>(info.xsize), static_cast<int>(info.ysize) };
    header.orientation = info.orientation;
    header.isAnimated = info.have_animation != 0;
    if (info.have_preview != 0 && isWithinLimits(info.preview.xsize, info.preview.ysize))
        header.preview
            = { static_cast<int>(info.preview.xsize), static_cast<int>(info.preview.ysize) };
    return header;
}

std::size_t countJxlFrames(ByteSource const& bytes)
{
    JxlStream stream(bytes, JXL_DEC_FRAME);
    std::size_t frames = 0;
    while (frames < DecodeLimits::frames && stream.next() == JXL_DEC_FRAME)
        ++frames;
    return std::max<std::size_t>(frames, 1);
}

std::vector<std::uint8_t> readJxlExif(ByteSource const& bytes)
{
    JxlStream stream(bytes, JXL_DEC_BOX);
    if (JxlDecoderSetDecompressBoxes(stream.decoder(), JXL_TRUE) != JXL_DEC_SUCCESS)
        return {};
    for (std::size_t boxes = 0; boxes < DecodeLimits::boxes; ++boxes) {
        if (stream.next() != JXL_DEC_BOX)
            return {};
        if (!isExif(stream.decoder()))
            continue;
        auto block = readExifBox(stream);
        // The first number says how far behind it the TIFF header stands.
        if (block.size() < 4 || bigEndian32(block.data()) > block.size() - 4)
            return {};
        block.erase(block.begin(), block.begin() + 4 + bigEndian32(block.data()));
        return block;
    }
    return {};
}

std::vector<std::uint8_t> reconstructJpeg(ByteSource const& bytes)
{
    JxlStream stream(bytes, JXL_DEC_JPEG_RECONSTRUCTION | JXL_DEC_FULL_IMAGE);
    if (stream.next() != JXL_DEC_JPEG_RECONSTRUCTION)
        return {};
    auto* decoder = stream.decoder();
    // Nearly always a JPEG is no more than half as large again.
    Growing jpeg(static_cast<std::size_t>(
        std::min<std::uint64_t>(bytes.size() * 3 / 2 + 4096, DecodeLimits::wholeFile)));
    for (;;) {
        if (JxlDecoderSetJPEGBuffer(decoder, jpeg.free(), jpeg.freeBytes()) != JXL_DEC_SUCCESS)
            return {};
        auto const status = stream.next();
        jpeg.take(JxlDecoderReleaseJPEGBuffer(decoder));
        if (status == JXL_DEC_FULL_IMAGE)
            return jpeg.finish();
        if (status != JXL_DEC_JPEG_NEED_MORE_OUTPUT || !jpeg.grow(DecodeLimits::wholeFile))
            return {};
    }
}

} // namespace pixelhain
