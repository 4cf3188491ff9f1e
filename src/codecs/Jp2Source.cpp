#include "codecs/Jp2Source.h"
#include "codecs/DecodeLimits.h"
#include "codecs/PhotoSource.h"
#include "codecs/PictureBuilder.h"
#include <algorithm>
#include <array>
#include <openjpeg.h>

namespace pixelhain {

namespace {

constexpr std::size_t headBytes = std::size_t { 16 } << 10;
constexpr std::size_t streamBuffer = std::size_t { 256 } << 10;
/// Bytes per sample that the library holds: 32 bits of the tile and of the picture.
constexpr std::int64_t bytesPerSample = 8;
constexpr int maxChannels = 8;

bool isCodestream(ByteSpan start)
{
    return startsWith(start, "\xFF\x4F\xFF\x51");
}

/// A ByteSource as the library reads files.
struct Jp2Reader {
    ByteSource const& bytes;
    std::uint64_t at = 0;

    static OPJ_SIZE_T read(void* into, OPJ_SIZE_T length, void* self)
    {
        auto& reader = *static_cast<Jp2Reader*>(self);
        auto const got
            = reader.bytes.readAt(reader.at, { static_cast<std::uint8_t*>(into), length });
        reader.at += got;
        return got == 0 ? static_cast<OPJ_SIZE_T>(-1) : got;
    }
    static OPJ_OFF_T skip(OPJ_OFF_T length, void* self)
    {
        auto& reader = *static_cast<Jp2Reader*>(self);
        if (length < 0)
            return -1;
        reader.at += static_cast<std::uint64_t>(length);
        return length;
    }
    static OPJ_BOOL seek(OPJ_OFF_T to, void* self)
    {
        auto& reader = *static_cast<Jp2Reader*>(self);
        if (to < 0 || static_cast<std::uint64_t>(to) > reader.bytes.size())
            return OPJ_FALSE;
        reader.at = static_cast<std::uint64_t>(to);
        return OPJ_TRUE;
    }
};

void ignoreMessage(char const*, void*) { }

/// One pass over a file: header, then pixels.
class Jp2File {
public:
    explicit Jp2File(ByteSource const& bytes)
        : reader_ { bytes }
        , stream_(opj_stream_create(streamBuffer, OPJ_TRUE), opj_stream_destroy)
        , codec_(opj_create_decompress(
                     isCodestream(bytesAt(bytes, 0, 4)) ? OPJ_CODEC_J2K : OPJ_CODEC_JP2),
              opj_destroy_codec)
    {
        if (!stream_ || !codec_)
            return;
        opj_stream_set_user_data(stream_.get(), &reader_, nullptr);
        opj_stream_set_user_data_length(stream_.get(), bytes.size());
        opj_stream_set_read_function(stream_.get(), Jp2Reader::read);
        opj_stream_set_skip_function(stream_.get(), Jp2Reader::skip);
        opj_stream_set_seek_function(stream_.get(), Jp2Reader::seek);
        opj_set_info_handler(codec_.get(), ignoreMessage, nullptr);
        opj_set_warning_handler(codec_.get(), ignoreMessage, nullptr);
        opj_set_error_handler(codec_.get(), ignoreMessage, nullptr);
        opj_dparameters_t parameters;
        opj_set_default_decoder_parameters(&parameters);
        if (!opj_setup_decoder(codec_.get(), &parameters))
            return;
        // What a damaged file still holds is shown.
        opj_decoder_set_strict_mode(codec_.get(), OPJ_FALSE);
        opj_image_t* image = nullptr;
        if (opj_read_header(stream_.get(), codec_.get(), &image))
            image_.reset(image);
    }
    Jp2File(Jp2File const&) = delete;
    Jp2File& operator=(Jp2File const&) = delete;

    [[nodiscard]] opj_image_t const* image() const { return image_.get(); }

    [[nodiscard]] std::optional<PixelSize> size() const
    {
        if (!image_ || image_->numcomps == 0 || image_->numcomps > maxChannels)
            return {};
        auto const width = std::int64_t { image_->x1 } - image_->x0;
        auto const height = std::int64_t { image_->y1 } - image_->y0;
        if (!isWithinLimits(width, height))
            return {};
        return PixelSize { static_cast<int>(width), static_cast<int>(height) };
    }

    /// How often the picture can be halved while it is read.
    [[nodiscard]] int halvings() const
    {
        auto* info = opj_get_cstr_info(codec_.get());
        if (info == nullptr)
            return 0;
        int most = 0;
        if (info->m_default_tile_info.tccp_info != nullptr)
            most = static_cast<int>(info->m_default_tile_info.tccp_info->numresolutions) - 1;
        opj_destroy_cstr_info(&info);
        return std::clamp(most, 0, 32);
    }

    /// Reads the picture, its sides divided by 2 to the power of `halvings`.
    bool decode(int halvings)
    {
        if (halvings > 0
            && !opj_set_decoded_resolution_factor(codec_.get(), static_cast<OPJ_UINT32>(halvings)))
            return false;
        return opj_decode(codec_.get(), stream_.get(), image_.get()) != OPJ_FALSE;
    }

private:
    Jp2Reader reader_;
    std::unique_ptr<opj_stream_t, decltype(&opj_stream_destroy)> stream_;
    std::unique_ptr<opj_codec_t, decltype(&opj_destroy_codec)> codec_;
    std::unique_ptr<opj_image_t, decltype(&opj_image_destroy)> image_ { nullptr,
        opj_image_destroy };
};

/// The samples of one channel, brought to 8 bits; a channel may have fewer pixels than the picture.
class Jp2Channel {
public:
    Jp2Channel(opj_image_comp_t const& component, PixelSize picture)
        : component_(component)
        , picture_(picture)
        , precision_(std::min<int>(static_cast<int>(component.prec), 31))
        , offset_(component.sgnd != 0 ? std::int64_t { 1 } << (precision_ - 1) : 0)
        , most_((std::int64_t { 1 } << precision_) - 1)
    {
    }

    [[nodiscard]] bool isUsable() const
    {
        return component_.data != nullptr && component_.w > 0 && component_.h > 0
            && component_.prec >= 1;
    }

    [[nodiscard]] std::uint8_t at(int x, int y) const
    {
        auto const column = scaled(x, picture_.width, component_.w);
        auto const row = scaled(y, picture_.height, component_.h);
        auto const value = std::int64_t { component_.data[row * component_.w + column] } + offset_;
        return static_cast<std::uint8_t>(
            (std::clamp<std::int64_t>(value, 0, most_) * 255 + most_ / 2) / most_);
    }

private:
    static std::size_t scaled(int at, int from, OPJ_UINT32 to)
    {
        if (static_cast<OPJ_UINT32>(from) == to)
            return static_cast<std::size_t>(at);
        return static_cast<std::size_t>(at) * to / static_cast<std::size_t>(from);
    }

    opj_image_comp_t const& component_;
    PixelSize picture_;
    int precision_;
    std::int64_t offset_;
    std::int64_t most_;
};

/// The rows of a decoded picture.
class Jp2Rows {
public:
    Jp2Rows(opj_image_t const& image, PixelSize size)
        : size_(size)
        , isYcc_(image.numcomps >= 3
              && (image.color_space == OPJ_CLRSPC_SYCC || image.color_space == OPJ_CLRSPC_EYCC))
    {
        for (std::uint32_t i = 0; i < image.numcomps; ++i) {
            auto const& component = image.comps[i];
            if (component.alpha != 0 && !alpha_)
                alpha_.emplace(component, size);
            else if (component.alpha == 0)
                colors_.emplace_back(component, size);
        }
        // Two or four channels of which none is marked: the last is taken for alpha by all who
        // write such files, unless they say that it is ink.
        isInk_ = image.color_space == OPJ_CLRSPC_CMYK && colors_.size() >= 4;
        if (!alpha_ && !isInk_ && (colors_.size() == 2 || colors_.size() == 4)) {
            alpha_.emplace(colors_.back());
            colors_.pop_back();
        }
    }

    [[nodiscard]] bool isUsable() const
    {
        return !colors_.empty()
            && std::ranges::all_of(colors_, [](auto const& each) { return each.isUsable(); })
            && (!alpha_ || alpha_->isUsable());
    }
    [[nodiscard]] bool isGrey() const { return colors_.size() < 3; }
    [[nodiscard]] PixelFormat format() const
    {
        if (isInk_)
            return PixelFormat::cmyk;
        return alpha_ ? PixelFormat::straight : PixelFormat::opaque;
    }

    void put(int y, std::uint8_t* out) const
    {
        for (int x = 0; x < size_.width; ++x, out += 4) {
            if (isGrey()) {
                out[0] = out[1] = out[2] = colors_[0].at(x, y);
            } else if (isInk_) {
                for (std::size_t c = 0; c < 4; ++c)
                    out[c] = colors_[c].at(x, y);
                continue;
            } else {
                putColor(x, y, out);
            }
            out[3] = alpha_ ? alpha_->at(x, y) : std::uint8_t { 255 };
        }
    }

private:
    void putColor(int x, int y, std::uint8_t* out) const
    {
        auto const first = colors_[0].at(x, y);
        auto const second = colors_[1].at(x, y);
        auto const third = colors_[2].at(x, y);
        if (!isYcc_) {
            out[0] = third;
            out[1] = second;
            out[2] = first;
            return;
        }
        // ITU-R BT.601, full range.
        auto const byte = [](double value) {
            return static_cast<std::uint8_t>(std::clamp(value + 0.5, 0.0, 255.0));
        };
        auto const blue = second - 128.0;
        auto const red = third - 128.0;
        out[0] = byte(first + 1.772 * blue);
        out[1] = byte(first - 0.344136 * blue - 0.714136 * red);
        out[2] = byte(first + 1.402 * red);
    }

    PixelSize size_;
    std::vector<Jp2Channel> colors_;
    std::optional<Jp2Channel> alpha_;
    bool isYcc_;
    bool isInk_ = false;
};

class Jp2Source final : public PhotoSource {
public:
    explicit Jp2Source(std::unique_ptr<ByteSource> bytes)
        : PhotoSource(std::move(bytes), headBytes)
    {
        Jp2File const file(this->bytes());
        size_ = file.size();
        if (!size_)
            return;
        halvings_ = file.halvings();
        channels_ = static_cast<int>(file.image()->numcomps);
        PhotoTraits traits;
        traits.size = *size_;
        setTraits(traits);
    }

    [[nodiscard]] bool isReadable() const { return size_.has_value(); }
    [[nodiscard]] std::string_view typeIdentifier() const override { return "public.jpeg-2000"; }

private:
    // The coarsest resolution that still has the wanted size.
    [[nodiscard]] int halvingsFor(int maxPixel) const
    {
        int count = 0;
        while (
            maxPixel > 0 && count < halvings_ && (size_->longestSide() >> (count + 1)) >= maxPixel)
            ++count;
        return count;
    }

    [[nodiscard]] std::optional<DecodedImage> decodeStored(int maxPixel) override
    {
        auto const halvings = halvingsFor(maxPixel);
        auto const pixels = (std::int64_t { size_->width } * size_->height) >> (2 * halvings);
        if (pixels * channels_ * bytesPerSample
            > static_cast<std::int64_t>(DecodeLimits::memory) * 2)
            return {};
        Jp2File file(bytes());
        if (file.size() != size_ || !file.decode(halvings))
            return {};
        auto const& image = *file.image();
        if (image.numcomps == 0)
            return {};
        // Rounded up at each halving, and where the picture's corner is not at 0 in its own way.
        PixelSize const read { static_cast<int>(image.comps[0].w)
                * static_cast<int>(subsampling(image.comps[0].dx)),
            static_cast<int>(image.comps[0].h) * static_cast<int>(subsampling(image.comps[0].dy)) };
        return built(image, read, maxPixel, halvings > 0);
    }

    static OPJ_UINT32 subsampling(OPJ_UINT32 stated)
    {
        return std::clamp<OPJ_UINT32>(stated, 1, 255);
    }

    [[nodiscard]] std::optional<DecodedImage> built(
        opj_image_t const& image, PixelSize read, int maxPixel, bool wasReduced) const
    {
        Jp2Rows const rows(image, read);
        PictureBuilder builder;
        if (!rows.isUsable() || !builder.begin(read, fittedSize(*size_, maxPixel), rows.format()))
            return {};
        for (int y = 0; y < read.height; ++y) {
            rows.put(y, builder.nextRow());
            builder.commitRow();
        }
        ByteSpan profile;
        if (image.icc_profile_buf != nullptr && image.icc_profile_len > 0)
            profile = { image.icc_profile_buf, image.icc_profile_len };
        DecodedImage decoded;
        decoded.bitmap = builder.finish(profile, rows.isGrey() ? Channels::grey : Channels::color);
        decoded.wasReduced = wasReduced;
        if (decoded.bitmap.isEmpty())
            return {};
        return decoded;
    }

    std::optional<PixelSize> size_;
    int halvings_ = 0;
    int channels_ = 1;
};

} // namespace

bool isJp2(ByteSpan start)
{
    return isCodestream(start) || startsWith(start, "\0\0\0\x0CjP  \r\n\x87\n");
}

std::unique_ptr<ImageSource> openJp2(std::unique_ptr<ByteSource> bytes)
{
    return openPhoto<Jp2Source>(std::move(bytes));
}

} // namespace pixelhain
