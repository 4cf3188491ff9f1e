#include "codecs/ExrSource.h"
#include "codecs/DecodeLimits.h"
#include "codecs/PhotoSource.h"
#include "codecs/PictureBuilder.h"
#include "codecs/ToneMapping.h"
#include <ImathBox.h>
#include <ImathMatrix.h>
#include <ImfChromaticities.h>
#include <ImfChromaticitiesAttribute.h>
#include <ImfHeader.h>
#include <ImfIO.h>
#include <ImfRgba.h>
#include <ImfRgbaFile.h>
#include <ImfStandardAttributes.h>
#include <algorithm>
#include <exception>
#include <stdexcept>

namespace pixelhain {

namespace {

constexpr std::size_t headBytes = std::size_t { 4 } << 10;
/// The library reads a tile whole, and keeps a row of tiles.
constexpr int maxTileSide = 8192;

/// A ByteSource as the library reads files: from a position on, all bytes or an exception.
class ExrStream final : public Imf::IStream {
public:
    explicit ExrStream(ByteSource const& bytes)
        : IStream("")
        , bytes_(bytes)
    {
    }

    bool read(char to[], int count) override
    {
        auto const length = static_cast<std::size_t>(std::max(count, 0));
        auto* const into = reinterpret_cast<std::uint8_t*>(to);
        if (bytes_.readAt(at_, { into, length }) != length)
            throw std::runtime_error("the file ends early");
        at_ += length;
        return at_ < bytes_.size();
    }
    uint64_t tellg() override { return at_; }
    void seekg(uint64_t to) override { at_ = to; }
    void clear() override { }

private:
    ByteSource const& bytes_;
    std::uint64_t at_ = 0;
};

std::optional<PixelSize> sizeOf(Imath::Box2i const& window)
{
    auto const width = std::int64_t { window.max.x } - window.min.x + 1;
    auto const height = std::int64_t { window.max.y } - window.min.y + 1;
    if (!isWithinLimits(width, height))
        return {};
    return PixelSize { static_cast<int>(width), static_cast<int>(height) };
}

/// An open file: what it shows is its display window; pixels outside the data window are clear.
class ExrFile {
public:
    /// Throws what the library throws.
    explicit ExrFile(ByteSource const& bytes)
        : stream_(bytes)
        , file_(stream_, 0)
        , data_(file_.dataWindow())
        , display_(file_.displayWindow())
        , toSrgb_(conversion())
    {
    }

    [[nodiscard]] std::optional<PixelSize> size() const
    {
        if (!sizeOf(data_))
            return {};
        return sizeOf(display_);
    }

    [[nodiscard]] bool hasAlpha() const
    {
        return (file_.channels() & Imf::WRITE_A) != 0 || data_ != display_;
    }
    [[nodiscard]] bool isGrey() const
    {
        return (file_.channels() & Imf::WRITE_RGB) == 0 && (file_.channels() & Imf::WRITE_C) == 0;
    }

    /// Reads the picture's row `y` (0 at the top); every pixel of the display window in linear
    /// R, G, B with Rec. 709 primaries and A, premultiplied.
    void readRow(int y, std::vector<Imath::V4f>& row)
    {
        std::ranges::fill(row, Imath::V4f(0));
        auto const line = display_.min.y + y;
        if (line < data_.min.y || line > data_.max.y)
            return;
        stored_.resize(static_cast<std::size_t>(std::int64_t { data_.max.x } - data_.min.x + 1));
        // The library adds x and y to the base; its strides are counted in pixels.
        auto* const base = stored_.data() - std::ptrdiff_t { data_.min.x };
        file_.setFrameBuffer(base, 1, 0);
        file_.readPixels(line);
        auto const first = std::max(data_.min.x, display_.min.x);
        auto const last = std::min(data_.max.x, display_.max.x);
        for (auto x = std::int64_t { first }; x <= last; ++x) {
            auto const& in = stored_[static_cast<std::size_t>(x - data_.min.x)];
            Imath::V3f color(in.r, in.g, in.b);
            if (needsConversion_)
                color = color * toSrgb_;
            row[static_cast<std::size_t>(x - display_.min.x)] = { color.x, color.y, color.z, in.a };
        }
    }

private:
    Imath::M44f conversion()
    {
        Imf::Chromaticities const srgb;
        auto const& header = file_.header();
        if (!Imf::hasChromaticities(header))
            return {};
        auto const& own = Imf::chromaticities(header);
        needsConversion_ = own != srgb;
        return Imf::RGBtoXYZ(own, 1) * Imf::XYZtoRGB(srgb, 1);
    }

    ExrStream stream_;
    Imf::RgbaInputFile file_;
    Imath::Box2i data_;
    Imath::Box2i display_;
    bool needsConversion_ = false;
    Imath::M44f toSrgb_;
    std::vector<Imf::Rgba> stored_;
};

class ExrSource final : public PhotoSource {
public:
    explicit ExrSource(std::unique_ptr<ByteSource> bytes)
        : PhotoSource(std::move(bytes), headBytes)
    {
        try {
            // Claims beyond that are refused by the library before it takes memory.
            Imf::Header::setMaxImageSize(DecodeLimits::side, DecodeLimits::side);
            Imf::Header::setMaxTileSize(maxTileSide, maxTileSide);
            file_ = std::make_unique<ExrFile>(this->bytes());
            PhotoTraits traits;
            traits.size = file_->size().value_or(PixelSize {});
            setTraits(traits);
        } catch (std::exception const&) {
            file_.reset();
        }
    }

    [[nodiscard]] bool isReadable() const { return file_ && file_->size(); }
    [[nodiscard]] std::string_view typeIdentifier() const override
    {
        return "com.ilm.openexr-image";
    }

private:
    // Read twice, because the exposure depends on the whole picture.
    [[nodiscard]] std::optional<DecodedImage> decodeStored(int maxPixel) override
    {
        PictureBuilder builder;
        auto const size = *file_->size();
        auto const format = file_->hasAlpha() ? PixelFormat::premultiplied : PixelFormat::opaque;
        if (!builder.begin(size, fittedSize(size, maxPixel), format))
            return {};
        std::vector<Imath::V4f> row(static_cast<std::size_t>(size.width));
        ToneMap const tones(measuredExposure(row));
        try {
            for (int y = 0; y < size.height; ++y) {
                file_->readRow(y, row);
                putRow(tones, row, builder.nextRow());
                builder.commitRow();
            }
        } catch (std::bad_alloc const&) {
            throw;
        } catch (std::exception const&) {
            // The rest is missing; what came is shown.
        }
        DecodedImage image;
        image.bitmap = builder.finish({}, file_->isGrey() ? Channels::grey : Channels::color);
        if (image.bitmap.isEmpty())
            return {};
        return image;
    }

    // A light that is seen through nothing (a glow without coverage) would be lost when colours are
    // cut at the alpha: the tones are made of the colour before it is multiplied.
    void putRow(ToneMap const& tones, std::vector<Imath::V4f> const& row, std::uint8_t* out) const
    {
        for (auto const& pixel : row) {
            auto const alpha = file_->hasAlpha() ? std::clamp(pixel.w, 0.0F, 1.0F) : 1.0F;
            auto const whole = alpha > 0 && alpha < 1 ? 1 / alpha : 1.0F;
            tones.put(pixel.x * whole, pixel.y * whole, pixel.z * whole, out);
            out[3] = static_cast<std::uint8_t>(alpha * 255 + 0.5F);
            for (int c = 0; c < 3; ++c)
                out[c] = static_cast<std::uint8_t>((out[c] * out[3] + 127) / 255);
            out += 4;
        }
    }

    [[nodiscard]] float measuredExposure(std::vector<Imath::V4f>& row)
    {
        constexpr std::size_t meteredEach = 8; // pixels: a mean needs no more
        ExposureMeter meter;
        try {
            for (int y = 0; y < file_->size()->height; ++y) {
                file_->readRow(y, row);
                for (std::size_t x = 0; x < row.size(); x += meteredEach) {
                    if (!file_->hasAlpha() || row[x].w > 0)
                        meter.add(row[x].x, row[x].y, row[x].z);
                }
            }
        } catch (std::bad_alloc const&) {
            throw;
        } catch (std::exception const&) {
            // Measured over what can be read.
        }
        return meter.exposure();
    }

    std::unique_ptr<ExrFile> file_;
};

} // namespace

std::unique_ptr<ImageSource> openExr(std::unique_ptr<ByteSource> bytes)
{
    return openPhoto<ExrSource>(std::move(bytes));
}

} // namespace pixelhain
