#include "codecs/JxlDecoder.h"
#include "codecs/CodedColors.h"
#include "codecs/DecodeLimits.h"
#include "codecs/JxlStream.h"
#include "codecs/PictureBuilder.h"
#include <cstdlib>
#include <cstring>

namespace pixelhain {

namespace {

// Smaller ones are done before a thread has started.
constexpr std::int64_t worthThreads = 1'000'000;

struct Free {
    void operator()(std::uint8_t* memory) const { std::free(memory); }
};

/// How the library is to hand out the pixels, and what they mean.
struct Plan {
    PixelSize size;
    bool hasAlpha = false;
    bool isPremultiplied = false;
    bool isGrey = false;
    bool isDeep = false; ///< 16 bits, colours converted row by row
    CodedColors colors;
    std::vector<std::uint8_t> profile; ///< empty: `colors` count

    [[nodiscard]] JxlPixelFormat format() const
    {
        return { isDeep || hasAlpha ? 4U : 3U, isDeep ? JXL_TYPE_UINT16 : JXL_TYPE_UINT8,
            JXL_NATIVE_ENDIAN, 0 };
    }
    [[nodiscard]] std::size_t rowBytes() const
    {
        return static_cast<std::size_t>(size.width) * format().num_channels * (isDeep ? 2 : 1);
    }
};

bool isAffordable(JxlBasicInfo const& info)
{
    // What the library holds of its own besides the pixels it hands out, by channel.
    auto const channels = std::int64_t { info.num_color_channels } + info.num_extra_channels;
    auto const bytesPerPixel = 8 + 2 * channels;
    return isWithinLimits(info.xsize, info.ysize)
        && std::int64_t { info.xsize } * info.ysize <= DecodeLimits::twiceHeld / bytesPerPixel;
}

CodedColors colorsOf(JxlColorEncoding const& encoding, float intensity)
{
    auto colors = codedColors(1, encoding.transfer_function);
    if (encoding.transfer_function == JXL_TRANSFER_FUNCTION_GAMMA && encoding.gamma > 0.01) {
        colors.curve = CodedColors::Curve::gamma;
        colors.gamma = 1 / encoding.gamma;
    }
    colors.peak = intensity;
    if (encoding.color_space != JXL_COLOR_SPACE_RGB)
        return colors;
    auto& primaries = colors.primaries;
    auto const copy = [](double const(&from)[2], double(&to)[2]) {
        to[0] = from[0];
        to[1] = from[1];
    };
    copy(encoding.white_point_xy, primaries.white);
    copy(encoding.primaries_red_xy, primaries.red);
    copy(encoding.primaries_green_xy, primaries.green);
    copy(encoding.primaries_blue_xy, primaries.blue);
    return colors.isPlausible() ? colors : CodedColors {};
}

// Colours that the library converts itself come out as sRGB, which costs it nothing. Not those of
// a high range: it would leave their whites dark.
bool askForSrgb(JxlDecoder* decoder, JxlBasicInfo const& info, JxlColorEncoding const& original)
{
    if (info.uses_original_profile != 0 || colorsOf(original, info.intensity_target).isHighRange())
        return false;
    JxlColorEncoding srgb {};
    srgb.color_space = info.num_color_channels == 1 ? JXL_COLOR_SPACE_GRAY : JXL_COLOR_SPACE_RGB;
    srgb.white_point = JXL_WHITE_POINT_D65;
    srgb.primaries = JXL_PRIMARIES_SRGB;
    srgb.transfer_function = JXL_TRANSFER_FUNCTION_SRGB;
    srgb.rendering_intent = JXL_RENDERING_INTENT_RELATIVE;
    return JxlDecoderSetPreferredColorProfile(decoder, &srgb) == JXL_DEC_SUCCESS;
}

void planColors(JxlDecoder* decoder, JxlBasicInfo const& info, Plan& plan)
{
    constexpr auto target = JXL_COLOR_PROFILE_TARGET_DATA;
    JxlColorEncoding encoding {};
    auto const isCoded = JxlDecoderGetColorAsEncodedProfile(decoder, nullptr, target, &encoding)
        == JXL_DEC_SUCCESS;
    if (askForSrgb(decoder, info, encoding))
        return;
    if (isCoded) {
        plan.colors = colorsOf(encoding, info.intensity_target);
        plan.isDeep = !plan.colors.isSrgb();
        return;
    }
    std::size_t length = 0;
    if (JxlDecoderGetICCProfileSize(decoder, nullptr, target, &length) != JXL_DEC_SUCCESS
        || length > DecodeLimits::colorProfile)
        return;
    plan.profile.resize(length);
    if (JxlDecoderGetColorAsICCProfile(decoder, nullptr, target, plan.profile.data(), length)
        != JXL_DEC_SUCCESS)
        plan.profile.clear();
    plan.isDeep = info.bits_per_sample > 8 && changesColors(plan.profile);
}

/// The pixels as the library writes them, all at once: it finishes them in no particular order.
class Pixels {
public:
    [[nodiscard]] bool allocate(Plan const& plan)
    {
        rowBytes_ = plan.rowBytes();
        // Rows that a cut file does not reach are black, or not there if they can be.
        memory_.reset(static_cast<std::uint8_t*>(
            std::calloc(static_cast<std::size_t>(plan.size.height), rowBytes_)));
        bytes_ = rowBytes_ * static_cast<std::size_t>(plan.size.height);
        return memory_ != nullptr;
    }
    [[nodiscard]] std::uint8_t* data() const { return memory_.get(); }
    [[nodiscard]] std::size_t bytes() const { return bytes_; }
    [[nodiscard]] std::uint8_t* row(int y)
    {
        return memory_.get() + rowBytes_ * static_cast<std::size_t>(y);
    }

private:
    std::unique_ptr<std::uint8_t, Free> memory_;
    std::size_t rowBytes_ = 0;
    std::size_t bytes_ = 0;
};

void swapRow(std::uint8_t const* in, std::uint8_t* out, int width, bool hasAlpha)
{
    auto const step = hasAlpha ? 4 : 3;
    for (int x = 0; x < width; ++x, in += step, out += 4) {
        out[0] = in[2];
        out[1] = in[1];
        out[2] = in[0];
        out[3] = hasAlpha ? in[3] : 255;
    }
}

// Colours of 16 bits are converted as if they covered everything, and so they must stand for
// themselves.
void unpremultiply(std::uint16_t* row, int width)
{
    for (auto* const end = row + std::ptrdiff_t(width) * 4; row != end; row += 4) {
        std::uint32_t const alpha = row[3];
        for (int c = 0; c < 3 && alpha > 0 && alpha < 65535; ++c)
            row[c] = static_cast<std::uint16_t>(std::min(65535U, row[c] * 65535U / alpha));
    }
}

PixelFormat formatOf(Plan const& plan)
{
    if (!plan.hasAlpha)
        return PixelFormat::opaque;
    return plan.isPremultiplied && !plan.isDeep ? PixelFormat::premultiplied
                                                : PixelFormat::straight;
}

std::optional<DecodedImage> built(Plan const& plan, Pixels& pixels, int maxPixel)
{
    PictureBuilder builder;
    if (!builder.begin(plan.size, fittedSize(plan.size, maxPixel), formatOf(plan)))
        return {};
    auto const isProfiled = !plan.profile.empty();
    std::optional<DeepRowConverter> byProfile;
    std::optional<CodedRowConverter> byCode;
    if (plan.isDeep && isProfiled)
        byProfile.emplace(plan.profile);
    else if (plan.isDeep)
        byCode.emplace(plan.colors);
    for (int y = 0; y < plan.size.height; ++y) {
        auto* in = pixels.row(y);
        auto* out = builder.nextRow();
        auto* deep = reinterpret_cast<std::uint16_t*>(in);
        if (plan.isDeep && plan.isPremultiplied)
            unpremultiply(deep, plan.size.width);
        if (byProfile)
            byProfile->convert(deep, out, plan.size.width);
        else if (byCode)
            byCode->convert(deep, out, plan.size.width);
        else
            swapRow(in, out, plan.size.width, plan.hasAlpha);
        builder.commitRow();
    }
    DecodedImage image;
    image.bitmap = builder.finish(plan.isDeep ? ByteSpan() : ByteSpan(plan.profile),
        plan.isGrey ? Channels::grey : Channels::color);
    if (image.bitmap.isEmpty())
        return {};
    return image;
}

bool giveBuffer(JxlDecoder* decoder, JxlPicture picture, Plan const& plan, Pixels& pixels)
{
    auto const format = plan.format();
    std::size_t wanted = 0;
    auto const asked = picture == JxlPicture::preview
        ? JxlDecoderPreviewOutBufferSize(decoder, &format, &wanted)
        : JxlDecoderImageOutBufferSize(decoder, &format, &wanted);
    if (asked != JXL_DEC_SUCCESS || !pixels.allocate(plan) || wanted > pixels.bytes())
        return false;
    auto const given = picture == JxlPicture::preview
        ? JxlDecoderSetPreviewOutBuffer(decoder, &format, pixels.data(), pixels.bytes())
        : JxlDecoderSetImageOutBuffer(decoder, &format, pixels.data(), pixels.bytes());
    return given == JXL_DEC_SUCCESS;
}

std::optional<Plan> readPlan(JxlStream& stream, JxlPicture picture)
{
    JxlBasicInfo info {};
    if (stream.next() != JXL_DEC_BASIC_INFO
        || JxlDecoderGetBasicInfo(stream.decoder(), &info) != JXL_DEC_SUCCESS || !isAffordable(info)
        || stream.next() != JXL_DEC_COLOR_ENCODING)
        return {};
    Plan plan;
    auto const isPreview = picture == JxlPicture::preview;
    plan.size = { static_cast<int>(isPreview ? info.preview.xsize : info.xsize),
        static_cast<int>(isPreview ? info.preview.ysize : info.ysize) };
    plan.hasAlpha = info.alpha_bits > 0;
    plan.isPremultiplied = info.alpha_premultiplied != 0;
    plan.isGrey = info.num_color_channels == 1;
    planColors(stream.decoder(), info, plan);
    if (!isWithinLimits(plan.size))
        return {};
    return plan;
}

} // namespace

std::optional<DecodedImage> decodeJxl(ByteSource const& bytes, JxlPicture picture, int maxPixel)
{
    auto const isPreview = picture == JxlPicture::preview;
    auto const header = readJxlHeader(bytes);
    if (!header)
        return {};
    auto const area = std::int64_t { header->size.width } * header->size.height;
    JxlStream stream(bytes,
        JXL_DEC_BASIC_INFO | JXL_DEC_COLOR_ENCODING
            | (isPreview ? JXL_DEC_PREVIEW_IMAGE : JXL_DEC_FULL_IMAGE),
        !isPreview && area >= worthThreads ? JxlStream::Threads::some : JxlStream::Threads::none);
    auto const plan = readPlan(stream, picture);
    Pixels pixels;
    if (!plan
        || stream.next()
            != (isPreview ? JXL_DEC_NEED_PREVIEW_OUT_BUFFER : JXL_DEC_NEED_IMAGE_OUT_BUFFER)
        || !giveBuffer(stream.decoder(), picture, *plan, pixels))
        return {};
    auto const status = stream.next();
    auto const isWhole = status == (isPreview ? JXL_DEC_PREVIEW_IMAGE : JXL_DEC_FULL_IMAGE);
    auto const isCut = status == JXL_DEC_NEED_MORE_INPUT && !isPreview
        && JxlDecoderFlushImage(stream.decoder()) == JXL_DEC_SUCCESS;
    if (!isWhole && !isCut)
        return {};
    return built(*plan, pixels, maxPixel);
}

} // namespace pixelhain
