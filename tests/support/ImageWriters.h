#pragma once
#include "base/Geometry.h"
#include <cstdint>
#include <string>
#include <vector>

namespace pixelhain {

/// Small writers of image files in all the variants that the codecs must read. They know nothing of
/// what is drawn: pixels in, the bytes of a file out; empty if the library refuses.
using FileBytes = std::vector<std::uint8_t>;

/// R, G, B, A (not premultiplied), row by row.
struct RgbaPixels {
    PixelSize size;
    std::vector<std::uint8_t> rgba;

    static RgbaPixels filled(PixelSize size, std::uint32_t rgba);
    std::uint8_t* at(int x, int y)
    {
        return rgba.data() + (std::size_t(y) * std::size_t(size.width) + std::size_t(x)) * 4;
    }
    std::uint8_t const* at(int x, int y) const { return const_cast<RgbaPixels*>(this)->at(x, y); }
};

/// An EXIF block: a TIFF structure, without a JPEG's "Exif" in front.
struct ExifOptions {
    int orientation = 0; ///< 0: no such field
    FileBytes thumbnail; ///< a JPEG for the second directory; empty: none
    std::string make;
    std::string model;
    std::string dateTimeOriginal; ///< "2026:11:21 10:00:00"
    bool isBigEndian = false;
};
FileBytes exifBlock(ExifOptions const& options);

struct JpegOptions {
    enum class Color : std::uint8_t { ycbcr, rgb, grey, cmyk, ycck };
    enum class Subsampling : std::uint8_t { s444, s422, s420 };
    Color color = Color::ycbcr;
    Subsampling subsampling = Subsampling::s420;
    std::vector<PixelSize> sampling; ///< of each component, instead; empty: as `subsampling` says
    int quality = 90;
    bool hasWideSteps = false; ///< steps of up to 16 bits, as low qualities ask for
    bool isOptimized = false; ///< Huffman codes made for the picture
    bool isProgressive = false;
    bool isArithmetic = false;
    bool isInterleaved = true;
    int restartRows = 0;
    int restartUnits = 0;
    FileBytes exif; ///< from `exifBlock`
    FileBytes profile;
    FileBytes preview; ///< a JPEG for the multi-picture index, as a large thumbnail
    FileBytes secondView; ///< a JPEG for the multi-picture index, as the other eye
    FileBytes gainMap; ///< a JPEG for the multi-picture index, of undefined kind
};
FileBytes writeJpeg(RgbaPixels const& pixels, JpegOptions const& options = {});

struct PngOptions {
    enum class Kind : std::uint8_t {
        rgb8,
        rgba8,
        rgb16,
        rgba16,
        grey1,
        grey8,
        grey16,
        greyAlpha8,
        palette, ///< 216 colours
        paletteAlpha, ///< 215 colours and a transparent one
        rgbKey, ///< black is transparent
    };
    Kind kind = Kind::rgba8;
    bool isInterlaced = false;
    FileBytes exif;
    FileBytes profile;
    double gamma = 0; ///< above 0: a gAMA chunk
    std::vector<RgbaPixels> frames; ///< further frames of the same size: an animation
};
FileBytes writePng(RgbaPixels const& pixels, PngOptions const& options = {});

struct GifFrame {
    RgbaPixels pixels; ///< reduced to 216 colours; alpha below 128 is transparent
    int x = 0;
    int y = 0;
    int delay = 10; ///< hundredths of a second
    int disposal = 0;
    bool isInterlaced = false;
    bool hasOwnColors = false; ///< a table of its own, in another order than the file's
};
struct GifOptions {
    int repeats = -1; ///< what the loop extension says; -1: there is none
    std::size_t repeatsAt = 0; ///< the frame that it stands in front of
};
FileBytes writeGif(
    PixelSize canvas, std::vector<GifFrame> const& frames, GifOptions const& options = {});

struct WebpOptions {
    bool isLossless = false;
    float quality = 85;
    FileBytes exif;
    FileBytes profile;
    std::vector<RgbaPixels> frames; ///< further frames: an animation
    PixelSize canvas; ///< of an animation; empty: the first frame's size
    int frameX = 0; ///< where the first frame of an animation lies; even
    int frameY = 0;
};
FileBytes writeWebp(RgbaPixels const& pixels, WebpOptions const& options = {});

struct TiffOptions {
    enum class Kind : std::uint8_t {
        rgb8,
        rgba8,
        rgbaAssociated8,
        rgb16,
        rgbFloat,
        grey8,
        grey16,
        bilevel, ///< white is 0
        palette,
        cmyk8,
        ycbcrJpeg,
    };
    enum class Packing : std::uint8_t { none, lzw, deflate, packBits, fax4 };
    Kind kind = Kind::rgb8;
    Packing packing = Packing::none;
    bool isTiled = false;
    bool isPlanar = false;
    bool isBigEndian = false;
    int orientation = 0;
    FileBytes profile;
    std::vector<RgbaPixels> pages; ///< further pages
};
FileBytes writeTiff(RgbaPixels const& pixels, TiffOptions const& options = {});

struct BmpOptions {
    enum class Kind : std::uint8_t {
        mono,
        palette4,
        palette8,
        rle4,
        rle8,
        rgb555,
        rgb565,
        rgb24,
        rgbx32,
        rgba32, ///< version 5 header with an alpha mask
        os2palette8, ///< the old 12-byte header
    };
    Kind kind = Kind::rgb24;
    bool isTopDown = false;
};
FileBytes writeBmp(RgbaPixels const& pixels, BmpOptions const& options = {});

} // namespace pixelhain
