#pragma once
#include <cstddef>
#include <cstdint>

namespace pixelhain {

/// How much is read of what a file says about its photo. Longer texts are cut; whatever else asks
/// for more counts as not stated.
namespace PropertyLimits {
/// Bytes of a text. The longest lens names have 80; people paste captions into some fields.
inline constexpr std::size_t text = 1024;
/// The same in UTF-8, where a byte that is none takes three.
inline constexpr std::size_t shownText = 3 * text;
/// Sensitivities of one photo; only one is shown, no camera writes more than two.
inline constexpr std::size_t isoValues = 16;
/// Bytes of an XMP packet that are searched. The lens stands in front of the history of edits,
/// which reaches megabytes.
inline constexpr std::size_t packet = std::size_t { 1 } << 20;
/// EXIF blocks, XMP packets and pictures with blocks of their own that are looked into in a file;
/// programs write one of each kind.
inline constexpr std::size_t blocks = 16;
/// Chunks of a file that are passed by on the way to a block. The pixels of a large PNG lie in
/// thousands, and a block may stand behind them.
inline constexpr std::size_t chunks = 16384;
/// Bytes that a compressed block unpacks to, at most; EXIF has 64 KiB where it is not compressed,
/// and programs write it in hexadecimal digits.
inline constexpr std::size_t unpacked = std::size_t { 256 } << 10;
/// Bytes of everything together, as it is handed from process to process.
inline constexpr std::size_t all = std::size_t { 16 } << 10;
} // namespace PropertyLimits

} // namespace pixelhain
