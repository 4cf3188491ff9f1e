#include "support/ByteWriter.h"
#include "support/PlainWriters.h"
#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <openjpeg.h>
#include <string_view>

namespace pixelhain {

namespace {

struct Sink {
    FileBytes bytes;
    std::size_t at = 0;

    static OPJ_SIZE_T write(void* from, OPJ_SIZE_T length, void* self)
    {
        auto& sink = *static_cast<Sink*>(self);
        sink.bytes.resize(std::max(sink.bytes.size(), sink.at + length));
        std::memcpy(sink.bytes.data() + sink.at, from, length);
        sink.at += length;
        return length;
    }
    static OPJ_OFF_T skip(OPJ_OFF_T length, void* self)
    {
        static_cast<Sink*>(self)->at += static_cast<std::size_t>(length);
        return length;
    }
    static OPJ_BOOL seek(OPJ_OFF_T to, void* self)
    {
        static_cast<Sink*>(self)->at = static_cast<std::size_t>(to);
        return OPJ_TRUE;
    }
};

double sampleOf(std::uint8_t const* rgba, Jp2Options::Color color, std::uint32_t channel)
{
    auto const [r, g, b]
        = std::array<double, 3> { double(rgba[0]), double(rgba[1]), double(rgba[2]) };
    switch (color) {
    case Jp2Options::Color::grey:
        return luma(rgba);
    case Jp2Options::Color::ycc:
        return channel == 0 ? 0.299 * r + 0.587 * g + 0.114 * b
            : channel == 1  ? 128 - 0.168736 * r - 0.331264 * g + 0.5 * b
                            : 128 + 0.5 * r - 0.418688 * g - 0.081312 * b;
    default:
        return rgba[channel];
    }
}

using Image = std::unique_ptr<opj_image_t, decltype(&opj_image_destroy)>;

Image makeImage(RgbaPixels const& pixels, Jp2Options const& options)
{
    using Color = Jp2Options::Color;
    auto const count = options.color == Color::grey ? 1U : options.color == Color::rgba ? 4U : 3U;
    std::vector<opj_image_cmptparm_t> channels(count);
    auto const width = static_cast<OPJ_UINT32>(pixels.size.width);
    auto const height = static_cast<OPJ_UINT32>(pixels.size.height);
    for (std::uint32_t i = 0; i < count; ++i) {
        auto const step = static_cast<OPJ_UINT32>(
            options.color == Color::ycc && i > 0 ? options.subsampling : 1);
        channels[i] = {};
        channels[i].dx = channels[i].dy = step;
        channels[i].w = (width + step - 1) / step;
        channels[i].h = (height + step - 1) / step;
        channels[i].prec = static_cast<OPJ_UINT32>(options.bits);
    }
    auto const space = options.color == Color::grey ? OPJ_CLRSPC_GRAY
        : options.color == Color::ycc               ? OPJ_CLRSPC_SYCC
                                                    : OPJ_CLRSPC_SRGB;
    Image image(opj_image_create(count, channels.data(), space), opj_image_destroy);
    image->x1 = width;
    image->y1 = height;
    auto const most = (1 << options.bits) - 1;
    for (std::uint32_t i = 0; i < count; ++i) {
        auto& channel = image->comps[i];
        channel.alpha = i == 3 ? 1 : 0;
        for (OPJ_UINT32 y = 0; y < channel.h; ++y) {
            for (OPJ_UINT32 x = 0; x < channel.w; ++x) {
                auto const* at
                    = pixels.at(static_cast<int>(x * channel.dx), static_cast<int>(y * channel.dy));
                channel.data[y * channel.w + x]
                    = static_cast<OPJ_INT32>(sampleOf(at, options.color, i) * most / 255 + 0.5);
            }
        }
    }
    return image;
}

std::size_t bigEndian32At(FileBytes const& file, std::size_t at)
{
    std::size_t value = 0;
    for (std::size_t i = 0; i < 4; ++i)
        value = value << 8 | file[at + i];
    return value;
}

std::size_t boxAt(FileBytes const& file, std::string_view name)
{
    auto const found = std::search(file.begin(), file.end(), name.begin(), name.end());
    return static_cast<std::size_t>(found - file.begin()) - 4;
}

// The library writes no profiles: its box of colours is exchanged for one with the profile.
FileBytes withProfile(FileBytes file, FileBytes const& profile)
{
    constexpr std::size_t enumeratedLength = 15;
    ByteWriter colors(true);
    colors.u32(11 + profile.size());
    colors.text("colr");
    colors.u8(2);
    colors.u16(0);
    colors.raw(profile);
    auto const header = boxAt(file, "jp2h");
    auto const at = static_cast<std::ptrdiff_t>(boxAt(file, "colr"));
    ByteWriter out(true);
    out.bytes = file;
    out.put32(header, bigEndian32At(file, header) + colors.size() - enumeratedLength);
    out.bytes.erase(out.bytes.begin() + at, out.bytes.begin() + at + enumeratedLength);
    out.bytes.insert(out.bytes.begin() + at, colors.bytes.begin(), colors.bytes.end());
    return out.bytes;
}

} // namespace

FileBytes writeJp2(RgbaPixels const& pixels, Jp2Options const& options)
{
    auto const image = makeImage(pixels, options);
    std::unique_ptr<opj_codec_t, decltype(&opj_destroy_codec)> const codec(
        opj_create_compress(options.isCodestream ? OPJ_CODEC_J2K : OPJ_CODEC_JP2),
        opj_destroy_codec);
    opj_cparameters_t parameters;
    opj_set_default_encoder_parameters(&parameters);
    parameters.tcp_numlayers = 1;
    parameters.cp_disto_alloc = 1;
    parameters.numresolution = 4;
    parameters.tcp_mct = options.color == Jp2Options::Color::rgb ? 1 : 0;
    Sink sink;
    std::unique_ptr<opj_stream_t, decltype(&opj_stream_destroy)> const stream(
        opj_stream_default_create(OPJ_FALSE), opj_stream_destroy);
    opj_stream_set_user_data(stream.get(), &sink, nullptr);
    opj_stream_set_write_function(stream.get(), Sink::write);
    opj_stream_set_skip_function(stream.get(), Sink::skip);
    opj_stream_set_seek_function(stream.get(), Sink::seek);
    if (!opj_setup_encoder(codec.get(), &parameters, image.get())
        || !opj_start_compress(codec.get(), image.get(), stream.get())
        || !opj_encode(codec.get(), stream.get()) || !opj_end_compress(codec.get(), stream.get()))
        return {};
    return options.profile.empty() ? sink.bytes : withProfile(sink.bytes, options.profile);
}

} // namespace pixelhain
