#pragma once
#include "base/Geometry.h"
#include <chrono>
#include <cstddef>
#include <cstdint>

namespace pixelhain {

/// What one decode may cost. A file that asks for more is treated as one that cannot be read. What
/// the process around it may use stands in decoder/WorkerLimits.h.
namespace DecodeLimits {
/// Widest or highest picture: the most that JPEG and most other formats can state.
inline constexpr int side = 65535;
/// Pixels of a picture; cameras reach 4 × 10^8.
inline constexpr std::int64_t pixels = std::int64_t { 1 } << 30;
/// Bytes that a codec may hold besides the picture that it hands out.
inline constexpr std::size_t memory = std::size_t { 1 } << 30;
/// The same of a codec that holds the picture twice, sized for the 200 megapixels of a phone.
inline constexpr std::int64_t twiceHeld = std::int64_t { 3 } << 29;
/// Bytes of the picture that is handed out.
inline constexpr std::size_t bitmap = std::size_t { 1 } << 30;
/// Bytes of a file that a codec must hold whole.
inline constexpr std::uint64_t wholeFile = std::uint64_t { 1 } << 29;
/// Scans of a progressive JPEG; cameras and encoders write about 10.
inline constexpr int scans = 256;
/// Pixels of a progressive JPEG times its scans: 16 scans of the largest pictures. A scan may go
/// over all of them without a byte of its own, so a file of 2 KB could cost 15 s.
inline constexpr std::int64_t scannedPixels = 8'000'000'000;
/// Complaints of the JPEG decoder after which the rest of a file is given up.
inline constexpr int warnings = 100;
inline constexpr std::size_t colorProfile = std::size_t { 4 } << 20;
/// Entries of one TIFF directory, and directories followed in a row.
inline constexpr std::size_t directoryEntries = 4096;
inline constexpr std::size_t directories = 1024;
/// Boxes that follow each other in a HEIF file; it can refer to 32767 properties.
inline constexpr std::size_t boxes = 65536;
/// Bytes of a table in a HEIF file; a picture of a thousand tiles needs 50,000.
inline constexpr std::size_t boxTable = std::size_t { 4 } << 20;
/// Pictures that one picture of a HEIF file is made of, and how deep they may be nested.
inline constexpr std::size_t tiles = 65536;
inline constexpr int nestedItems = 8;
/// Frames of an animation and pages that are counted.
inline constexpr std::size_t frames = 100'000;
/// Pixels of an animation's canvas. It is held up to three times (what is shown, what a frame
/// brings back, the frame itself), and nothing that is played is larger than a large screen.
inline constexpr std::int64_t canvasPixels = std::int64_t { 1 } << 26;
/// Bytes that one frame of an animation may be packed in: what a whole canvas takes unpacked.
inline constexpr std::uint64_t packedFrame = std::uint64_t { 1 } << 28;
/// Processor time of one frame. The largest canvas takes 3 s; one that takes longer than that is
/// no animation any more.
inline constexpr std::chrono::seconds frameTime { 5 };
/// Processor time of one request, by what is asked for. The largest picture met, 200 megapixels of
/// HEVC, takes 12 s; a damaged raw file makes its library run for ever.
inline constexpr std::chrono::seconds metadataTime { 3 };
inline constexpr std::chrono::seconds thumbnailTime { 10 };
inline constexpr std::chrono::seconds screenTime { 30 };
inline constexpr std::chrono::seconds wholeTime { 60 };
/// The longest side that still counts as a thumbnail's.
inline constexpr int thumbnailSide = 1024;
} // namespace DecodeLimits

[[nodiscard]] constexpr bool isWithinLimits(std::int64_t width, std::int64_t height)
{
    return width > 0 && height > 0 && width <= DecodeLimits::side && height <= DecodeLimits::side
        && width * height <= DecodeLimits::pixels;
}

[[nodiscard]] constexpr bool isWithinLimits(PixelSize size)
{
    return isWithinLimits(size.width, size.height);
}

/// The processor time that a picture of at most `maxPixel` may take; 0 asks for every pixel.
[[nodiscard]] constexpr std::chrono::seconds decodeTime(int maxPixel)
{
    if (maxPixel <= 0)
        return DecodeLimits::wholeTime;
    return maxPixel <= DecodeLimits::thumbnailSide ? DecodeLimits::thumbnailTime
                                                   : DecodeLimits::screenTime;
}

} // namespace pixelhain
