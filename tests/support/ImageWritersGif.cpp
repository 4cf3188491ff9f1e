#include "support/ByteWriter.h"
#include "support/ImageWriters.h"
#include <array>

#include <gif_lib.h>

namespace pixelhain {

namespace {

constexpr unsigned hole = 216;

// The number of a colour in a frame's table: the file's backwards where it is the frame's own.
unsigned numberIn(GifFrame const& frame, unsigned index)
{
    return frame.hasOwnColors ? 255 - index : index;
}

FileBytes indexRow(GifFrame const& frame, int y)
{
    FileBytes row;
    for (int x = 0; x < frame.pixels.size.width; ++x) {
        auto const* at = frame.pixels.at(x, y);
        row.push_back(
            static_cast<std::uint8_t>(numberIn(frame, at[3] < 128 ? hole : paletteIndex(at))));
    }
    return row;
}

ColorMapObject* newTable(GifFrame const& frame)
{
    std::array<GifColorType, 256> colors {};
    for (unsigned i = 0; i < colors.size(); ++i)
        colors[numberIn(frame, i)] = { static_cast<GifByteType>(paletteColor(i, 0)),
            static_cast<GifByteType>(paletteColor(i, 1)),
            static_cast<GifByteType>(paletteColor(i, 2)) };
    return GifMakeMapObject(colors.size(), colors.data());
}

void writeRepeats(GifFileType* gif, int repeats)
{
    std::array<GifByteType, 3> const block { 1, static_cast<GifByteType>(repeats & 255),
        static_cast<GifByteType>(repeats >> 8) };
    EGifPutExtensionLeader(gif, APPLICATION_EXT_FUNC_CODE);
    EGifPutExtensionBlock(gif, 11, "NETSCAPE2.0");
    EGifPutExtensionBlock(gif, block.size(), block.data());
    EGifPutExtensionTrailer(gif);
}

void writeFrame(GifFileType* gif, GifFrame const& frame)
{
    GraphicsControlBlock control {};
    control.DisposalMode = frame.disposal;
    control.DelayTime = frame.delay;
    control.TransparentColor = static_cast<int>(numberIn(frame, hole));
    std::array<GifByteType, 4> extension {};
    EGifGCBToExtension(&control, extension.data());
    EGifPutExtension(gif, GRAPHICS_EXT_FUNC_CODE, extension.size(), extension.data());
    auto const size = frame.pixels.size;
    auto* const table = frame.hasOwnColors ? newTable(frame) : nullptr;
    // The library forgets the frame before's table when this one has none.
    GifFreeMapObject(gif->Image.ColorMap);
    gif->Image.ColorMap = nullptr;
    EGifPutImageDesc(gif, frame.x, frame.y, size.width, size.height, frame.isInterlaced, table);
    GifFreeMapObject(table);
    auto const put = [&](int first, int step) {
        for (int y = first; y < size.height; y += step) {
            auto row = indexRow(frame, y);
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

FileBytes writeGif(PixelSize canvas, std::vector<GifFrame> const& frames, GifOptions const& options)
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
    auto* map = newTable({});
    EGifPutScreenDesc(gif, canvas.width, canvas.height, 8, 0, map);
    for (std::size_t i = 0; i < frames.size(); ++i) {
        if (options.repeats >= 0 && options.repeatsAt == i)
            writeRepeats(gif, options.repeats);
        writeFrame(gif, frames[i]);
    }
    GifFreeMapObject(map);
    EGifCloseFile(gif, &error);
    return file;
}

} // namespace pixelhain
