#include "support/CodedWriters.h"
#include <cstring>
#include <memory>

#include <jxl/decode.h>
#include <jxl/encode.h>

namespace pixelhain {

namespace {

JxlPixelFormat formatOf(JxlOptions const& options)
{
    auto const colors = options.isGrey ? 1U : 3U;
    auto const type = options.sample == JxlOptions::Sample::u8 ? JXL_TYPE_UINT8
        : options.sample == JxlOptions::Sample::u16            ? JXL_TYPE_UINT16
                                                               : JXL_TYPE_FLOAT;
    return { colors + (options.hasAlpha ? 1U : 0U), type, JXL_NATIVE_ENDIAN, 0 };
}

template <typename Sample>
FileBytes samplesOf(RgbaPixels const& pixels, JxlOptions const& options, Sample white)
{
    std::vector<Sample> samples;
    for (std::size_t i = 0; i < pixels.rgba.size(); i += 4) {
        for (std::size_t c = 0; c < 4; ++c) {
            if ((c == 3 && !options.hasAlpha) || ((c == 1 || c == 2) && options.isGrey))
                continue;
            samples.push_back(static_cast<Sample>(white * pixels.rgba[i + c] / 255));
        }
    }
    FileBytes bytes(samples.size() * sizeof(Sample));
    std::memcpy(bytes.data(), samples.data(), bytes.size());
    return bytes;
}

FileBytes samplesOf(RgbaPixels const& pixels, JxlOptions const& options)
{
    if (options.sample == JxlOptions::Sample::u8)
        return samplesOf<std::uint8_t>(pixels, options, 255);
    if (options.sample == JxlOptions::Sample::u16)
        return samplesOf<std::uint16_t>(pixels, options, 65535);
    return samplesOf<float>(pixels, options, 1);
}

JxlBasicInfo infoOf(RgbaPixels const& pixels, JxlOptions const& options)
{
    JxlBasicInfo info;
    JxlEncoderInitBasicInfo(&info);
    info.xsize = static_cast<std::uint32_t>(pixels.size.width);
    info.ysize = static_cast<std::uint32_t>(pixels.size.height);
    info.bits_per_sample = options.sample == JxlOptions::Sample::u8 ? 8
        : options.sample == JxlOptions::Sample::u16                 ? 16
                                                                    : 32;
    info.exponent_bits_per_sample = options.sample == JxlOptions::Sample::f32 ? 8 : 0;
    info.num_color_channels = options.isGrey ? 1 : 3;
    if (options.hasAlpha) {
        info.num_extra_channels = 1;
        info.alpha_bits = info.bits_per_sample;
        info.alpha_exponent_bits = info.exponent_bits_per_sample;
    }
    info.orientation = static_cast<JxlOrientation>(options.orientation);
    info.uses_original_profile = options.distance <= 0 ? JXL_TRUE : JXL_FALSE;
    if (options.intensity > 0)
        info.intensity_target = options.intensity;
    if (!options.frames.empty()) {
        info.have_animation = JXL_TRUE;
        info.animation.tps_numerator = 10;
        info.animation.tps_denominator = 1;
    }
    return info;
}

bool setColors(JxlEncoder* encoder, JxlOptions const& options)
{
    if (!options.profile.empty())
        return JxlEncoderSetICCProfile(encoder, options.profile.data(), options.profile.size())
            == JXL_ENC_SUCCESS;
    JxlColorEncoding colors {};
    colors.color_space = options.isGrey ? JXL_COLOR_SPACE_GRAY : JXL_COLOR_SPACE_RGB;
    colors.white_point = JXL_WHITE_POINT_D65;
    colors.primaries = static_cast<JxlPrimaries>(options.primaries);
    colors.transfer_function = static_cast<JxlTransferFunction>(options.transfer);
    colors.rendering_intent = JXL_RENDERING_INTENT_RELATIVE;
    return JxlEncoderSetColorEncoding(encoder, &colors) == JXL_ENC_SUCCESS;
}

void addFrames(JxlEncoder* encoder, RgbaPixels const& pixels, JxlOptions const& options)
{
    auto* settings = JxlEncoderFrameSettingsCreate(encoder, nullptr);
    JxlEncoderFrameSettingsSetOption(settings, JXL_ENC_FRAME_SETTING_EFFORT, 3);
    if (!options.jpeg.empty()) {
        JxlEncoderAddJPEGFrame(settings, options.jpeg.data(), options.jpeg.size());
        return;
    }
    if (options.distance <= 0)
        JxlEncoderSetFrameLossless(settings, JXL_TRUE);
    else
        JxlEncoderSetFrameDistance(settings, options.distance);
    auto const format = formatOf(options);
    auto frames = options.frames;
    frames.insert(frames.begin(), pixels);
    for (auto const& frame : frames) {
        if (frames.size() > 1) {
            JxlFrameHeader header;
            JxlEncoderInitFrameHeader(&header);
            header.duration = 1;
            JxlEncoderSetFrameHeader(settings, &header);
        }
        auto const samples = samplesOf(frame, options);
        JxlEncoderAddImageFrame(settings, &format, samples.data(), samples.size());
    }
}

void addExif(JxlEncoder* encoder, JxlOptions const& options)
{
    if (options.exif.empty())
        return;
    FileBytes box(4, 0);
    box.insert(box.end(), options.exif.begin(), options.exif.end());
    JxlEncoderUseBoxes(encoder);
    JxlEncoderAddBox(encoder, "Exif", box.data(), box.size(), options.isPacked ? 1 : 0);
}

FileBytes outputOf(JxlEncoder* encoder)
{
    FileBytes file(std::size_t { 64 } << 10);
    std::size_t used = 0;
    for (;;) {
        auto* next = file.data() + used;
        auto left = file.size() - used;
        auto const status = JxlEncoderProcessOutput(encoder, &next, &left);
        used = file.size() - left;
        if (status == JXL_ENC_NEED_MORE_OUTPUT) {
            file.resize(file.size() * 2);
            continue;
        }
        file.resize(status == JXL_ENC_SUCCESS ? used : 0);
        return file;
    }
}

FileBytes encoded(RgbaPixels const& pixels, JxlOptions const& options)
{
    std::unique_ptr<JxlEncoder, decltype(&JxlEncoderDestroy)> const owned(
        JxlEncoderCreate(nullptr), JxlEncoderDestroy);
    auto* encoder = owned.get();
    if (!options.jpeg.empty()) {
        JxlEncoderStoreJPEGMetadata(encoder, JXL_TRUE);
    } else {
        auto const info = infoOf(pixels, options);
        if (options.sample != JxlOptions::Sample::u8)
            JxlEncoderSetCodestreamLevel(encoder, 10);
        if (JxlEncoderSetBasicInfo(encoder, &info) != JXL_ENC_SUCCESS
            || !setColors(encoder, options))
            return {};
    }
    addExif(encoder, options);
    addFrames(encoder, pixels, options);
    JxlEncoderCloseInput(encoder);
    return outputOf(encoder);
}

// What follows the header of a bare codestream.
FileBytes frameOf(RgbaPixels const& pixels, JxlOptions const& options)
{
    auto const file = encoded(pixels, options);
    std::unique_ptr<JxlDecoder, decltype(&JxlDecoderDestroy)> const decoder(
        JxlDecoderCreate(nullptr), JxlDecoderDestroy);
    JxlDecoderSubscribeEvents(decoder.get(), JXL_DEC_COLOR_ENCODING);
    JxlDecoderSetInput(decoder.get(), file.data(), file.size());
    if (JxlDecoderProcessInput(decoder.get()) != JXL_DEC_COLOR_ENCODING)
        return {};
    auto const left = JxlDecoderReleaseInput(decoder.get());
    return { file.end() - static_cast<std::ptrdiff_t>(left), file.end() };
}

class BitWriter {
public:
    void put(unsigned value, int bits)
    {
        for (int i = 0; i < bits; ++i, ++count_) {
            if (count_ % 8 == 0)
                bytes.push_back(0);
            bytes.back() = static_cast<std::uint8_t>(bytes.back() | (value >> i & 1) << count_ % 8);
        }
    }

    FileBytes bytes;

private:
    int count_ = 0;
};

// The header of a lossless picture of 8 bits in sRGB, with what the encoder cannot write.
FileBytes headerOf(PixelSize size, JxlOptions const& options)
{
    BitWriter bits;
    auto const side = [&](int length, unsigned choice, int count, int offset) {
        bits.put(choice, 2);
        bits.put(static_cast<unsigned>(length - offset), count);
    };
    bits.put(0x0AFF, 16);
    bits.put(0, 1); // not in eighths
    side(size.height, 1, 13, 1);
    bits.put(0, 3); // no fixed ratio
    side(size.width, 1, 13, 1);
    bits.put(0, 1); // not all defaults
    bits.put(1, 1); // more fields
    bits.put(static_cast<unsigned>(options.orientation - 1), 3);
    bits.put(0, 1); // no other size
    auto const preview = options.preview.size;
    bits.put(preview.width > 0 ? 1 : 0, 1);
    if (preview.width > 0) {
        bits.put(0, 1);
        side(preview.height, 0, 6, 1);
        bits.put(0, 3);
        side(preview.width, 0, 6, 1);
    }
    bits.put(0, 1); // no animation
    bits.put(0, 3); // whole numbers of 8 bits
    bits.put(1, 1); // that fit in 16
    bits.put(options.hasAlpha ? 1 : 0, 2);
    if (options.hasAlpha) {
        bits.put(0, 1);
        bits.put(0, 2); // alpha
        bits.put(0, 3);
        bits.put(0, 2); // as large as the colours
        bits.put(0, 2); // without a name
        bits.put(options.isPremultiplied ? 1 : 0, 1);
    }
    bits.put(0, 1); // original colours
    bits.put(1, 1); // sRGB
    bits.put(1, 1); // tones as usual
    bits.put(0, 2); // no extensions
    bits.put(1, 1); // transforms as usual
    return bits.bytes;
}

} // namespace

FileBytes writeJxl(RgbaPixels const& pixels, JxlOptions const& options)
{
    auto plain = options;
    plain.preview = {};
    if (!options.isPremultiplied && options.preview.size == PixelSize {})
        return encoded(pixels, plain);
    auto file = headerOf(pixels.size, options);
    for (auto const* picture : { &options.preview, &pixels }) {
        if (picture->size == PixelSize {})
            continue;
        auto const frame = frameOf(*picture, plain);
        file.insert(file.end(), frame.begin(), frame.end());
    }
    return file;
}

} // namespace pixelhain
