#pragma once
#include "ports/ImageSource.h"
#include <cstdint>
#include <memory>
#include <optional>

namespace pixelhain {

/// Bytes that decoding a picture of `size` takes at most, by measured figures for the format of
/// this uniform type identifier, the result not counted.
[[nodiscard]] std::uint64_t decodingMemory(std::string_view typeIdentifier, PixelSize size);

/// An image of which only as much is decoded as fits into the memory at hand: the picture itself
/// yields nothing if it would take more, its previews are there all the same.
class CarefulSource final : public ImageSource {
public:
    CarefulSource(std::unique_ptr<ImageSource> source, std::uint64_t memory);

    /// What the picture would have taken, if it was refused for that.
    [[nodiscard]] std::optional<std::uint64_t> missingMemory() const { return missing_; }

    [[nodiscard]] std::string_view typeIdentifier() const override;
    [[nodiscard]] std::size_t frameCount() override;
    [[nodiscard]] std::optional<PixelSize> pixelSize() override;
    [[nodiscard]] int orientation() override;
    [[nodiscard]] std::vector<PixelSize> previews() override;
    [[nodiscard]] std::optional<DecodedImage> decodePreview(
        std::size_t index, int maxPixel) override;
    [[nodiscard]] std::optional<DecodedImage> decode(int maxPixel) override;
    [[nodiscard]] std::optional<DecodedImage> decodeWhole() override;
    [[nodiscard]] CodedJpeg codedPicture(int maxPixel) override;
    [[nodiscard]] CodedJpeg codedPreview(std::size_t index, int maxPixel) override;

private:
    [[nodiscard]] bool isTooLarge();

    std::unique_ptr<ImageSource> source_;
    std::uint64_t memory_;
    std::optional<std::uint64_t> missing_;
};

} // namespace pixelhain
