#include "codecs/HeifDecoder.h"
#include "codecs/CodedColors.h"
#include "codecs/PictureBuilder.h"
#include <array>
#include <memory>

#include <libheif/heif.h>

namespace pixelhain {

namespace {

// Tiles decoded at a time. Each worker has a processor to itself where pictures wait, and only the
// one in front of the user may take a second.
constexpr int mostThreads = 2;

/// Hands the file to the library piece by piece, so that it reads the tables and the pictures it
/// decodes and nothing else.
class Feed {
public:
    /// `patches` must outlive it.
    Feed(ByteSource const& bytes, std::vector<HeifIndex::Patch> const& patches)
        : bytes_(bytes)
        , patches_(patches)
        , start_(bytesAt(bytes, 0, mostStart))
    {
        renameSequence();
    }

    static heif_reader const& functions()
    {
        static heif_reader const reader { 1,
            [](void* self) { return static_cast<Feed*>(self)->position_; },
            [](void* into, std::size_t length, void* self) {
                return static_cast<Feed*>(self)->read(static_cast<std::uint8_t*>(into), length) ? 0
                                                                                                : 1;
            },
            [](std::int64_t position, void* self) {
                static_cast<Feed*>(self)->position_ = position;
                return 0;
            },
            [](std::int64_t size, void* self) {
                return size >= 0
                        && static_cast<std::uint64_t>(size)
                            <= static_cast<Feed*>(self)->bytes_.size()
                    ? heif_reader_grow_status_size_reached
                    : heif_reader_grow_status_size_beyond_eof;
            } };
        return reader;
    }

private:
    static constexpr std::size_t mostStart = 256;

    // The library refuses files that call themselves a sequence only, though it reads the still
    // picture in them like any other.
    void renameSequence()
    {
        auto const brands = brandsOf(start_);
        for (std::size_t i = 1; i < brands.size(); ++i) {
            auto* at = start_.data() + 12 + i * 4;
            if (brands[i] == fourCharacters("avis"))
                std::memcpy(at, "avif", 4);
            else if (brands[i] == fourCharacters("msf1"))
                std::memcpy(at, "mif1", 4);
            else if (brands[i] == fourCharacters("hevc") || brands[i] == fourCharacters("hevx"))
                std::memcpy(at, "heic", 4);
        }
    }

    bool read(std::uint8_t* into, std::size_t length)
    {
        if (position_ < 0)
            return false;
        auto const from = static_cast<std::uint64_t>(position_);
        auto done = SpanBytes(start_).readAt(from, { into, length });
        if (done < length)
            done += bytes_.readAt(from + done, { into + done, length - done });
        patch(from, { into, done });
        position_ += static_cast<std::int64_t>(done);
        return done == length;
    }

    void patch(std::uint64_t from, std::span<std::uint8_t> bytes) const
    {
        auto const before = [](HeifIndex::Patch const& each, std::uint64_t offset) {
            return each.offset + each.length <= offset;
        };
        auto each = std::lower_bound(patches_.begin(), patches_.end(), from, before);
        for (; each != patches_.end() && each->offset < from + bytes.size(); ++each) {
            for (std::size_t i = 0; i < each->length; ++i) {
                auto const at = each->offset + i;
                if (at >= from && at - from < bytes.size())
                    bytes[static_cast<std::size_t>(at - from)] = each->bytes[i];
            }
        }
    }

    ByteSource const& bytes_;
    std::vector<HeifIndex::Patch> const& patches_;
    std::vector<std::uint8_t> start_;
    std::int64_t position_ = 0;
};

struct Release {
    void operator()(heif_context* context) const { heif_context_free(context); }
    void operator()(heif_image_handle* handle) const { heif_image_handle_release(handle); }
    void operator()(heif_image* image) const { heif_image_release(image); }
    void operator()(heif_decoding_options* options) const { heif_decoding_options_free(options); }
};

using Context = std::unique_ptr<heif_context, Release>;
using Handle = std::unique_ptr<heif_image_handle, Release>;
using Image = std::unique_ptr<heif_image, Release>;

Context openContext(Feed& feed)
{
    warmUpHeif();
    Context context(heif_context_alloc());
    if (!context)
        return {};
    heif_context_set_max_decoding_threads(context.get(), mostThreads);
    auto const error
        = heif_context_read_from_reader(context.get(), &Feed::functions(), &feed, nullptr);
    return error.code == heif_error_Ok ? std::move(context) : Context {};
}

Handle openPrimary(heif_context* context)
{
    heif_image_handle* handle = nullptr;
    auto const error = heif_context_get_primary_image_handle(context, &handle);
    Handle owned(handle);
    return error.code == heif_error_Ok ? std::move(owned) : Handle {};
}

// Planes of R, G and B: what the library works with inside; anything else costs a copy.
Image decodePlanes(heif_image_handle const* handle)
{
    heif_image* image = nullptr;
    auto const error
        = heif_decode_image(handle, &image, heif_colorspace_RGB, heif_chroma_444, nullptr);
    Image owned(image);
    return error.code == heif_error_Ok ? std::move(owned) : Image {};
}

/// The planes of a decoded picture: B, G, R, A.
class Planes {
public:
    explicit Planes(heif_image const* image)
    {
        constexpr std::array channels { heif_channel_B, heif_channel_G, heif_channel_R,
            heif_channel_Alpha };
        size_ = { heif_image_get_width(image, heif_channel_R),
            heif_image_get_height(image, heif_channel_R) };
        for (std::size_t i = 0; i < channels.size(); ++i) {
            auto& plane = planes_[i];
            plane.start = heif_image_get_plane_readonly(image, channels[i], &plane.stride);
            if (plane.start == nullptr)
                continue;
            plane.bits = heif_image_get_bits_per_pixel_range(image, channels[i]);
            auto const bytes = size_.width * (plane.bits > 8 ? 2 : 1);
            if (plane.bits < 1 || plane.bits > 16 || plane.stride < bytes
                || heif_image_get_width(image, channels[i]) < size_.width
                || heif_image_get_height(image, channels[i]) < size_.height)
                plane.start = nullptr;
        }
    }

    [[nodiscard]] bool isUsable() const
    {
        return planes_[0].start != nullptr && planes_[1].start != nullptr
            && planes_[2].start != nullptr;
    }
    [[nodiscard]] PixelSize size() const { return size_; }
    [[nodiscard]] bool hasAlpha() const { return planes_[3].start != nullptr; }

    /// The first `width` pixels of row `y` as B, G, R, A.
    void take(int y, std::uint8_t* out, int width) const
    {
        for (std::size_t i = 0; i < planes_.size(); ++i)
            spread(planes_[i], y, out + i, width);
    }

    /// The same as R, G, B, A of 16 bits.
    void takeDeep(int y, std::uint16_t* out, int width) const
    {
        constexpr std::array<std::size_t, 4> places { 2, 1, 0, 3 };
        for (std::size_t i = 0; i < planes_.size(); ++i)
            spread(planes_[i], y, out + places[i], width);
    }

private:
    struct Plane {
        std::uint8_t const* start = nullptr;
        int stride = 0;
        int bits = 0;
    };

    template <typename Out> static void spread(Plane const& plane, int y, Out* out, int width)
    {
        constexpr auto most = std::uint32_t { Out(~Out {}) };
        auto const* row = plane.start + std::ptrdiff_t(plane.stride) * y;
        if (plane.start == nullptr) {
            for (int x = 0; x < width; ++x)
                out[x * 4] = Out(most);
        } else if (plane.bits > 8) {
            // The same as scaling by the largest number, exact to a half of the last place.
            auto const range = (std::uint32_t { 1 } << plane.bits) - 1;
            auto const factor = (std::uint64_t { most } << 32) / range + 1;
            auto const* wide = reinterpret_cast<std::uint16_t const*>(row);
            for (int x = 0; x < width; ++x)
                out[x * 4] = static_cast<Out>(
                    (std::min<std::uint32_t>(wide[x], range) * factor + (std::uint64_t { 1 } << 31))
                    >> 32);
        } else if (sizeof(Out) == 1 && plane.bits == 8) {
            for (int x = 0; x < width; ++x)
                out[x * 4] = row[x];
        } else {
            auto const range = (std::uint32_t { 1 } << plane.bits) - 1;
            for (int x = 0; x < width; ++x)
                out[x * 4]
                    = static_cast<Out>(std::min<std::uint32_t>(row[x], range) * most / range);
        }
    }

    PixelSize size_;
    std::array<Plane, 4> planes_;
};

PixelFormat formatOf(heif_image_handle const* handle, Planes const& planes)
{
    if (!planes.hasAlpha())
        return PixelFormat::opaque;
    return heif_image_handle_is_premultiplied_alpha(handle) != 0 ? PixelFormat::premultiplied
                                                                 : PixelFormat::straight;
}

// Some writers state the size of a turned picture as it is after the turn.
std::optional<PixelSize> shownSize(Planes const& planes, PixelSize stated)
{
    auto const decoded = planes.size();
    if (decoded == stated.turned())
        return decoded;
    if (decoded.width < stated.width || decoded.height < stated.height)
        return {};
    return stated;
}

void takeRows(Planes const& planes, PixelSize size, CodedColors const& colors, PictureBuilder& to)
{
    auto const [width, height] = size;
    if (colors.isSrgb()) {
        for (int y = 0; y < height; ++y) {
            planes.take(y, to.nextRow(), width);
            to.commitRow();
        }
        return;
    }
    CodedRowConverter const converter(colors);
    std::vector<std::uint16_t> deep(static_cast<std::size_t>(width) * 4);
    for (int y = 0; y < height; ++y) {
        planes.takeDeep(y, deep.data(), width);
        converter.convert(deep.data(), to.nextRow(), width);
        to.commitRow();
    }
}

} // namespace

void warmUpHeif()
{
    static auto const isLoaded = heif_init(nullptr).code == heif_error_Ok;
    static_cast<void>(isLoaded);
}

std::optional<DecodedImage> decodeHeif(ByteSource const& bytes, HeifRequest const& request)
{
    Feed feed(bytes, request.patches);
    auto const context = openContext(feed);
    auto const handle = context ? openPrimary(context.get()) : Handle {};
    auto const decoded = handle ? decodePlanes(handle.get()) : Image {};
    if (!decoded)
        return {};
    Planes const planes(decoded.get());
    auto const size = shownSize(planes, request.size);
    PictureBuilder builder;
    if (!planes.isUsable() || !size
        || !builder.begin(
            *size, fittedSize(*size, request.maxPixel), formatOf(handle.get(), planes)))
        return {};
    auto const colors = request.profile.empty() && request.codePoints
        ? codedColors(request.codePoints->primaries, request.codePoints->transfer)
        : CodedColors {};
    takeRows(planes, *size, colors, builder);
    DecodedImage image;
    image.bitmap = builder.finish(request.profile, Channels::color);
    if (image.bitmap.isEmpty())
        return {};
    return image;
}

} // namespace pixelhain
