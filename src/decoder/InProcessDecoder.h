#pragma once
#include "ports/ImageDecoder.h"

namespace pixelhain {

/// Opens and decodes image files on the caller's thread.
class InProcessDecoder final : public ImageDecoder {
public:
    [[nodiscard]] std::optional<DecodedPicture> decode(DecodeRequest const& request) override;
    [[nodiscard]] std::optional<ImageMeta> readMeta(FileUrl const& file) override;
    [[nodiscard]] std::optional<Glance> glance(FileUrl const& file, int maxPixel) override;
    [[nodiscard]] std::optional<PhotoProperties> readProperties(FileUrl const& file) override;
    [[nodiscard]] std::unique_ptr<AnimationSource> openAnimation(
        FileUrl const& file, int maxPixel) override;
};

/// For `DecoderChoice`.
[[nodiscard]] std::unique_ptr<ImageDecoder> inProcessDecoder();

} // namespace pixelhain
