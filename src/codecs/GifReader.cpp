#include "codecs/GifReader.h"

namespace pixelhain {

Gif openGifStream(ByteStream& stream)
{
    return Gif(DGifOpen(
        &stream,
        [](GifFileType* gif, GifByteType* into, int length) {
            auto& from = *static_cast<ByteStream*>(gif->UserData);
            return static_cast<int>(from.read(into, static_cast<std::size_t>(length)));
        },
        nullptr));
}

std::optional<GraphicsControlBlock> goToGifImage(GifFileType* gif)
{
    GraphicsControlBlock control { DISPOSAL_UNSPECIFIED, false, 0, NO_TRANSPARENT_COLOR };
    for (;;) {
        GifRecordType record = UNDEFINED_RECORD_TYPE;
        if (DGifGetRecordType(gif, &record) == GIF_ERROR)
            return {};
        if (record == IMAGE_DESC_RECORD_TYPE)
            return DGifGetImageDesc(gif) == GIF_ERROR ? std::nullopt : std::optional(control);
        if (record != EXTENSION_RECORD_TYPE)
            return {};
        int code = 0;
        GifByteType* data = nullptr;
        if (DGifGetExtension(gif, &code, &data) == GIF_ERROR)
            return {};
        GraphicsControlBlock found {};
        if (code == GRAPHICS_EXT_FUNC_CODE && data != nullptr
            && DGifExtensionToGCB(data[0], data + 1, &found) == GIF_OK)
            control = found;
        while (data != nullptr) {
            if (DGifGetExtensionNext(gif, &data) == GIF_ERROR)
                return {};
        }
    }
}

GifColors gifColors(GifFileType const* gif, int hole)
{
    GifColors colors {};
    auto const* map = gif->Image.ColorMap != nullptr ? gif->Image.ColorMap : gif->SColorMap;
    for (std::size_t i = 0; i < colors.size(); ++i) {
        colors[i][3] = 255;
        if (map == nullptr || static_cast<int>(i) >= map->ColorCount)
            continue;
        auto const& color = map->Colors[i];
        colors[i] = { color.Blue, color.Green, color.Red, 255 };
    }
    if (hole >= 0 && hole < 256)
        colors[static_cast<std::size_t>(hole)] = {};
    return colors;
}

} // namespace pixelhain
