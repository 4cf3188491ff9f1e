#include "codecs/CountedBytes.h"
#include "codecs/JpegPixels.h"
#include "codecs/JpegReduction.h"
#include "fuzz/Fuzz.h"
#include "support/LibraryJpeg.h"
#include <cstdlib>

using namespace pixelhain;

namespace {

// The library is asked about pictures only that it is done with soon.
constexpr std::int64_t mostPixels = 4'000'000;

std::vector<std::uint8_t> drawn(JpegReduction const& reduction, PixelSize size)
{
    auto const stride = static_cast<std::size_t>(size.width) * 4;
    std::vector<std::uint8_t> pixels(stride * static_cast<std::size_t>(size.height));
    JpegPixels rows(reduction.planes(), reduction.colors(), size.width);
    for (int y = 0; y < size.height; ++y)
        rows.writeRow(y, pixels.data() + static_cast<std::size_t>(y) * stride);
    return pixels;
}

void compare(PixelSize size, std::vector<std::uint8_t> const& pixels, LibraryEighth const& theirs,
    int tolerance)
{
    mustHold(theirs.size == size && theirs.pixels.size() == pixels.size());
    for (std::size_t i = 0; i < pixels.size(); ++i)
        mustHold(std::abs(pixels[i] - theirs.pixels[i]) <= tolerance);
}

// Bits that are not waited for show twice in blue.
void compareMeans(
    JpegReduction const& reduction, std::vector<std::uint8_t> const& pixels, ByteSpan bytes)
{
    for (auto const& plane : reduction.planes())
        if (plane.missingBits < 0 || !areMeansExact(plane.missingBits, (*plane.quantization)[0]))
            return;
    auto const means = libraryEighth(withMeansOnly(bytes));
    if (means && means->isSound)
        compare(means->size, pixels, *means, 4);
}

} // namespace

// Whatever the bytes are, the reduction comes to an end within its memory; what the JPEG library
// finds nothing wrong with looks the same in both.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t length)
{
    ByteSpan const bytes(data, length);
    std::uint64_t count = 0;
    CountedBytes const source(std::make_unique<SpanBytes>(bytes), count);
    // Small enough for more than one of them.
    JpegReduction reduction(source, (std::size_t { 8 } + length % 57) << 10);
    auto const whole = reduction.readFrame();
    auto const isRead = whole && std::int64_t { whole->width } * whole->height <= mostPixels
        && reduction.readMeans();
    // Once in all, and a little of the markers between scans.
    mustHold(count <= 2 * length + 1024);
    if (!isRead)
        return 0;
    auto const size = eighthOf(*whole);
    auto const pixels = drawn(reduction, size);
    auto const theirs = libraryEighth(bytes);
    if (!theirs || !theirs->isSound || !staysWithinLevels(bytes))
        return 0;
    if (theirs->isProgressive)
        compareMeans(reduction, pixels, bytes);
    else
        compare(size, pixels, *theirs, 1);
    return 0;
}
