#pragma once
#include "ports/AnimationSource.h"
#include "ports/DecodeRequest.h"
#include "ports/PhotoProperties.h"
#include <memory>
#include <optional>

namespace pixelhain {

/// Opens image files and answers for them. Thread-safe; every call waits for disk and decoder.
/// Nothing comes back for a file that is missing, no regular file, no image, damaged beyond use, or
/// beyond the decoder's limits.
class ImageDecoder {
public:
    virtual ~ImageDecoder() = default;
    [[nodiscard]] virtual std::optional<DecodedPicture> decode(DecodeRequest const& request) = 0;
    [[nodiscard]] virtual std::optional<ImageMeta> readMeta(FileUrl const& file) = 0;
    /// A first look at a photo of which a picture of at most `maxPixel` is wanted; takes a fraction
    /// of the time that this will take.
    [[nodiscard]] virtual std::optional<Glance> glance(FileUrl const& file, int maxPixel) = 0;
    /// What the file states about its photo; read from its directories, no pixel is decoded.
    [[nodiscard]] virtual std::optional<PhotoProperties> readProperties(FileUrl const& file) = 0;

    /// The animation in a GIF, PNG or WebP file, in frames with a longest side of at most
    /// `maxPixel`, never enlarged; 0: as they are. Null for every other file and for a still PNG or
    /// WebP. Must not outlive this.
    [[nodiscard]] virtual std::unique_ptr<AnimationSource> openAnimation(
        FileUrl const& file, int maxPixel)
        = 0;
};

} // namespace pixelhain
