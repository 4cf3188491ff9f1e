#pragma once
#include "base/Geometry.h"
#include "codecs/ByteView.h"
#include <memory>
#include <optional>
#include <vector>

#include <jxl/decode.h>

namespace pixelhain {

/// A JPEG XL decoder that is fed from a file piece by piece as it asks for more.
class JxlStream {
public:
    enum class Threads : std::uint8_t { none, some };

    /// `events`: what `next` is to stop at. `bytes` must outlive it.
    JxlStream(ByteSource const& bytes, int events, Threads threads = Threads::none);

    /// Goes on to the next event. JXL_DEC_NEED_MORE_INPUT means that the file ends too early.
    [[nodiscard]] JxlDecoderStatus next();

    [[nodiscard]] JxlDecoder* decoder() const { return decoder_.get(); }

private:
    [[nodiscard]] bool feed();

    ByteSource const& bytes_;
    std::shared_ptr<void> runner_;
    std::unique_ptr<JxlDecoder, decltype(&JxlDecoderDestroy)> decoder_;
    std::vector<std::uint8_t> piece_;
    std::uint64_t offset_ = 0;
    bool endsWithFile_;
    bool isReady_ = false;
};

/// A JPEG XL's header as far as a picture is chosen by it.
struct JxlHeader {
    PixelSize size; ///< as stored
    int orientation = 1; ///< as EXIF counts
    PixelSize preview; ///< as stored; 0 × 0: it has none
    bool isAnimated = false;
};

[[nodiscard]] std::optional<JxlHeader> readJxlHeader(ByteSource const& bytes);

/// The frames that are shown of an animation; reads through the file.
[[nodiscard]] std::size_t countJxlFrames(ByteSource const& bytes);

/// The EXIF block of a file made of boxes, from its TIFF header on, unpacked if it is compressed.
[[nodiscard]] std::vector<std::uint8_t> readJxlExif(ByteSource const& bytes);

/// The JPEG that a file was made of, byte for byte; empty if it was not made of one, or if the file
/// does not keep what is needed.
[[nodiscard]] std::vector<std::uint8_t> reconstructJpeg(ByteSource const& bytes);

} // namespace pixelhain
