#include "codecs/PnmSource.h"
#include "codecs/ByteStream.h"
#include "codecs/PhotoSource.h"
#include "codecs/PictureBuilder.h"
#include "codecs/PnmHeader.h"

namespace pixelhain {

namespace {

constexpr std::size_t headBytes = std::size_t { 16 } << 10;

/// The samples of one row after the other, brought to 8 bits.
class PnmRows {
public:
    PnmRows(ByteSource const& bytes, PnmHeader const& header)
        : header_(header)
        , stream_(bytes, header.offset)
        , perRow_(static_cast<std::size_t>(header.size.width)
              * static_cast<std::size_t>(header.channels))
        , packed_(packedBytes())
        , samples_(perRow_)
    {
    }

    /// Puts the next row as B, G, R, A; false where the file ends.
    bool next(std::uint8_t* out)
    {
        if (!(header_.samples == PnmHeader::Samples::text ? readText() : readPacked()))
            return false;
        auto const* in = samples_.data();
        for (int x = 0; x < header_.size.width; ++x, in += header_.channels, out += 4) {
            auto const isGrey = header_.isGrey();
            out[0] = in[isGrey ? 0 : 2];
            out[1] = in[isGrey ? 0 : 1];
            out[2] = in[0];
            out[3] = header_.hasAlpha() ? in[header_.channels - 1] : std::uint8_t { 255 };
        }
        return true;
    }

private:
    [[nodiscard]] std::size_t packedBytes() const
    {
        switch (header_.samples) {
        case PnmHeader::Samples::bits:
            return (perRow_ + 7) / 8;
        case PnmHeader::Samples::bytes:
            return perRow_;
        case PnmHeader::Samples::words:
            return perRow_ * 2;
        case PnmHeader::Samples::text:
            break;
        }
        return 0;
    }

    [[nodiscard]] std::uint8_t scaled(int value) const
    {
        auto const most = header_.most;
        auto const kept = std::min(value, most);
        auto const shown = header_.isInkOnOne ? most - kept : kept;
        return static_cast<std::uint8_t>((shown * 255 + most / 2) / most);
    }

    bool readPacked()
    {
        if (stream_.read(packed_.data(), packed_.size()) != packed_.size())
            return false;
        for (std::size_t i = 0; i < perRow_; ++i) {
            switch (header_.samples) {
            case PnmHeader::Samples::bits:
                samples_[i] = scaled(packed_[i / 8] >> (7 - i % 8) & 1);
                break;
            case PnmHeader::Samples::words:
                samples_[i] = scaled(bigEndian16(packed_.data() + i * 2));
                break;
            default:
                samples_[i] = scaled(packed_[i]);
                break;
            }
        }
        return true;
    }

    bool readText()
    {
        for (auto& sample : samples_) {
            auto const value = header_.isInkOnOne ? readDigit() : readNumber();
            if (value < 0)
                return false;
            sample = scaled(value);
        }
        return true;
    }

    int skipBlanks()
    {
        for (;;) {
            auto c = stream_.next();
            if (c == '#') {
                while (c >= 0 && c != '\n')
                    c = stream_.next();
            } else if (c != ' ' && (c < '\t' || c > '\r')) {
                return c;
            }
        }
    }

    // Bitmaps may be written without blanks between their digits.
    int readDigit()
    {
        auto const c = skipBlanks();
        return c == '0' || c == '1' ? c - '0' : -1;
    }

    int readNumber()
    {
        auto c = skipBlanks();
        if (c < '0' || c > '9')
            return -1;
        int value = 0;
        for (; c >= '0' && c <= '9'; c = stream_.next())
            value = std::min(value * 10 + (c - '0'), 65536);
        return value;
    }

    PnmHeader const& header_;
    ByteStream stream_;
    std::size_t perRow_;
    std::vector<std::uint8_t> packed_;
    std::vector<std::uint8_t> samples_;
};

class PnmSource final : public PhotoSource {
public:
    explicit PnmSource(std::unique_ptr<ByteSource> bytes)
        : PhotoSource(std::move(bytes), headBytes)
        , header_(readPnmHeader(this->bytes()))
    {
        if (!header_)
            return;
        PhotoTraits traits;
        traits.size = header_->size;
        setTraits(traits);
    }

    [[nodiscard]] bool isReadable() const { return header_.has_value(); }
    [[nodiscard]] std::string_view typeIdentifier() const override { return "public.pbm"; }

private:
    [[nodiscard]] std::optional<DecodedImage> decodeStored(int maxPixel) override
    {
        PictureBuilder builder;
        auto const size = header_->size;
        auto const format = header_->hasAlpha() ? PixelFormat::straight : PixelFormat::opaque;
        if (!builder.begin(size, fittedSize(size, maxPixel), format))
            return {};
        PnmRows rows(bytes(), *header_);
        for (int y = 0; y < size.height && rows.next(builder.nextRow()); ++y)
            builder.commitRow();
        DecodedImage image;
        image.bitmap = builder.finish({}, header_->isGrey() ? Channels::grey : Channels::color);
        if (image.bitmap.isEmpty())
            return {};
        return image;
    }

    std::optional<PnmHeader> header_;
};

} // namespace

std::unique_ptr<ImageSource> openPnm(std::unique_ptr<ByteSource> bytes)
{
    return openPhoto<PnmSource>(std::move(bytes));
}

} // namespace pixelhain
