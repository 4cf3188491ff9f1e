#pragma once
#include "codecs/ByteStream.h"
#include <array>
#include <cstdint>
#include <memory>
#include <optional>

#include <gif_lib.h>

namespace pixelhain {

struct CloseGif {
    void operator()(GifFileType* gif) const { DGifCloseFile(gif, nullptr); }
};
using Gif = std::unique_ptr<GifFileType, CloseGif>;

/// The library's view of a stream, which outlives it; null if the header cannot be read.
[[nodiscard]] Gif openGifStream(ByteStream& stream);

/// Goes to the next image; returns what its graphics control block says, or the defaults. Nothing
/// if there is no further image.
[[nodiscard]] std::optional<GraphicsControlBlock> goToGifImage(GifFileType* gif);

/// The current image's colours by their numbers, as B, G, R, A; `hole` is the transparent one, -1
/// for none. Numbers that the table does not have are black.
using GifColors = std::array<std::array<std::uint8_t, 4>, 256>;
[[nodiscard]] GifColors gifColors(GifFileType const* gif, int hole);

/// The order in which the lines of an interlaced image come.
struct GifPass {
    int first;
    int step;
};
inline constexpr std::array<GifPass, 4> gifPasses { { { 0, 8 }, { 4, 8 }, { 2, 4 }, { 1, 2 } } };

} // namespace pixelhain
