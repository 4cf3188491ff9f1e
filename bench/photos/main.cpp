#include "Encoding.h"

#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

using namespace pixelhain;
namespace fs = std::filesystem;

namespace {

constexpr auto usage
    = "usage: pixelhain-bench-photos COUNT FOLDER\n"
      "Makes COUNT photos of 24 megapixels, each in FOLDER/plain without previews and\n"
      "in FOLDER/previews with an EXIF thumbnail and a larger preview.\n";

constexpr PixelSize photoSize { 6000, 4000 };
constexpr PixelSize drawnSize { 3000, 2000 };
/// Photos that share a drawing differ in noise, and every second one is mirrored.
constexpr auto photosPerDrawing = 4;
/// Standard deviation of the noise at middle grey, in steps of 255. It makes the files as large as
/// those of cameras: 7 MB at this quality.
constexpr auto noiseStrength = 4.4f;

class Noise {
public:
    explicit Noise(std::uint64_t seed)
        : state_(seed * 0x9E3779B97F4A7C15u + 1)
    {
    }

    /// Three values around 0 with a deviation near 1, one a channel.
    std::array<float, 3> next()
    {
        auto const first = step();
        auto const second = step();
        auto const part = [&](int shift) {
            auto const sum = static_cast<int>((first >> shift) & 0xFFFF)
                + static_cast<int>((first >> (shift + 16)) & 0xFFFF)
                + static_cast<int>((second >> shift) & 0xFFFF);
            return static_cast<float>(sum - 98304) * (1.0f / 32768.0f);
        };
        return { part(0), part(16), part(32) };
    }

private:
    std::uint64_t step()
    {
        state_ ^= state_ << 13;
        state_ ^= state_ >> 7;
        state_ ^= state_ << 17;
        return state_;
    }

    std::uint64_t state_;
};

Color enlarged(Canvas const& drawing, float x, float y)
{
    auto const column = static_cast<int>(x);
    auto const row = static_cast<int>(y);
    auto const right = std::min(column + 1, drawing.size().width - 1);
    auto const below = std::min(row + 1, drawing.size().height - 1);
    auto const across = x - static_cast<float>(column);
    return mix(mix(drawing.at(column, row), drawing.at(right, row), across),
        mix(drawing.at(column, below), drawing.at(right, below), across),
        y - static_cast<float>(row));
}

/// The drawing as a sensor would have seen it: more noise in brighter parts, most of it in
/// brightness.
RgbaPixels photographed(Canvas const& drawing, int index)
{
    auto pixels = RgbaPixels::filled(photoSize, 0xFFFFFFFF);
    Noise noise(static_cast<std::uint64_t>(index) + 1);
    for (auto y = 0; y < photoSize.height; ++y)
        for (auto x = 0; x < photoSize.width; ++x) {
            auto const from = index % 2 == 0 ? x : photoSize.width - 1 - x;
            auto const color
                = enlarged(drawing, static_cast<float>(from) * 0.5f, static_cast<float>(y) * 0.5f);
            auto const strength
                = noiseStrength * (0.55f + 0.8f * std::clamp(color.green, 0.0f, 1.0f));
            auto const [shared, red, blue] = noise.next();
            auto* const pixel = pixels.at(x, y);
            auto const store = [&](int part, float light, float own) {
                auto const value = light * 255 + strength * (0.9f * shared + 0.35f * own) + 0.5f;
                pixel[part] = static_cast<std::uint8_t>(std::clamp(value, 0.0f, 255.0f));
            };
            store(0, color.red, red);
            store(1, color.green, 0);
            store(2, color.blue, blue);
        }
    return pixels;
}

JpegOptions cameraOptions()
{
    JpegOptions options;
    options.quality = 93;
    options.subsampling = JpegOptions::Subsampling::s422;
    return options;
}

FileBytes previewOf(RgbaPixels const& pixels, int longestSide)
{
    JpegOptions options;
    options.quality = 88;
    return writeJpeg(reduced(pixels, longestSide), options);
}

bool save(fs::path const& file, FileBytes const& bytes)
{
    auto part = file;
    part += ".part";
    std::ofstream stream(part, std::ios::binary);
    stream.write(
        reinterpret_cast<char const*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    std::error_code error;
    fs::rename(part, file, error);
    return stream && !error && !bytes.empty();
}

bool makePhoto(Canvas const& drawing, int index, fs::path const& folder)
{
    auto const name = "IMG_" + std::to_string(index + 1) + ".jpg";
    if (fs::exists(folder / "plain" / name) && fs::exists(folder / "previews" / name))
        return true;
    auto const pixels = photographed(drawing, index);
    auto options = cameraOptions();
    if (!save(folder / "plain" / name, writeJpeg(pixels, options)))
        return false;
    ExifOptions exif;
    exif.orientation = 1;
    exif.make = "Lochkamera";
    exif.model = "LK 2";
    exif.dateTimeOriginal = "2026:07:14 20:41:07";
    exif.thumbnail = previewOf(pixels, 160);
    options.exif = exifBlock(exif);
    options.preview = previewOf(pixels, 1620);
    return save(folder / "previews" / name, writeJpeg(pixels, options));
}

/// Works off whole drawings, so that each is drawn once.
bool makePhotos(int count, fs::path const& folder)
{
    std::atomic<int> nextDrawing = 0;
    std::atomic<bool> isGood = true;
    auto const work = [&] {
        for (auto drawing = nextDrawing++; drawing * photosPerDrawing < count && isGood;
             drawing = nextDrawing++) {
            constexpr auto scenes = static_cast<int>(Scene::marble);
            auto const canvas = drawScene(static_cast<Scene>(drawing % scenes), drawnSize,
                static_cast<std::uint32_t>(drawing));
            for (auto index = drawing * photosPerDrawing;
                 index < std::min(count, (drawing + 1) * photosPerDrawing); ++index)
                if (!makePhoto(canvas, index, folder))
                    isGood = false;
        }
    };
    {
        std::jthread const other(work);
        work();
    }
    return isGood;
}

} // namespace

int main(int count, char** arguments)
{
    auto const photos = count == 3 ? std::atoi(arguments[1]) : 0;
    if (photos < 1) {
        std::fputs(usage, stderr);
        return 2;
    }
    fs::path const folder = arguments[2];
    std::error_code error;
    fs::create_directories(folder / "plain", error);
    fs::create_directories(folder / "previews", error);
    if (error || !makePhotos(photos, folder)) {
        std::fprintf(stderr, "pixelhain-bench-photos: cannot write into %s\n", folder.c_str());
        return 1;
    }
    return 0;
}
