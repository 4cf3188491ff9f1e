#pragma once
#include "base/Bitmap.h"
#include "base/CodedJpeg.h"
#include "base/FileUrl.h"
#include "base/Geometry.h"
#include <cstdint>
#include <optional>

namespace pixelhain {

/// What the rest of the program knows of a file before decoding it.
struct ImageMeta {
    /// Pixels of the primary image as it is shown, orientation applied; absent when the file does
    /// not state both sides.
    std::optional<PixelSize> size;
    /// A GIF, PNG or WebP of more than one frame.
    bool isAnimated = false;
    bool operator==(ImageMeta const&) const = default;
};

/// Where the pixels of a decoded picture came from.
enum class PixelOrigin : std::uint8_t {
    embedded, ///< a preview stored inside the file
    scaled, ///< the picture itself, read at a reduced scale
    full, ///< the picture itself, every pixel read
};

enum class EmbeddedPreviews : std::uint8_t {
    ignore,
    prefer,
    only, ///< the best there is, or nothing: of any size, but for those that take too long
};

/// Whether a JPEG in the file that is as small as the answer may come as it is, not as pixels.
enum class SmallJpegs : std::uint8_t { decode, pass };

/// One request for pixels. Plain data, so that it can be answered in another process.
struct DecodeRequest {
    FileUrl file;
    int maxPixel = 0; ///< longest side of the answer, at most; 0: as large as the picture
    EmbeddedPreviews previews = EmbeddedPreviews::ignore;
    SmallJpegs smallJpegs = SmallJpegs::decode;
};

struct DecodedPicture {
    Bitmap bitmap;
    PixelOrigin origin = PixelOrigin::full;
    CodedJpeg jpeg {}; ///< instead of the bitmap, where that was asked for
    std::uint64_t bytesRead = 0; ///< of the file
};

/// What a first look into a file yields, long before its picture is decoded.
struct Glance {
    ImageMeta meta;
    /// The smallest picture that is embedded in the file and shows all of the photo, upright and
    /// without bars. Empty if there is none, or none that is smaller than what is wanted.
    Bitmap embedded {};
    /// An embedded picture will do for what is wanted, so that comes soon.
    bool isQuick = false;
    std::uint64_t bytesRead = 0; ///< of the file
};

} // namespace pixelhain
