#pragma once
#include "images/DecodeRules.h"
#include "ports/ImageSource.h"
#include "support/FakeImageDecoder.h"
#include <set>
#include <string>
#include <vector>

namespace pixelhain {

/// An opened file as a test describes it. Records every call that makes pixels.
class FakeImageSource final : public ImageSource {
public:
    std::string type = "public.jpeg";
    std::size_t frames = 1;
    std::optional<PixelSize> storedSize = PixelSize { 4000, 3000 };
    int storedOrientation = 1;
    std::vector<PixelSize> storedPreviews;
    std::set<std::size_t> damagedPreviews;
    bool failsToDecode = false;
    bool failsWhole = false;
    bool isIndexed = false;
    bool hasColorSpace = true;
    bool wasReduced = false;
    /// What `decode` yields; absent: the stored size reduced as asked.
    std::optional<PixelSize> decodedSize;

    std::optional<PixelSize> codedSize; ///< what the coded picture and previews have; else none

    std::vector<std::string> calls; ///< "preview 0 256", "decode 256", "whole", "count"

    std::string_view typeIdentifier() const override { return type; }
    std::size_t frameCount() override
    {
        calls.emplace_back("count");
        return frames;
    }
    std::optional<PixelSize> pixelSize() override { return storedSize; }
    int orientation() override { return storedOrientation; }
    std::vector<PixelSize> previews() override { return storedPreviews; }

    std::optional<DecodedImage> decodePreview(std::size_t index, int maxPixel) override
    {
        calls.push_back("preview " + std::to_string(index) + " " + std::to_string(maxPixel));
        if (damagedPreviews.contains(index))
            return std::nullopt;
        return DecodedImage { grayBitmap(redrawnSize(storedPreviews.at(index), maxPixel)) };
    }

    std::optional<DecodedImage> decode(int maxPixel) override
    {
        calls.push_back("decode " + std::to_string(maxPixel));
        if (failsToDecode)
            return std::nullopt;
        auto const size = redrawnSize(storedSize.value_or(PixelSize { 40, 30 }), maxPixel);
        return image(decodedSize.value_or(size));
    }

    std::optional<DecodedImage> decodeWhole() override
    {
        calls.emplace_back("whole");
        if (failsWhole)
            return std::nullopt;
        return image(storedSize.value_or(PixelSize { 40, 30 }));
    }

    CodedJpeg codedPicture(int maxPixel) override
    {
        calls.push_back("coded " + std::to_string(maxPixel));
        return coded();
    }

    CodedJpeg codedPreview(std::size_t index, int maxPixel) override
    {
        calls.push_back("coded preview " + std::to_string(index) + " " + std::to_string(maxPixel));
        return coded();
    }

private:
    CodedJpeg coded() const
    {
        if (!codedSize)
            return {};
        return { *codedSize, std::make_shared<std::vector<std::uint8_t> const>(1) };
    }

    DecodedImage image(PixelSize size) const
    {
        return { grayBitmap(size), isIndexed, hasColorSpace, wasReduced };
    }
};

} // namespace pixelhain
