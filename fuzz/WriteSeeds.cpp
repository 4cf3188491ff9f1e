// Writes a small file of each kind below FOLDER/TARGET, to begin fuzzing with.
#include "decoder/AnimationProtocol.h"
#include "decoder/PropertiesRecord.h"
#include "decoder/Protocol.h"
#include "support/AnimationWriters.h"
#include "support/ExifFields.h"
#include "support/PlainWriters.h"
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

using namespace pixelhain;

namespace {

constexpr PixelSize size { 24, 16 };

RgbaPixels picture()
{
    auto pixels = RgbaPixels::filled(size, 0x4080C0FF);
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
            pixels.at(x, y)[0] = static_cast<std::uint8_t>(x * 10);
            pixels.at(x, y)[3] = static_cast<std::uint8_t>(255 - y * 9);
        }
    }
    return pixels;
}

class Seeds {
public:
    explicit Seeds(std::filesystem::path folder)
        : folder_(std::move(folder))
    {
    }

    void add(std::string const& target, FileBytes const& bytes)
    {
        auto const folder = folder_ / target;
        std::filesystem::create_directories(folder);
        std::ofstream file(folder / ("seed" + std::to_string(count_++)), std::ios::binary);
        file.write(reinterpret_cast<char const*>(bytes.data()),
            static_cast<std::streamsize>(bytes.size()));
    }

    template <typename Record>
    void addRecord(std::string const& target, Record const& record, std::size_t front)
    {
        FileBytes bytes(front, 1);
        auto const* const begin = reinterpret_cast<std::uint8_t const*>(&record);
        bytes.insert(bytes.end(), begin, begin + sizeof record);
        add(target, bytes);
    }

private:
    std::filesystem::path folder_;
    int count_ = 0;
};

// A file of each kind with everything in it that one can state about its photo.
void addProperties(Seeds& seeds)
{
    auto const ascii = ExifField::ascii;
    ExifField packet { 0x02BC, 1 };
    for (auto const letter : std::string("<a aux:Lens='EF &amp; 50mm'/><aux:Lens>x</aux:Lens>"))
        packet.values.push_back(static_cast<unsigned char>(letter));
    ExifField note { 0x927C, 7 };
    note.place = 8;
    note.count = 100;
    for (auto const* const make : { "Canon", "SONY", "NIKON", "Panasonic" }) {
        auto const block = exifOf(
            { ascii(0x010F, make), ascii(0x0110, "R5"), packet, ascii(0x0095, "EF 50mm"),
                ascii(0x0051, "LUMIX"), ExifField::fraction(0x0084, { 18, 1, 55, 1, 4, 1, 5, 1 }),
                { 0xB02A, 1, { 1, 0, 0x18, 0, 0x55, 0x40, 0x56, 2 } } },
            { ExifField::fraction(0x829A, { 1, 250 }), ExifField::numbers(0x8827, { 200, 400 }),
                ascii(0x9003, "2023:05:17 14:30:12"), { 0x829D, 11, { 0x40600000 } }, note });
        seeds.add("properties", block);
        JpegOptions jpeg;
        jpeg.exif = block;
        seeds.add("properties", writeJpeg(picture(), jpeg));
        PngOptions png;
        png.exif = block;
        seeds.add("properties", writePng(picture(), png));
        WebpOptions webp;
        webp.exif = block;
        seeds.add("properties", writeWebp(picture(), webp));
    }
    PhotoProperties properties;
    properties.pixelSize = PixelSize { 6000, 4000 };
    properties.model = "Canon EOS R5";
    properties.fNumber = 1.8;
    properties.isoSpeedRatings = { 200 };
    auto const record = packProperties(properties);
    auto const* const begin = reinterpret_cast<std::uint8_t const*>(record.data());
    seeds.add("properties", { begin, begin + record.size() });
}

// A JPEG of each way to lay out blocks.
void addReductions(Seeds& seeds)
{
    auto const pixels = picture();
    for (int i = 0; i < 32; ++i) {
        JpegOptions jpeg;
        jpeg.isProgressive = i % 2 == 1;
        jpeg.restartUnits = i % 3;
        jpeg.isOptimized = i % 4 < 2;
        jpeg.isInterleaved = i % 5 != 0 || jpeg.isProgressive;
        jpeg.subsampling = static_cast<JpegOptions::Subsampling>(i % 3);
        jpeg.color = static_cast<JpegOptions::Color>(i % 7 < 5 ? i % 7 : 0);
        jpeg.quality = i % 8 < 4 ? 95 : 10;
        seeds.add("jpegreduction", writeJpeg(pixels, jpeg));
    }
}

void addCommon(Seeds& seeds)
{
    auto const pixels = picture();
    ExifOptions exif;
    exif.orientation = 6;
    exif.thumbnail = writeJpeg(pixels);
    exif.dateTimeOriginal = "2026:11:21 10:00:00";
    auto const block = exifBlock(exif);
    seeds.add("exif", block);
    exif.isBigEndian = true;
    seeds.add("exif", exifBlock(exif));
    addProperties(seeds);
    JpegOptions jpeg;
    jpeg.exif = block;
    jpeg.preview = writeJpeg(pixels);
    for (auto const isProgressive : { false, true }) {
        jpeg.isProgressive = isProgressive;
        auto const file = writeJpeg(pixels, jpeg);
        seeds.add("jpeg", file);
        FileBytes asked { 64, 0 };
        asked.insert(asked.end(), file.begin(), file.end());
        seeds.add("barejpeg", asked);
    }
    addReductions(seeds);
    PngOptions png;
    png.exif = block;
    png.frames = { pixels };
    for (auto const kind :
        { PngOptions::Kind::rgba8, PngOptions::Kind::palette, PngOptions::Kind::grey16 }) {
        png.kind = kind;
        png.isInterlaced = !png.isInterlaced;
        seeds.add("png", writePng(pixels, png));
    }
    GifFrame frame;
    frame.pixels = pixels;
    seeds.add("gif", writeGif(size, { frame, frame }));
    for (auto const isLossless : { false, true }) {
        WebpOptions webp;
        webp.isLossless = isLossless;
        webp.exif = block;
        seeds.add("webp", writeWebp(pixels, webp));
    }
    for (auto const kind : { TiffOptions::Kind::rgba8, TiffOptions::Kind::palette,
             TiffOptions::Kind::rgbFloat, TiffOptions::Kind::ycbcrJpeg }) {
        TiffOptions tiff;
        tiff.kind = kind;
        seeds.add("tiff", writeTiff(pixels, tiff));
        seeds.add("previews", writeTiff(pixels, tiff));
    }
    for (auto const kind : { BmpOptions::Kind::rle8, BmpOptions::Kind::rgba32,
             BmpOptions::Kind::rgb565, BmpOptions::Kind::mono })
        seeds.add("bmp", writeBmp(pixels, { kind, false }));
}

void addPlain(Seeds& seeds)
{
    auto const pixels = picture();
    seeds.add("qoi", writeQoi(pixels));
    for (auto const kind : { '1', '3', '4', '6', '7' })
        seeds.add("pnm", writePnm(pixels, { kind, 255 }));
    for (auto const kind :
        { TgaOptions::Kind::color15, TgaOptions::Kind::color32, TgaOptions::Kind::palette })
        seeds.add("tga", writeTga(pixels, { kind, true, false, false }));
    for (auto const kind :
        { IcoPicture::Kind::masked24, IcoPicture::Kind::color32, IcoPicture::Kind::png })
        seeds.add("ico", writeIco({ { pixels, kind } }));
    for (auto const packing : { RadianceOptions::Packing::plain, RadianceOptions::Packing::oldRuns,
             RadianceOptions::Packing::separateRuns })
        seeds.add("radiance", writeRadiance(pixels, { packing, "-Y +X", 1 }));
    seeds.add("exr", writeExr(pixels));
    ExrOptions tiled;
    tiled.isTiled = true;
    tiled.hasAlpha = true;
    seeds.add("exr", writeExr(pixels, tiled));
    seeds.add("jp2", writeJp2(pixels));
    seeds.add("jp2", writeJp2(pixels, { Jp2Options::Color::ycc, true, 12, 2, {} }));
}

RgbaPixels dot(std::uint32_t rgba)
{
    return RgbaPixels::filled({ 6, 4 }, rgba);
}

void addAnimations(Seeds& seeds)
{
    for (int disposal = 0; disposal < 4; ++disposal) {
        GifFrame ground;
        ground.pixels = picture();
        GifFrame part;
        part.pixels = dot(0xFF000000);
        part.pixels.at(1, 1)[3] = 255;
        part.x = 20;
        part.disposal = disposal;
        part.isInterlaced = part.hasOwnColors = disposal % 2 == 1;
        seeds.add("gifanimation", writeGif(size, { ground, part, part }, { disposal }));
        ApngFrame first;
        first.pixels = picture();
        ApngFrame next;
        next.pixels = dot(0x00FF0080);
        next.y = 8;
        next.disposal = disposal % 3;
        next.blend = disposal % 2;
        next.pieces = 2;
        ApngOptions options;
        options.png.isInterlaced = disposal == 1;
        options.png.kind = disposal == 2 ? PngOptions::Kind::palette : PngOptions::Kind::rgba8;
        seeds.add("pnganimation", writeApng(size, { first, next, next }, options));
        WebpFrame whole;
        whole.pixels = picture();
        WebpFrame place;
        place.pixels = dot(0x0000FF40);
        place.x = 4;
        place.isCleared = disposal % 2 == 1;
        place.isBlended = disposal < 2;
        WebpAnimationOptions webp;
        webp.isLossless = disposal % 2 == 0;
        seeds.add("webpanimation", writeWebpAnimation(size, { whole, place, place }, webp));
    }
}

void addRecords(Seeds& seeds)
{
    DecoderRequest request;
    request.id = 1;
    request.fileBytes = 1000;
    seeds.addRecord("request", request, 2);
    request.operation = DecoderOperation::decode;
    request.space = DecoderSpace::own;
    request.spaceBytes = 1 << 20;
    request.maxPixel = 256;
    seeds.addRecord("request", request, 2);
    DecoderResponse response;
    response.id = 1;
    response.status = DecoderStatus::done;
    response.width = 16;
    response.height = 16;
    response.bytesPerRow = 64;
    response.bytes = 1024;
    seeds.addRecord("response", response, 16);
    AnimationRequest opening;
    opening.id = 1;
    opening.fileBytes = 1000;
    seeds.addRecord("animationrecords", opening, 16);
    AnimationResponse opened;
    opened.id = 1;
    opened.status = AnimationStatus::done;
    opened.width = opened.height = 1;
    seeds.addRecord("animationrecords", opened, 16);
}

} // namespace

int main(int count, char** arguments)
{
    if (count != 2) {
        std::fputs("usage: write-seeds FOLDER\n", stderr);
        return 2;
    }
    Seeds seeds(arguments[1]);
    addCommon(seeds);
    addPlain(seeds);
    addAnimations(seeds);
    addRecords(seeds);
    return 0;
}
