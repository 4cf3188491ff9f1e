#pragma once
#include "base/Resample.h"
#include "codecs/ColorConversion.h"
#include "ports/ImageSource.h"
#include <optional>

namespace pixelhain {

/// Takes a codec's rows one by one and makes the picture of them that was asked for: scaled while
/// the rows come, premultiplied, in sRGB at the end.
class PictureBuilder {
public:
    /// A width and a height in the codec's pixels. A picture that is read at a fraction of its size
    /// may end in the middle of one.
    struct Extent {
        double width = 0;
        double height = 0;
    };

    PictureBuilder() = default;
    PictureBuilder(PictureBuilder const&) = delete;
    PictureBuilder& operator=(PictureBuilder const&) = delete;

    /// `rows`: what the codec will deliver. False if the result would be beyond the limits.
    [[nodiscard]] bool begin(PixelSize rows, PixelSize target, PixelFormat format);
    /// The same for rows of which the picture fills no more than `filled`, from the top left
    /// corner.
    [[nodiscard]] bool begin(PixelSize rows, Extent filled, PixelSize target, PixelFormat format);

    /// Room for the next row, four bytes a pixel; fill it, then commit. Never null between a
    /// successful `begin` and the last row.
    [[nodiscard]] std::uint8_t* nextRow();
    void commitRow();
    [[nodiscard]] int rowsTaken() const { return taken_; }

    /// The picture; rows that never came are transparent. Empty if not a single one came.
    [[nodiscard]] Bitmap finish(ByteSpan profile, Channels channels);

private:
    void premultiplyRow(std::uint8_t* row);
    void fillMissing();

    PixelSize rows_;
    PixelFormat format_ = PixelFormat::opaque;
    Bitmap bitmap_;
    std::optional<RowResampler> resampler_;
    std::uint8_t* row_ = nullptr;
    int taken_ = 0;
    bool sawAlpha_ = false;
};

/// `image` upright; nothing if there is no memory for it.
[[nodiscard]] std::optional<DecodedImage> uprightImage(
    std::optional<DecodedImage> image, int orientation);

} // namespace pixelhain
