#pragma once
#include "codecs/ExifReader.h"
#include "codecs/HeadBytes.h"
#include "codecs/JpegPreviews.h"
#include "ports/ImageSource.h"
#include <memory>
#include <optional>

namespace pixelhain {

/// What the sources of all formats share: orientation, limits, embedded previews, the profile. A
/// format adds how its pixels are read.
class PhotoSource : public ImageSource {
public:
    [[nodiscard]] std::size_t frameCount() override { return 1; }
    [[nodiscard]] std::optional<PixelSize> pixelSize() override { return traits_.size; }
    [[nodiscard]] int orientation() override { return traits_.exif.orientation; }
    [[nodiscard]] std::vector<PixelSize> previews() override;
    [[nodiscard]] std::optional<DecodedImage> decodePreview(
        std::size_t index, int maxPixel) override;
    [[nodiscard]] std::optional<DecodedImage> decode(int maxPixel) override;
    [[nodiscard]] std::optional<DecodedImage> decodeWhole() override;

protected:
    PhotoSource(std::unique_ptr<ByteSource> bytes, std::size_t headBytes);

    /// The picture as stored, in sRGB, at most `maxPixel` on its longest side (0: its own size).
    /// Called only for pictures within the limits.
    [[nodiscard]] virtual std::optional<DecodedImage> decodeStored(int maxPixel) = 0;

    /// The embedded colour profile; empty if there is none. Called at most once.
    [[nodiscard]] virtual std::vector<std::uint8_t> readProfile() { return {}; }

    /// The profile that lies at `range`; empty if it is too large to be one.
    [[nodiscard]] std::vector<std::uint8_t> profileAt(ByteRange range) const;

    [[nodiscard]] HeadBytes const& bytes() const { return head_; }
    [[nodiscard]] std::vector<std::uint8_t> const& profile();
    [[nodiscard]] PhotoTraits const& traits() const { return traits_; }
    void setTraits(PhotoTraits traits) { traits_ = std::move(traits); }

    [[nodiscard]] std::vector<JpegPreview> const& foundPreviews();

private:
    std::unique_ptr<ByteSource> bytes_;
    HeadBytes head_;
    PhotoTraits traits_;
    std::optional<std::vector<JpegPreview>> previews_;
    std::optional<std::vector<std::uint8_t>> profile_;
};

/// A source of one format over `bytes`; null if its header cannot be read.
template <typename Source>
[[nodiscard]] std::unique_ptr<ImageSource> openPhoto(std::unique_ptr<ByteSource> bytes)
{
    auto source = std::make_unique<Source>(std::move(bytes));
    if (!source->isReadable())
        return nullptr;
    return source;
}

} // namespace pixelhain
