#include "codecs/QoiSource.h"
#include "codecs/ByteStream.h"
#include "codecs/DecodeLimits.h"
#include "codecs/PhotoSource.h"
#include "codecs/PictureBuilder.h"
#include <array>
#include <cstring>

namespace pixelhain {

namespace {

constexpr std::size_t headBytes = 64;
constexpr std::uint64_t headerLength = 14;

struct QoiHeader {
    PixelSize size;
    bool hasAlpha = false;
    bool isLinear = false;
};

std::optional<QoiHeader> readHeader(ByteSource const& bytes)
{
    std::array<std::uint8_t, headerLength> head {};
    if (bytes.readAt(0, head) != head.size() || !startsWith(head, "qoif"))
        return {};
    auto const width = bigEndian32(head.data() + 4);
    auto const height = bigEndian32(head.data() + 8);
    if (width > DecodeLimits::side || height > DecodeLimits::side || head[12] < 3 || head[12] > 4)
        return {};
    return QoiHeader { { static_cast<int>(width), static_cast<int>(height) }, head[12] == 4,
        head[13] == 1 };
}

/// The pixels one after the other.
class QoiPixels {
public:
    explicit QoiPixels(ByteSource const& bytes)
        : stream_(bytes, headerLength)
    {
    }

    /// Puts the next pixel as B, G, R, A; false where the file ends.
    bool next(std::uint8_t* out)
    {
        if (run_ > 0)
            --run_;
        else if (!read())
            return false;
        out[0] = pixel_[2];
        out[1] = pixel_[1];
        out[2] = pixel_[0];
        out[3] = pixel_[3];
        return true;
    }

private:
    using Pixel = std::array<std::uint8_t, 4>; // R, G, B, A

    bool read()
    {
        auto const tag = stream_.next();
        if (tag < 0)
            return false;
        auto const low = tag & 63;
        if (tag >= 0xFE) {
            auto const count = tag == 0xFF ? pixel_.size() : 3;
            if (stream_.read(pixel_.data(), count) != count)
                return false;
        } else if (tag >> 6 == 0) {
            pixel_ = seen_[static_cast<std::size_t>(low)];
        } else if (tag >> 6 == 1) {
            shift((low >> 4) - 2, (low >> 2 & 3) - 2, (low & 3) - 2);
        } else if (tag >> 6 == 2) {
            auto const more = stream_.next();
            if (more < 0)
                return false;
            auto const green = low - 32;
            shift(green - 8 + (more >> 4), green, green - 8 + (more & 15));
        } else {
            run_ = low;
        }
        auto const& [r, g, b, a] = pixel_;
        seen_[static_cast<std::size_t>(r * 3 + g * 5 + b * 7 + a * 11) % seen_.size()] = pixel_;
        return true;
    }

    void shift(int red, int green, int blue)
    {
        pixel_[0] = static_cast<std::uint8_t>(pixel_[0] + red);
        pixel_[1] = static_cast<std::uint8_t>(pixel_[1] + green);
        pixel_[2] = static_cast<std::uint8_t>(pixel_[2] + blue);
    }

    ByteStream stream_;
    std::array<Pixel, 64> seen_ {};
    Pixel pixel_ { 0, 0, 0, 255 };
    int run_ = 0;
};

class QoiSource final : public PhotoSource {
public:
    explicit QoiSource(std::unique_ptr<ByteSource> bytes)
        : PhotoSource(std::move(bytes), headBytes)
        , header_(readHeader(this->bytes()))
    {
        if (!header_)
            return;
        PhotoTraits traits;
        traits.size = header_->size;
        setTraits(traits);
    }

    [[nodiscard]] bool isReadable() const { return header_.has_value(); }
    [[nodiscard]] std::string_view typeIdentifier() const override { return "org.qoiformat.qoi"; }

private:
    // A run stands for 62 pixels at most: a file that is smaller than that cannot hold the picture
    // it claims. The rows it has are shown.
    [[nodiscard]] std::optional<DecodedImage> decodeStored(int maxPixel) override
    {
        PictureBuilder builder;
        auto const size = header_->size;
        auto const format = header_->hasAlpha ? PixelFormat::straight : PixelFormat::opaque;
        if (!builder.begin(size, fittedSize(size, maxPixel), format))
            return {};
        QoiPixels pixels(bytes());
        for (int y = 0; y < size.height && readRow(pixels, builder.nextRow()); ++y)
            builder.commitRow();
        DecodedImage image;
        image.bitmap = builder.finish(profile(), Channels::color);
        if (image.bitmap.isEmpty())
            return {};
        return image;
    }

    // A row that the file breaks off in counts as missing.
    bool readRow(QoiPixels& pixels, std::uint8_t* row) const
    {
        for (int x = 0; x < header_->size.width; ++x, row += 4) {
            if (!pixels.next(row))
                return false;
            if (!header_->hasAlpha)
                row[3] = 255;
        }
        return true;
    }

    [[nodiscard]] std::vector<std::uint8_t> readProfile() override
    {
        // The primaries and the white of sRGB (IEC 61966-2-1), without its curve.
        constexpr Chromaticities srgb { { 0.3127, 0.3290 }, { 0.64, 0.33 }, { 0.30, 0.60 },
            { 0.15, 0.06 } };
        return header_->isLinear ? makeProfile(srgb, 1.0) : std::vector<std::uint8_t> {};
    }

    std::optional<QoiHeader> header_;
};

} // namespace

std::unique_ptr<ImageSource> openQoi(std::unique_ptr<ByteSource> bytes)
{
    return openPhoto<QoiSource>(std::move(bytes));
}

} // namespace pixelhain
