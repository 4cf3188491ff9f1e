// One program per format: PIXELHAIN_READER names its reader.
#include "base/Resample.h"
#include "codecs/AnimationReader.h"
#include "codecs/ByteView.h"
#include "fuzz/Fuzz.h"

using namespace pixelhain;

namespace {

constexpr int smallSide = 48;
// Larger claims and longer plays only cost time: what bounds them is the limits of a worker.
constexpr std::int64_t fewPixels = 1 << 14;
constexpr int fewFrames = 24;

void checkPicture(AnimationCanvas const& canvas, int maxPixel)
{
    auto const bitmap = canvas.picture(maxPixel);
    mustHold(!bitmap.isEmpty());
    mustHold(bitmap.size == fittedSize(canvas.size(), maxPixel));
    for (int y = 0; y < bitmap.size.height; ++y) {
        auto const* at = bitmap.row(y);
        for (int x = 0; x < bitmap.size.width; ++x, at += 4) {
            mustHold(!bitmap.isOpaque || at[3] == 255);
            mustHold(at[0] <= at[3] && at[1] <= at[3] && at[2] <= at[3]);
        }
    }
}

int playOnce(AnimationReader& reader, AnimationCanvas& canvas)
{
    canvas.reset();
    int frames = 0;
    while (frames < fewFrames) {
        auto const delay = reader.draw(canvas);
        if (!delay)
            break;
        mustHold(delay->count() >= 0);
        checkPicture(canvas, frames % 2 == 0 ? 0 : smallSide);
        ++frames;
    }
    return frames;
}

// Check sums would turn away nearly all that is tried.
std::vector<std::uint8_t> withSums(std::vector<std::uint8_t> bytes)
{
    if (!startsWith(bytes, "\x89PNG"))
        return bytes;
    for (std::size_t at = 8; at + 12 <= bytes.size();) {
        auto const length = std::size_t { bigEndian32(&bytes[at]) };
        if (length > bytes.size() - at - 12)
            break;
        std::uint32_t sum = 0xFFFFFFFF;
        for (std::size_t i = at + 4; i < at + 8 + length; ++i) {
            sum ^= bytes[i];
            for (int bit = 0; bit < 8; ++bit)
                sum = sum >> 1 ^ ((sum & 1) != 0 ? 0xEDB88320 : 0);
        }
        for (std::size_t i = 0; i < 4; ++i)
            bytes[at + 8 + length + i] = static_cast<std::uint8_t>(~sum >> (24 - 8 * i));
        at += length + 12;
    }
    return bytes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t length)
{
    auto const bytes = withSums({ data, data + length });
    SpanBytes const source(bytes);
    auto const reader = PIXELHAIN_READER(source);
    if (!reader)
        return 0;
    mustHold(reader->loopCount() >= 0);
    auto const size = reader->canvasSize();
    AnimationCanvas canvas;
    if (std::int64_t { size.width } * size.height > fewPixels || !canvas.create(size))
        return 0;
    auto const frames = playOnce(*reader, canvas);
    reader->restart();
    mustHold(playOnce(*reader, canvas) == frames);
    return 0;
}
