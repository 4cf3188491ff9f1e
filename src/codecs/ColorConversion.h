#pragma once
#include "base/Bitmap.h"
#include "codecs/ByteView.h"
#include <cstdint>
#include <memory>
#include <vector>

namespace pixelhain {

/// What the four bytes of a pixel mean before colours are converted.
enum class PixelFormat : std::uint8_t {
    opaque, ///< B, G, R, 255
    straight, ///< B, G, R, A, not premultiplied
    premultiplied, ///< B, G, R, A
    cmyk, ///< 255 is full ink
    cmykInverted, ///< 0 is full ink, as Adobe's JPEGs have it
};

enum class Channels : std::uint8_t { color, grey };

/// Brings `bitmap` to sRGB in place, relative colorimetric, and to B, G, R, A if it holds ink.
/// Straight alpha counts as premultiplied here: it is by the time a picture has its size. A
/// profile that is broken, absent, too large or of another kind than the pixels is ignored; ink
/// without a profile is converted by multiplication. `channels` says that B, G and R are equal.
void convertToSrgb(Bitmap& bitmap, PixelFormat format, Channels channels, ByteSpan profile);

/// Multiplies the colours of a row of straight pixels by their alpha, rounded.
void premultiply(std::uint8_t* row, int width);

/// Whether `profile` describes colours other than sRGB, as far as RGB pixels go.
[[nodiscard]] bool changesColors(ByteSpan profile);

/// Converts rows of R, G, B, A with 16 bits each, in the machine's byte order, to B, G, R, A with
/// 8 bits: linear pictures would lose their shadows if they were cut to 8 bits first.
class DeepRowConverter {
public:
    explicit DeepRowConverter(ByteSpan profile);
    [[nodiscard]] bool isUsable() const { return static_cast<bool>(transform_); }
    void convert(std::uint16_t const* in, std::uint8_t* out, int pixels) const;

private:
    std::shared_ptr<void> transform_;
};

/// An ICC profile for RGB of these white point, primaries (x, y each) and gamma; empty if there is
/// no such profile.
struct Chromaticities {
    double white[2];
    double red[2];
    double green[2];
    double blue[2];
};
[[nodiscard]] std::vector<std::uint8_t> makeProfile(Chromaticities const& colors, double gamma);

} // namespace pixelhain
