#pragma once
#include "base/CodedJpeg.h"
#include "base/Geometry.h"
#include "ports/DecodedImage.h"
#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace pixelhain {

/// One opened image file. Not thread-safe; each belongs to one decode. Every operation answers for
/// the primary image; none throws, and none needs more memory than the limits of its codec say.
class ImageSource {
public:
    virtual ~ImageSource() = default;

    /// Uniform type identifier of the bytes (not of the name): "public.jpeg", "public.png",
    /// "com.compuserve.gif", "org.webmproject.webp", "public.tiff", "com.microsoft.bmp",
    /// "public.heic", "public.heif", "public.avif", "public.jpeg-xl".
    [[nodiscard]] virtual std::string_view typeIdentifier() const = 0;

    /// Images, frames or pages in the file; at least 1. May read through the file.
    [[nodiscard]] virtual std::size_t frameCount() = 0;

    /// Size as stored, no orientation applied; nothing if the header does not state both sides.
    [[nodiscard]] virtual std::optional<PixelSize> pixelSize() = 0;

    /// EXIF orientation, 1 to 8; 1 when absent or out of range.
    [[nodiscard]] virtual int orientation() = 0;

    /// Sizes, upright, of the previews stored inside the file, by their longest side ascending.
    /// Only previews that show the whole picture count.
    [[nodiscard]] virtual std::vector<PixelSize> previews() = 0;

    /// The preview at `index` of `previews()`, upright, in sRGB, reduced to at most `maxPixel` on
    /// its longest side, never enlarged; nothing if it is damaged.
    [[nodiscard]] virtual std::optional<DecodedImage> decodePreview(std::size_t index, int maxPixel)
        = 0;

    /// The picture upright, in sRGB, with a longest side of at most `maxPixel`, never enlarged. Of
    /// a damaged file what can be saved; nothing if there is nothing.
    [[nodiscard]] virtual std::optional<DecodedImage> decode(int maxPixel) = 0;

    /// The picture whole and as stored: in sRGB, but neither reduced nor turned.
    [[nodiscard]] virtual std::optional<DecodedImage> decodeWhole() = 0;

    /// The picture, or the preview at `index`, as the file itself holds it, if that is a JPEG that
    /// decoding to `maxPixel` would neither reduce nor turn nor recolour; empty if it is not, or is
    /// damaged.
    [[nodiscard]] virtual CodedJpeg codedPicture(int /*maxPixel*/) { return {}; }
    [[nodiscard]] virtual CodedJpeg codedPreview(std::size_t /*index*/, int /*maxPixel*/)
    {
        return {};
    }
};

} // namespace pixelhain
