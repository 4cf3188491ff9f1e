#include "codecs/RadianceSource.h"
#include "codecs/ByteStream.h"
#include "codecs/DecodeLimits.h"
#include "codecs/PhotoSource.h"
#include "codecs/PictureBuilder.h"
#include "codecs/ToneMapping.h"
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

namespace pixelhain {

namespace {

constexpr std::size_t headBytes = std::size_t { 16 } << 10;

struct RadianceHeader {
    PixelSize size; ///< as stored: the length and the number of the file's lines
    int orientation = 1;
    std::uint64_t offset = 0; ///< of the first line
};

// "-Y 512 +X 768": lines from the top, each from the left. Where X comes first, lines are columns.
std::optional<RadianceHeader> readResolution(std::string_view line)
{
    struct Axis {
        bool isX = false;
        bool isRising = false;
        int length = 0;
    };
    auto const readAxis = [&line]() -> std::optional<Axis> {
        while (!line.empty() && line.front() == ' ')
            line.remove_prefix(1);
        if (line.size() < 4 || (line[0] != '-' && line[0] != '+')
            || (line[1] != 'X' && line[1] != 'Y') || line[2] != ' ')
            return {};
        Axis axis { line[1] == 'X', line[0] == '+', 0 };
        auto const [end, error]
            = std::from_chars(line.data() + 3, line.data() + line.size(), axis.length);
        if (error != std::errc())
            return {};
        line.remove_prefix(static_cast<std::size_t>(end - line.data()));
        return axis;
    };
    auto const lines = readAxis();
    auto const along = readAxis();
    if (!lines || !along || lines->isX == along->isX)
        return {};
    RadianceHeader header;
    header.size = { along->length, lines->length };
    if (!lines->isX) // Y falls and X rises in an upright picture
        header.orientation
            = lines->isRising ? (along->isRising ? 4 : 3) : (along->isRising ? 1 : 2);
    else
        header.orientation
            = lines->isRising ? (along->isRising ? 8 : 5) : (along->isRising ? 7 : 6);
    return header;
}

std::optional<RadianceHeader> readHeader(ByteSource const& bytes)
{
    auto const head = bytesAt(bytes, 0, headBytes);
    std::string_view const text(reinterpret_cast<char const*>(head.data()), head.size());
    if (!text.starts_with("#?"))
        return {};
    auto const blank = text.find("\n\n");
    if (blank == std::string_view::npos)
        return {};
    if (auto const format = text.substr(0, blank).find("FORMAT="); format != std::string_view::npos
        && !text.substr(format).starts_with("FORMAT=32-bit_rle_rgbe"))
        return {};
    auto const begin = blank + 2;
    auto const end = text.find('\n', begin);
    if (end == std::string_view::npos)
        return {};
    auto header = readResolution(text.substr(begin, end - begin));
    if (!header || !isWithinLimits(header->size))
        return {};
    header->offset = end + 1;
    return header;
}

/// The lines of the file, one after the other.
class RadianceLines {
public:
    using Pixel = std::array<std::uint8_t, 4>; // R, G, B, exponent

    RadianceLines(ByteSource const& bytes, RadianceHeader const& header)
        : stream_(bytes, header.offset)
        , line_(static_cast<std::size_t>(header.size.width))
    {
    }

    [[nodiscard]] std::vector<Pixel> const& line() const { return line_; }

    /// False where the file ends or makes no sense.
    bool next()
    {
        Pixel first {};
        if (stream_.read(first.data(), first.size()) != first.size())
            return false;
        auto const length = static_cast<std::size_t>(first[2] << 8 | first[3]);
        auto const isSeparate = first[0] == 2 && first[1] == 2 && first[2] < 128;
        if (isSeparate && line_.size() >= 8)
            return length == line_.size() && readChannels();
        return readPixels(first);
    }

private:
    // Each channel of the line by itself, with run lengths.
    bool readChannels()
    {
        for (std::size_t channel = 0; channel < 4; ++channel) {
            for (std::size_t x = 0; x < line_.size();) {
                auto const code = stream_.next();
                auto const isRun = code > 128;
                auto const count = static_cast<std::size_t>(isRun ? code - 128 : code);
                if (code <= 0 || count > line_.size() - x)
                    return false;
                auto value = isRun ? stream_.next() : 0;
                for (std::size_t i = 0; i < count; ++i) {
                    if (!isRun)
                        value = stream_.next();
                    if (value < 0)
                        return false;
                    line_[x++][channel] = static_cast<std::uint8_t>(value);
                }
            }
        }
        return true;
    }

    // Whole pixels; 1, 1, 1, n repeats the one before, n counting in ever higher bytes.
    bool readPixels(Pixel pixel)
    {
        int shift = 0;
        for (std::size_t x = 0; x < line_.size();) {
            if (pixel[0] == 1 && pixel[1] == 1 && pixel[2] == 1) {
                if (x == 0 || shift > 16)
                    return false;
                auto const count = std::size_t { pixel[3] } << shift;
                for (std::size_t i = 0; i < count && x < line_.size(); ++i, ++x)
                    line_[x] = line_[x - 1];
                shift += 8;
            } else {
                line_[x++] = pixel;
                shift = 0;
            }
            if (x < line_.size() && stream_.read(pixel.data(), pixel.size()) != pixel.size())
                return false;
        }
        return true;
    }

    ByteStream stream_;
    std::vector<Pixel> line_;
};

struct Light {
    float red;
    float green;
    float blue;
};

Light lightOf(RadianceLines::Pixel const& pixel)
{
    if (pixel[3] == 0)
        return {};
    auto const unit = std::ldexp(1.0F, pixel[3] - (128 + 8));
    return { static_cast<float>(pixel[0]) * unit, static_cast<float>(pixel[1]) * unit,
        static_cast<float>(pixel[2]) * unit };
}

class RadianceSource final : public PhotoSource {
public:
    explicit RadianceSource(std::unique_ptr<ByteSource> bytes)
        : PhotoSource(std::move(bytes), headBytes)
        , header_(readHeader(this->bytes()))
    {
        if (!header_)
            return;
        PhotoTraits traits;
        traits.size = header_->size;
        traits.exif.orientation = header_->orientation;
        setTraits(traits);
    }

    [[nodiscard]] bool isReadable() const { return header_.has_value(); }
    [[nodiscard]] std::string_view typeIdentifier() const override { return "public.radiance"; }

private:
    // Read twice: the exposure depends on the whole picture, and its lines take less time to
    // unpack than memory for all of them is worth.
    [[nodiscard]] std::optional<DecodedImage> decodeStored(int maxPixel) override
    {
        PictureBuilder builder;
        auto const size = header_->size;
        if (!builder.begin(size, fittedSize(size, maxPixel), PixelFormat::opaque))
            return {};
        ToneMap const tones(measuredExposure());
        RadianceLines lines(bytes(), *header_);
        for (int y = 0; y < size.height && lines.next(); ++y) {
            auto* out = builder.nextRow();
            for (auto const& pixel : lines.line()) {
                auto const light = lightOf(pixel);
                tones.put(light.red, light.green, light.blue, out);
                out[3] = 255;
                out += 4;
            }
            builder.commitRow();
        }
        DecodedImage image;
        image.bitmap = builder.finish({}, Channels::color);
        if (image.bitmap.isEmpty())
            return {};
        return image;
    }

    [[nodiscard]] float measuredExposure() const
    {
        ExposureMeter meter;
        RadianceLines lines(bytes(), *header_);
        for (int y = 0; y < header_->size.height && lines.next(); ++y) {
            auto const& line = lines.line();
            for (std::size_t x = 0; x < line.size(); x += meteredEach) {
                auto const light = lightOf(line[x]);
                meter.add(light.red, light.green, light.blue);
            }
        }
        return meter.exposure();
    }

    static constexpr std::size_t meteredEach = 8; // pixels: a mean needs no more

    std::optional<RadianceHeader> header_;
};

} // namespace

std::unique_ptr<ImageSource> openRadiance(std::unique_ptr<ByteSource> bytes)
{
    return openPhoto<RadianceSource>(std::move(bytes));
}

} // namespace pixelhain
