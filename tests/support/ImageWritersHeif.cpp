#include "support/CodedWriters.h"
#include <algorithm>
#include <memory>
#include <string_view>

#include <libheif/heif.h>

#if defined(__SANITIZE_ADDRESS__)
// The HEVC encoder never gives back some of its memory; nothing but tests uses it.
extern "C" char const* __lsan_default_suppressions();
extern "C" char const* __lsan_default_suppressions()
{
    return "leak:libx265";
}
#endif

namespace pixelhain {

namespace {

struct Release {
    void operator()(heif_context* context) const { heif_context_free(context); }
    void operator()(heif_image_handle* handle) const { heif_image_handle_release(handle); }
    void operator()(heif_image* image) const { heif_image_release(image); }
    void operator()(heif_encoder* encoder) const { heif_encoder_release(encoder); }
    void operator()(heif_encoding_options* options) const { heif_encoding_options_free(options); }
    void operator()(heif_color_profile_nclx* nclx) const { heif_nclx_color_profile_free(nclx); }
};

template <typename Type> using Owned = std::unique_ptr<Type, Release>;

void fillPlane(
    heif_image* image, heif_channel channel, RgbaPixels const& pixels, int component, int bits)
{
    auto const [width, height] = pixels.size;
    heif_image_add_plane(image, channel, width, height, bits);
    int stride = 0;
    auto* plane = heif_image_get_plane(image, channel, &stride);
    for (int y = 0; y < height; ++y) {
        auto* row = plane + std::ptrdiff_t(stride) * y;
        for (int x = 0; x < width; ++x) {
            auto const value = pixels.at(x, y)[component];
            if (bits == 8)
                row[x] = value;
            else
                reinterpret_cast<std::uint16_t*>(row)[x]
                    = static_cast<std::uint16_t>(value * ((1 << bits) - 1) / 255);
        }
    }
}

Owned<heif_color_profile_nclx> codePoints(HeifOptions const& options)
{
    Owned<heif_color_profile_nclx> nclx(heif_nclx_color_profile_alloc());
    auto const code = [](int value) { return static_cast<std::uint16_t>(value); };
    heif_nclx_color_profile_set_color_primaries(nclx.get(), code(options.primaries));
    heif_nclx_color_profile_set_transfer_characteristics(nclx.get(), code(options.transfer));
    heif_nclx_color_profile_set_matrix_coefficients(nclx.get(), code(options.matrix));
    nclx->full_range_flag = options.isFullRange ? 1 : 0;
    return nclx;
}

Owned<heif_image> imageOf(RgbaPixels const& pixels, HeifOptions const& options)
{
    heif_image* made = nullptr;
    heif_image_create(pixels.size.width, pixels.size.height,
        options.isGrey ? heif_colorspace_monochrome : heif_colorspace_RGB,
        options.isGrey ? heif_chroma_monochrome : heif_chroma_444, &made);
    Owned<heif_image> image(made);
    if (options.isGrey) {
        fillPlane(made, heif_channel_Y, pixels, 0, options.bits);
    } else {
        fillPlane(made, heif_channel_R, pixels, 0, options.bits);
        fillPlane(made, heif_channel_G, pixels, 1, options.bits);
        fillPlane(made, heif_channel_B, pixels, 2, options.bits);
    }
    if (options.hasAlpha)
        fillPlane(made, heif_channel_Alpha, pixels, 3, options.bits);
    heif_image_set_nclx_color_profile(made, codePoints(options).get());
    heif_image_set_premultiplied_alpha(made, options.isPremultiplied ? 1 : 0);
    if (!options.profile.empty())
        heif_image_set_raw_color_profile(
            made, "prof", options.profile.data(), options.profile.size());
    return image;
}

Owned<heif_encoder> encoderFor(heif_context* context, HeifOptions const& options)
{
    heif_encoder* made = nullptr;
    heif_context_get_encoder_for_format(context,
        options.coding == HeifOptions::Coding::av1 ? heif_compression_AV1 : heif_compression_HEVC,
        &made);
    Owned<heif_encoder> encoder(made);
    if (!encoder)
        return encoder;
    heif_encoder_set_lossy_quality(made, 90);
    heif_encoder_set_lossless(made, options.isLossless ? 1 : 0);
    // The AV1 encoder ends the process where it is to write 10 bits in another form than 4:2:2.
    auto const isTen = options.coding == HeifOptions::Coding::av1 && options.bits == 10;
    heif_encoder_set_parameter_string(made, "chroma",
        isTen                                         ? "422"
            : options.hasFullColor && !options.isGrey ? "444"
                                                      : "420");
    if (options.coding == HeifOptions::Coding::av1) {
        heif_encoder_set_parameter_integer(made, "speed", 9);
        heif_encoder_set_parameter_integer(made, "threads", 1);
    } else {
        heif_encoder_set_parameter_string(made, "preset", "ultrafast");
    }
    return encoder;
}

heif_error append(heif_context*, void const* data, std::size_t length, void* file)
{
    auto const* first = static_cast<std::uint8_t const*>(data);
    auto& bytes = *static_cast<FileBytes*>(file);
    bytes.insert(bytes.end(), first, first + length);
    return { heif_error_Ok, heif_suberror_Unspecified, "" };
}

// The library states the size of a turned picture as it is after the turn, though the turn is still
// to come.
void stateStoredSize(FileBytes& file)
{
    std::string_view const name = "ispe";
    auto at = std::search(file.begin(), file.end(), name.begin(), name.end());
    std::swap_ranges(at + 8, at + 12, at + 12);
}

} // namespace

FileBytes writeHeif(RgbaPixels const& pixels, HeifOptions const& options)
{
    Owned<heif_context> const context(heif_context_alloc());
    auto const encoder = encoderFor(context.get(), options);
    if (!encoder)
        return {};
    auto const nclx = codePoints(options);
    Owned<heif_encoding_options> const encoding(heif_encoding_options_alloc());
    encoding->output_nclx_profile = nclx.get();
    encoding->macOS_compatibility_workaround_no_nclx_profile = 0;
    encoding->save_two_colr_boxes_when_ICC_and_nclx_available = 1;
    encoding->image_orientation = static_cast<heif_orientation>(options.orientation);
    auto const image = imageOf(pixels, options);
    heif_image_handle* made = nullptr;
    if (heif_context_encode_image(context.get(), image.get(), encoder.get(), encoding.get(), &made)
            .code
        != heif_error_Ok)
        return {};
    Owned<heif_image_handle> const handle(made);
    if (options.thumbnail > 0) {
        heif_image_handle* thumbnail = nullptr;
        heif_context_encode_thumbnail(context.get(), image.get(), handle.get(), encoder.get(),
            encoding.get(), options.thumbnail, &thumbnail);
        Owned<heif_image_handle> const owned(thumbnail);
    }
    if (!options.exif.empty())
        heif_context_add_exif_metadata(context.get(), handle.get(), options.exif.data(),
            static_cast<int>(options.exif.size()));
    if (!options.packet.empty())
        heif_context_add_XMP_metadata(context.get(), handle.get(), options.packet.data(),
            static_cast<int>(options.packet.size()));
    for (auto const& other : options.others)
        heif_context_encode_image(
            context.get(), imageOf(other, options).get(), encoder.get(), encoding.get(), nullptr);
    heif_context_set_primary_image(context.get(), handle.get());
    FileBytes file;
    heif_writer writer { 1, append };
    if (heif_context_write(context.get(), &writer, &file).code != heif_error_Ok)
        return {};
    if (options.orientation >= 5)
        stateStoredSize(file);
    return file;
}

} // namespace pixelhain
