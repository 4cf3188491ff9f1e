#include "support/ByteWriter.h"
#include "support/ImageWriters.h"
#include <array>

#include <gif_lib.h>

namespace pixelhain {

namespace {

constexpr unsigned hole = 216;

FileBytes indexRow(RgbaPixels const& pixels, int y)
{
    FileBytes row;
    for (int x = 0; x < pixels.size.width; ++x) {
        auto const* at = pixels.at(x, y);
        row.push_back(static_cast<std::uint8_t>(at[3] < 128 ? hole : paletteIndex(at)));
    }
    return row;
}

void writeFrame(GifFileType* gif, GifFrame const& frame)
{
    GraphicsControlBlock control {};
    control.DisposalMode = frame.disposal;
    control.DelayTime = frame.delay;
    control.TransparentColor = static_cast<int>(hole);
    std::array<GifByteType, 4> extension {};
    EGifGCBToExtension(&control, extension.data());
    EGifPutExtension(gif, GRAPHICS_EXT_FUNC_CODE, extension.size(), extension.data());
    auto const size = frame.pixels.size;
    EGifPutImageDesc(gif, frame.x, frame.y, size.width, size.height, frame.isInterlaced, nullptr);
    auto const put = [&](int first, int step) {
        for (int y = first; y < size.height; y += step) {
            auto row = indexRow(frame.pixels, y);
            EGifPutLine(gif, row.data(), size.width);
        }
    };
    if (!frame.isInterlaced) {
        put(0, 1);
        return;
    }
    put(0, 8);
    put(4, 8);
    put(2, 4);
    put(1, 2);
}

} // namespace

FileBytes writeGif(PixelSize canvas, std::vector<GifFrame> const& frames)
{
    FileBytes file;
    int error = 0;
    auto* gif = EGifOpen(
        &file,
        [](GifFileType* writer, GifByteType const* data, int length) {
            auto& out = *static_cast<FileBytes*>(writer->UserData);
            out.insert(out.end(), data, data + length);
            return length;
        },
        &error);
    if (gif == nullptr)
        return {};
    EGifSetGifVersion(gif, true);
    std::array<GifColorType, 256> colors {};
    for (unsigned i = 0; i < colors.size(); ++i)
        colors[i] = { static_cast<GifByteType>(paletteColor(i, 0)),
            static_cast<GifByteType>(paletteColor(i, 1)),
            static_cast<GifByteType>(paletteColor(i, 2)) };
    auto* map = GifMakeMapObject(colors.size(), colors.data());
    EGifPutScreenDesc(gif, canvas.width, canvas.height, 8, 0, map);
    for (auto const& frame : frames)
        writeFrame(gif, frame);
    GifFreeMapObject(map);
    EGifCloseFile(gif, &error);
    return file;
}

} // namespace pixelhain
