#include "codecs/JpegDecoder.h"
#include "codecs/DecodeLimits.h"
#include "codecs/JpegReducer.h"
#include "codecs/JpegReduction.h"
#include "codecs/PictureBuilder.h"
#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstdio>
#include <memory>
#include <vector>

#include <jpeglib.h>

#include <jerror.h>

namespace pixelhain {

namespace {

constexpr std::size_t chunkBytes = std::size_t { 256 } << 10;

/// Feeds the library from a byte source in large pieces.
struct Feed {
    jpeg_source_mgr manager {};
    ByteSource const* bytes = nullptr;
    std::uint64_t offset = 0;
    std::unique_ptr<std::uint8_t[]> buffer;
    std::size_t capacity = 0;
    bool isStopped = false; ///< whatever follows is treated as the end of the file
};

/// One decompressor with its error exits. The library leaves a call by longjmp, so every call
/// goes through `guarded`, and nothing with a destructor lives between both ends.
class Decompressor {
public:
    explicit Decompressor(ByteSource const& bytes);
    ~Decompressor();
    Decompressor(Decompressor const&) = delete;
    Decompressor& operator=(Decompressor const&) = delete;

    template <typename Step> bool guarded(Step step)
    {
        if (setjmp(jump_) != 0)
            return false;
        step();
        return true;
    }

    jpeg_decompress_struct library {};

private:
    static Decompressor& of(void* client) { return *static_cast<Decompressor*>(client); }
    static void leave(j_common_ptr common);
    static void note(j_common_ptr common, int level);
    static void watch(j_common_ptr common);
    static void ignore(j_common_ptr) { }
    static void ignoreStart(j_decompress_ptr) { }
    static boolean fill(j_decompress_ptr library);
    static void skip(j_decompress_ptr library, long count);

    jpeg_error_mgr errors_ {};
    jpeg_progress_mgr progress_ {};
    Feed feed_;
    std::jmp_buf jump_ {};
    bool isCreated_ = false;
};

Decompressor::Decompressor(ByteSource const& bytes)
{
    library.err = jpeg_std_error(&errors_);
    errors_.error_exit = leave;
    errors_.emit_message = note;
    errors_.output_message = ignore;
    library.client_data = this;
    feed_.bytes = &bytes;
    feed_.capacity = static_cast<std::size_t>(
        std::min<std::uint64_t>(std::max<std::uint64_t>(bytes.size(), 16), chunkBytes));
    feed_.buffer = std::make_unique_for_overwrite<std::uint8_t[]>(feed_.capacity);
    isCreated_ = guarded([this] { jpeg_create_decompress(&library); });
    if (!isCreated_)
        return;
    library.mem->max_memory_to_use = static_cast<long>(DecodeLimits::memory);
    progress_.progress_monitor = watch;
    library.progress = &progress_;
    feed_.manager.init_source = ignoreStart;
    feed_.manager.fill_input_buffer = fill;
    feed_.manager.skip_input_data = skip;
    feed_.manager.resync_to_restart = jpeg_resync_to_restart;
    feed_.manager.term_source = ignoreStart;
    library.src = &feed_.manager;
}

Decompressor::~Decompressor()
{
    if (isCreated_)
        jpeg_destroy_decompress(&library);
}

void Decompressor::leave(j_common_ptr common)
{
    std::longjmp(of(common->client_data).jump_, 1);
}

void Decompressor::note(j_common_ptr common, int level)
{
    if (level >= 0)
        return;
    if (++common->err->num_warnings >= DecodeLimits::warnings)
        of(common->client_data).feed_.isStopped = true;
}

// A small file can ask for thousands of passes over a large picture.
void Decompressor::watch(j_common_ptr common)
{
    auto& self = of(common->client_data);
    std::int64_t const scans = self.library.input_scan_number;
    auto const pixels = std::int64_t { self.library.image_width } * self.library.image_height;
    if (scans > DecodeLimits::scans || scans * pixels > DecodeLimits::scannedPixels)
        self.feed_.isStopped = true;
    if (self.feed_.isStopped)
        self.feed_.manager.bytes_in_buffer = 0;
}

boolean Decompressor::fill(j_decompress_ptr library)
{
    auto& feed = of(library->client_data).feed_;
    std::size_t got = 0;
    if (!feed.isStopped)
        got = feed.bytes->readAt(feed.offset, { feed.buffer.get(), feed.capacity });
    feed.offset += got;
    if (got == 0) {
        feed.buffer[0] = 0xFF;
        feed.buffer[1] = JPEG_EOI;
        got = 2;
    }
    feed.manager.next_input_byte = feed.buffer.get();
    feed.manager.bytes_in_buffer = got;
    return TRUE;
}

void Decompressor::skip(j_decompress_ptr library, long count)
{
    auto& feed = of(library->client_data).feed_;
    if (count <= 0)
        return;
    auto const wanted = static_cast<std::size_t>(count);
    auto const there = std::min(wanted, feed.manager.bytes_in_buffer);
    feed.manager.next_input_byte += there;
    feed.manager.bytes_in_buffer -= there;
    feed.offset += wanted - there;
}

struct OutputPlan {
    PixelFormat format = PixelFormat::opaque;
    Channels channels = Channels::color;
    PixelSize target;
    PictureBuilder::Extent filled;
    bool isReduced = false;
};

OutputPlan planOutput(jpeg_decompress_struct& library, int maxPixel)
{
    OutputPlan plan;
    PixelSize const size { static_cast<int>(library.image_width),
        static_cast<int>(library.image_height) };
    plan.target = fittedSize(size, maxPixel);
    auto const eighths = dctEighths(size, maxPixel);
    plan.filled = extentAt(size, eighths);
    plan.isReduced = eighths < 8;
    library.scale_num = static_cast<unsigned>(eighths);
    library.scale_denom = 8;
    if (library.jpeg_color_space == JCS_CMYK || library.jpeg_color_space == JCS_YCCK) {
        library.out_color_space = JCS_CMYK;
        plan.format = library.saw_Adobe_marker ? PixelFormat::cmykInverted : PixelFormat::cmyk;
    } else {
        library.out_color_space = JCS_EXT_BGRA;
        if (library.jpeg_color_space == JCS_GRAYSCALE)
            plan.channels = Channels::grey;
    }
    return plan;
}

// Whether the scans so far hold every component's mean brightness in each block, exact to about a
// grey level: all that 1/8 of the size shows of the luma. The rest refines what is not shown.
bool hasMeans(jpeg_decompress_struct const& library)
{
    for (int i = 0; i < library.num_components; ++i) {
        auto const missing = library.coef_bits[i][0];
        auto const* table = library.comp_info[i].quant_table;
        if (missing < 0 || table == nullptr || !areMeansExact(missing, table->quantval[0]))
            return false;
    }
    return true;
}

void readScansUntilMeans(jpeg_decompress_struct& library)
{
    for (;;) {
        auto const state = jpeg_consume_input(&library);
        if (state == JPEG_REACHED_EOI || state == JPEG_SUSPENDED)
            break;
        if (state == JPEG_SCAN_COMPLETED && hasMeans(library))
            break;
    }
    jpeg_start_output(&library, library.input_scan_number);
}

bool startDecoding(Decompressor& decompressor, bool isEighth)
{
    auto& library = decompressor.library;
    auto const isEarly = isEighth && library.progressive_mode;
    library.buffered_image = isEarly ? TRUE : FALSE;
    library.do_block_smoothing = isEarly ? FALSE : TRUE;
    return decompressor.guarded([&] {
        jpeg_start_decompress(&library);
        if (isEarly)
            readScansUntilMeans(library);
    });
}

void readRows(Decompressor& decompressor, PictureBuilder& builder)
{
    auto& library = decompressor.library;
    decompressor.guarded([&] {
        while (library.output_scanline < library.output_height) {
            JSAMPROW row = builder.nextRow();
            if (jpeg_read_scanlines(&library, &row, 1) != 1)
                return;
            builder.commitRow();
        }
    });
}

} // namespace

// For these fractions the library has vector code; of those between them it takes longer than of
// the next larger one. Beside the same filter's picture from every pixel, photos as cameras store
// them keep 44 to 54 decibels at a half with this much headroom, and 45 to 48 at an eighth, 39 and
// 41 where a camera has sharpened most. An eighth takes a third of a quarter's time.
int dctEighths(PixelSize size, int maxPixel)
{
    struct Fraction {
        int eighths;
        double headroom;
    };
    if (maxPixel > 0)
        for (auto const& [eighths, headroom] : { Fraction { 1, 1.3 }, { 2, 1.5 }, { 4, 1.5 } })
            if (size.longestSide() * eighths >= headroom * 8 * maxPixel)
                return eighths;
    return 8;
}

PictureBuilder::Extent extentAt(PixelSize size, int eighths)
{
    return { size.width * eighths / 8.0, size.height * eighths / 8.0 };
}

std::optional<DecodedImage> decodeJpeg(ByteSource const& bytes, int maxPixel, ByteSpan profile)
{
    if (auto reduced = reduceJpeg(bytes, maxPixel, profile))
        return reduced;
    return decodeJpegByLibrary(bytes, maxPixel, profile);
}

std::optional<DecodedImage> decodeJpegByLibrary(
    ByteSource const& bytes, int maxPixel, ByteSpan profile)
{
    Decompressor decompressor(bytes);
    auto& library = decompressor.library;
    if (library.src == nullptr || !decompressor.guarded([&] { jpeg_read_header(&library, TRUE); })
        || !isWithinLimits(library.image_width, library.image_height))
        return {};
    auto const plan = planOutput(library, maxPixel);
    if (!startDecoding(decompressor, library.scale_num == 1))
        return {};
    PixelSize const rows { static_cast<int>(library.output_width),
        static_cast<int>(library.output_height) };
    PictureBuilder builder;
    if (library.output_components != 4
        || !builder.begin(rows, plan.filled, plan.target, plan.format))
        return {};
    readRows(decompressor, builder);
    DecodedImage image;
    image.bitmap = builder.finish(profile, plan.channels);
    image.wasReduced = plan.isReduced;
    if (image.bitmap.isEmpty())
        return {};
    return image;
}

bool isSoundJpeg(ByteSpan bytes)
{
    SpanBytes const source(bytes);
    Decompressor decompressor(source);
    auto& library = decompressor.library;
    if (library.src == nullptr || !decompressor.guarded([&] { jpeg_read_header(&library, TRUE); })
        || !isWithinLimits(library.image_width, library.image_height)
        || !decompressor.guarded([&] { jpeg_start_decompress(&library); }))
        return false;
    std::vector<std::uint8_t> row(
        std::size_t { library.output_width } * static_cast<std::size_t>(library.output_components));
    auto* into = row.data();
    bool const isRead = decompressor.guarded([&] {
        while (library.output_scanline < library.output_height)
            jpeg_read_scanlines(&library, &into, 1);
        jpeg_finish_decompress(&library);
    });
    return isRead && library.err->num_warnings == 0;
}

} // namespace pixelhain
