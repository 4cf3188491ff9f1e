#include "codecs/PngSource.h"
#include "codecs/DecodeLimits.h"
#include "codecs/PhotoSource.h"
#include "codecs/PngDecoder.h"
#include <algorithm>
#include <array>

namespace pixelhain {

namespace {

constexpr std::size_t headBytes = std::size_t { 16 } << 10;
constexpr int mostChunks = 4096;

struct PngHeader {
    PhotoTraits traits;
    bool isIndexed = false;
    std::size_t frames = 1;
};

void takeChunk(ByteSource const& bytes, ByteSpan type, std::uint64_t offset, std::uint32_t length,
    PngHeader& header)
{
    std::array<std::uint8_t, 13> start {};
    auto const known = ByteSpan(start).first(
        bytes.readAt(offset, std::span(start).first(std::min<std::size_t>(length, start.size()))));
    if (startsWith(type, "IHDR") && known.size() == start.size()) {
        auto const width = bigEndian32(start.data());
        auto const height = bigEndian32(start.data() + 4);
        if (width <= DecodeLimits::side && height <= DecodeLimits::side)
            header.traits.size = { static_cast<int>(width), static_cast<int>(height) };
        header.isIndexed = start[9] == 3;
    } else if (startsWith(type, "acTL") && known.size() >= 4) {
        auto const frames = std::size_t { bigEndian32(start.data()) };
        header.frames = std::clamp<std::size_t>(frames, 1, DecodeLimits::frames);
    } else if (startsWith(type, "eXIf")) {
        header.traits.exif = readExif(bytes, offset, length);
    }
}

// Reads the chunks in front of the pixels.
std::optional<PngHeader> readHeader(ByteSource const& bytes)
{
    PngHeader header;
    std::uint64_t offset = 8;
    for (int i = 0; i < mostChunks; ++i) {
        std::array<std::uint8_t, 8> head {};
        if (bytes.readAt(offset, head) != head.size())
            break;
        auto const type = ByteSpan(head).subspan(4);
        if (startsWith(type, "IDAT"))
            break;
        auto const length = bigEndian32(head.data());
        takeChunk(bytes, type, offset + head.size(), length, header);
        offset += std::uint64_t { length } + 12;
    }
    if (header.traits.size.width <= 0 || header.traits.size.height <= 0)
        return {};
    return header;
}

class PngSource final : public PhotoSource {
public:
    explicit PngSource(std::unique_ptr<ByteSource> bytes)
        : PhotoSource(std::move(bytes), headBytes)
        , header_(readHeader(this->bytes()))
    {
        if (header_)
            setTraits(header_->traits);
    }

    [[nodiscard]] bool isReadable() const { return header_.has_value(); }
    [[nodiscard]] std::string_view typeIdentifier() const override { return "public.png"; }
    [[nodiscard]] std::size_t frameCount() override { return header_->frames; }

private:
    [[nodiscard]] std::optional<DecodedImage> decodeStored(int maxPixel) override
    {
        auto image = decodePng(bytes(), maxPixel);
        if (image)
            image->isIndexed = header_->isIndexed;
        return image;
    }

    std::optional<PngHeader> header_;
};

} // namespace

std::unique_ptr<ImageSource> openPng(std::unique_ptr<ByteSource> bytes)
{
    return openPhoto<PngSource>(std::move(bytes));
}

} // namespace pixelhain
