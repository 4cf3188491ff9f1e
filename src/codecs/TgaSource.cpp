#include "codecs/TgaSource.h"
#include "codecs/ByteStream.h"
#include "codecs/DecodeLimits.h"
#include "codecs/PhotoSource.h"
#include "codecs/PictureBuilder.h"
#include <array>
#include <cstdlib>
#include <cstring>

namespace pixelhain {

namespace {

constexpr std::size_t headBytes = 1024;
constexpr std::size_t headerLength = 18;

struct TgaHeader {
    enum class Kind : std::uint8_t { palette = 1, color = 2, grey = 3 };
    PixelSize size;
    Kind kind = Kind::color;
    bool hasRuns = false;
    bool isTopDown = false;
    bool isRightToLeft = false;
    int bits = 0; ///< a pixel
    int alphaBits = 0; ///< of them
    int firstColor = 0; ///< index of the palette's first entry
    int colors = 0;
    int colorBits = 0; ///< an entry of the palette
    std::uint64_t paletteOffset = 0;

    [[nodiscard]] static std::size_t bytesOf(int bits)
    {
        return static_cast<std::size_t>(bits + 7) / 8;
    }
    [[nodiscard]] std::uint64_t pixelOffset() const
    {
        return paletteOffset + static_cast<std::uint64_t>(colors) * bytesOf(colorBits);
    }
};

bool isColorDepth(int bits)
{
    return bits == 15 || bits == 16 || bits == 24 || bits == 32;
}

bool isConsistent(TgaHeader const& header, int paletteKind)
{
    if (!isWithinLimits(header.size))
        return false;
    switch (header.kind) {
    case TgaHeader::Kind::palette:
        return paletteKind == 1 && header.colors > 0 && isColorDepth(header.colorBits)
            && (header.bits == 8 || header.bits == 16);
    case TgaHeader::Kind::color:
        return isColorDepth(header.bits);
    case TgaHeader::Kind::grey:
        return header.bits == 8 || header.bits == 16;
    }
    return false;
}

std::optional<TgaHeader> readHeader(ByteSpan start)
{
    if (start.size() < headerLength)
        return {};
    auto const* const head = start.data();
    auto const paletteKind = head[1];
    auto const kind = head[2] & 7;
    if (paletteKind > 1 || (head[2] & ~11) != 0 || kind < 1 || kind > 3)
        return {};
    TgaHeader header;
    header.kind = static_cast<TgaHeader::Kind>(kind);
    header.hasRuns = (head[2] & 8) != 0;
    header.firstColor = littleEndian16(head + 3);
    header.colors = paletteKind == 1 ? littleEndian16(head + 5) : 0;
    header.colorBits = head[7];
    header.size = { littleEndian16(head + 12), littleEndian16(head + 14) };
    header.bits = head[16];
    header.alphaBits = head[17] & 15;
    header.isRightToLeft = (head[17] & 0x10) != 0;
    header.isTopDown = (head[17] & 0x20) != 0;
    header.paletteOffset = headerLength + head[0];
    if ((head[17] & 0xC0) != 0 || !isConsistent(header, paletteKind))
        return {};
    return header;
}

using Color = std::array<std::uint8_t, 4>; // B, G, R, A

Color colorOf(std::uint8_t const* in, int bits, bool hasAlpha)
{
    if (bits >= 24)
        return { in[0], in[1], in[2], hasAlpha && bits == 32 ? in[3] : std::uint8_t { 255 } };
    auto const value = littleEndian16(in);
    auto const five = [value](int shift) {
        auto const part = value >> shift & 31;
        return static_cast<std::uint8_t>(part << 3 | part >> 2);
    };
    auto const isClear = hasAlpha && bits == 16 && (value & 0x8000) == 0;
    return { five(0), five(5), five(10), isClear ? std::uint8_t { 0 } : std::uint8_t { 255 } };
}

class TgaPixels {
public:
    TgaPixels(ByteSource const& bytes, TgaHeader const& header)
        : header_(header)
        , stream_(bytes, header.pixelOffset())
    {
        auto const length = TgaHeader::bytesOf(header.colorBits);
        auto const entries = static_cast<std::size_t>(header.colors);
        auto const packed = bytesAt(bytes, header.paletteOffset, entries * length);
        for (std::size_t i = 0; i < entries && (i + 1) * length <= packed.size(); ++i)
            palette_.push_back(
                colorOf(packed.data() + i * length, header.colorBits, header.colorBits == 32));
    }

    bool next(std::uint8_t* out)
    {
        if (header_.hasRuns && left_ == 0 && !beginPacket())
            return false;
        auto const isRepeated = header_.hasRuns && isRun_ && !isFirst_;
        if (!isRepeated && !read())
            return false;
        isFirst_ = false;
        --left_;
        std::memcpy(out, color_.data(), color_.size());
        return true;
    }

private:
    bool beginPacket()
    {
        auto const packet = stream_.next();
        if (packet < 0)
            return false;
        isRun_ = (packet & 0x80) != 0;
        isFirst_ = true;
        left_ = (packet & 0x7F) + 1;
        return true;
    }

    bool read()
    {
        std::array<std::uint8_t, 4> in {};
        auto const length = TgaHeader::bytesOf(header_.bits);
        if (stream_.read(in.data(), length) != length)
            return false;
        switch (header_.kind) {
        case TgaHeader::Kind::palette: {
            auto const index
                = (length == 2 ? littleEndian16(in.data()) : in[0]) - header_.firstColor;
            auto const isKnown = index >= 0 && index < static_cast<int>(palette_.size());
            color_ = isKnown ? palette_[static_cast<std::size_t>(index)] : Color { 0, 0, 0, 255 };
            break;
        }
        case TgaHeader::Kind::grey:
            color_ = { in[0], in[0], in[0],
                length == 2 && header_.alphaBits == 8 ? in[1] : std::uint8_t { 255 } };
            break;
        case TgaHeader::Kind::color:
            color_ = colorOf(in.data(), header_.bits, header_.alphaBits > 0);
            break;
        }
        return true;
    }

    TgaHeader const& header_;
    ByteStream stream_;
    std::vector<Color> palette_;
    Color color_ { 0, 0, 0, 255 };
    int left_ = 0;
    bool isRun_ = false;
    bool isFirst_ = false;
};

/// The picture in the file's own order of rows, for files that do not begin at the top.
class TgaSource final : public PhotoSource {
public:
    explicit TgaSource(std::unique_ptr<ByteSource> bytes)
        : PhotoSource(std::move(bytes), headBytes)
        , header_(readHeader(bytesAt(this->bytes(), 0, headerLength)))
    {
        if (!header_)
            return;
        PhotoTraits traits;
        traits.size = header_->size;
        // Rows from the bottom or from the right are turned like a photo that was held so.
        traits.exif.orientation = storedOrientation();
        setTraits(traits);
    }

    [[nodiscard]] bool isReadable() const
    {
        return header_ && header_->pixelOffset() < bytes().size();
    }
    [[nodiscard]] std::string_view typeIdentifier() const override
    {
        return "com.truevision.tga-image";
    }

private:
    [[nodiscard]] int storedOrientation() const
    {
        if (header_->isTopDown)
            return header_->isRightToLeft ? 2 : 1;
        return header_->isRightToLeft ? 3 : 4;
    }

    [[nodiscard]] std::optional<DecodedImage> decodeStored(int maxPixel) override
    {
        PictureBuilder builder;
        auto const size = header_->size;
        if (!builder.begin(size, fittedSize(size, maxPixel), PixelFormat::straight))
            return {};
        TgaPixels pixels(bytes(), *header_);
        for (int y = 0; y < size.height && readRow(pixels, builder.nextRow()); ++y)
            builder.commitRow();
        DecodedImage image;
        image.bitmap = builder.finish({}, Channels::color);
        image.isIndexed = header_->kind == TgaHeader::Kind::palette;
        if (image.bitmap.isEmpty())
            return {};
        return image;
    }

    bool readRow(TgaPixels& pixels, std::uint8_t* row) const
    {
        for (int x = 0; x < header_->size.width; ++x, row += 4) {
            if (!pixels.next(row))
                return false;
        }
        return true;
    }

    std::optional<TgaHeader> header_;
};

} // namespace

bool looksLikeTga(ByteSpan start)
{
    return readHeader(start).has_value();
}

std::unique_ptr<ImageSource> openTga(std::unique_ptr<ByteSource> bytes)
{
    return openPhoto<TgaSource>(std::move(bytes));
}

} // namespace pixelhain
