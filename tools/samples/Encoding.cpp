#include "Encoding.h"

#include <array>

namespace pixelhain {

namespace {

std::uint8_t byteOf(float part)
{
    return static_cast<std::uint8_t>(std::clamp(part, 0.0f, 1.0f) * 255 + 0.5f);
}

PixelSize scaled(PixelSize size, double scale)
{
    auto const side
        = [&](int length) { return std::max(8, static_cast<int>(length * scale + 0.5)); };
    return { side(size.width), side(size.height) };
}

/// Where the upright pixel x, y of a picture `size` large lies in what the camera stored.
std::array<int, 2> storedPlace(int orientation, PixelSize size, int x, int y)
{
    auto const right = size.width - 1 - x;
    auto const bottom = size.height - 1 - y;
    switch (orientation) {
    case 2:
        return { right, y };
    case 3:
        return { right, bottom };
    case 4:
        return { x, bottom };
    case 5:
        return { y, x };
    case 6:
        return { y, right };
    case 7:
        return { bottom, right };
    case 8:
        return { bottom, x };
    default:
        return { x, y };
    }
}

FileBytes previewOf(RgbaPixels const& stored, int longestSide)
{
    JpegOptions options;
    options.quality = 82;
    return writeJpeg(reduced(stored, longestSide), options);
}

FileBytes encodeJpeg(Sample const& sample, RgbaPixels const& upright)
{
    auto const stored = storedAs(sample.orientation, upright);
    JpegOptions options;
    options.isProgressive = sample.format == SampleFormat::jpegProgressive;
    if (sample.format == SampleFormat::jpegGrey)
        options.color = JpegOptions::Color::grey;
    ExifOptions exif;
    exif.orientation = sample.orientation;
    exif.make = "Lochkamera";
    exif.model = "LK 2";
    exif.dateTimeOriginal = sample.taken;
    if (sample.format == SampleFormat::jpegWithPreviews) {
        exif.thumbnail = previewOf(stored, 160);
        options.preview = previewOf(stored, 960);
    }
    options.exif = exifBlock(exif);
    return writeJpeg(stored, options);
}

/// The colors of the picture in motion; every frame a step further, the last one before the first.
std::vector<RgbaPixels> framesOf(Sample const& sample, PixelSize size)
{
    constexpr auto count = 12;
    std::vector<RgbaPixels> frames;
    for (auto frame = 0; frame < count; ++frame) {
        auto canvas = drawMarble(size, sample.seed, static_cast<float>(frame) / count);
        canvas.grain(0.12f, sample.seed);
        frames.push_back(pixelsOf(canvas));
    }
    return frames;
}

FileBytes encodeAnimation(Sample const& sample, PixelSize size)
{
    auto frames = framesOf(sample, size);
    if (sample.format == SampleFormat::gifAnimated) {
        std::vector<GifFrame> gif;
        for (auto& frame : frames)
            gif.push_back({ .pixels = std::move(frame) });
        return writeGif(size, gif);
    }
    auto const first = frames.front();
    frames.erase(frames.begin());
    WebpOptions options;
    options.frames = std::move(frames);
    return writeWebp(first, options);
}

FileBytes encodePng(RgbaPixels const& pixels, PngOptions::Kind kind)
{
    PngOptions options;
    options.kind = kind;
    return writePng(pixels, options);
}

FileBytes encodeTiff(RgbaPixels const& pixels, TiffOptions::Kind kind)
{
    TiffOptions options;
    options.kind = kind;
    options.packing = TiffOptions::Packing::lzw;
    return writeTiff(pixels, options);
}

RgbaPixels transparentEmblem(Canvas const& canvas)
{
    auto pixels = pixelsOf(canvas);
    for (auto y = 0; y < pixels.size.height; ++y)
        for (auto x = 0; x < pixels.size.width; ++x)
            pixels.at(x, y)[3] = byteOf(emblemOpacity(canvas.spot(x, y), canvas.aspect()));
    return pixels;
}

} // namespace

RgbaPixels pixelsOf(Canvas const& canvas)
{
    auto pixels = RgbaPixels::filled(canvas.size(), 0xFFFFFFFF);
    for (auto y = 0; y < pixels.size.height; ++y)
        for (auto x = 0; x < pixels.size.width; ++x) {
            auto const color = canvas.at(x, y);
            auto* const pixel = pixels.at(x, y);
            pixel[0] = byteOf(color.red);
            pixel[1] = byteOf(color.green);
            pixel[2] = byteOf(color.blue);
        }
    return pixels;
}

RgbaPixels storedAs(int orientation, RgbaPixels const& pixels)
{
    if (orientation <= 1)
        return pixels;
    auto stored = RgbaPixels::filled(orientation > 4 ? pixels.size.turned() : pixels.size, 0);
    for (auto y = 0; y < pixels.size.height; ++y)
        for (auto x = 0; x < pixels.size.width; ++x) {
            auto const [column, row] = storedPlace(orientation, pixels.size, x, y);
            std::copy_n(pixels.at(x, y), 4, stored.at(column, row));
        }
    return stored;
}

RgbaPixels reduced(RgbaPixels const& pixels, int longestSide)
{
    auto const scale = static_cast<double>(longestSide) / pixels.size.longestSide();
    if (scale >= 1)
        return pixels;
    auto result = RgbaPixels::filled(scaled(pixels.size, scale), 0);
    auto const from = [](int index, int whole, int parts) {
        return static_cast<int>(static_cast<std::int64_t>(index) * whole / parts);
    };
    for (auto y = 0; y < result.size.height; ++y)
        for (auto x = 0; x < result.size.width; ++x) {
            std::array<unsigned, 4> sum {};
            auto count = 0u;
            for (auto row = from(y, pixels.size.height, result.size.height);
                 row < from(y + 1, pixels.size.height, result.size.height); ++row)
                for (auto column = from(x, pixels.size.width, result.size.width);
                     column < from(x + 1, pixels.size.width, result.size.width); ++column, ++count)
                    for (auto part = 0u; part < 4; ++part)
                        sum[part] += pixels.at(column, row)[part];
            for (auto part = 0u; part < 4; ++part)
                result.at(x, y)[part] = static_cast<std::uint8_t>((sum[part] + count / 2) / count);
        }
    return result;
}

FileBytes encodeSample(Sample const& sample, double scale)
{
    auto const size = scaled(sample.size, scale);
    using enum SampleFormat;
    if (sample.format == gifAnimated || sample.format == webpAnimated)
        return encodeAnimation(sample, size);
    auto const canvas = drawScene(sample.scene, size, sample.seed);
    switch (sample.format) {
    case png:
        return encodePng(pixelsOf(canvas), PngOptions::Kind::rgb8);
    case pngSixteenBit:
        return encodePng(pixelsOf(canvas), PngOptions::Kind::rgb16);
    case pngTransparent:
        return encodePng(transparentEmblem(canvas), PngOptions::Kind::rgba8);
    case gif:
        return writeGif(size, { { .pixels = pixelsOf(canvas) } });
    case webp:
        return writeWebp(pixelsOf(canvas));
    case tiff:
        return encodeTiff(pixelsOf(canvas), TiffOptions::Kind::rgb8);
    case tiffSixteenBit:
        return encodeTiff(pixelsOf(canvas), TiffOptions::Kind::rgb16);
    case bmp:
        return writeBmp(pixelsOf(canvas));
    default:
        return encodeJpeg(sample, pixelsOf(canvas));
    }
}

} // namespace pixelhain
