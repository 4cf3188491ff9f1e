#pragma once
#include "codecs/ByteView.h"
#include "codecs/HeifIndex.h"
#include "ports/ImageSource.h"
#include <optional>

namespace pixelhain {

/// Loads the decoders for HEIF; what is decoded without it does so by itself.
void warmUpHeif();

/// How a picture of a HEIF file is to be decoded.
struct HeifRequest {
    std::vector<HeifIndex::Patch> patches; ///< that make it the primary picture
    PixelSize size; ///< upright, as the file states it
    int maxPixel = 0; ///< of the result; 0: the picture's own size
    ByteSpan profile; ///< empty if there is none
    std::optional<HeifIndex::CodePoints> codePoints;
};

/// Decodes one picture of the HEIF file `bytes`, upright and in sRGB. A picture that turns out
/// smaller than stated counts as damaged.
[[nodiscard]] std::optional<DecodedImage> decodeHeif(
    ByteSource const& bytes, HeifRequest const& request);

} // namespace pixelhain
