#include "pdf/CairoPdf.h"
#include "pdf/JpegPicture.h"
#include "pdf/PdfText.h"
#include <cairo-pdf.h>
#include <cmath>
#include <utility>

namespace pixelhain {

namespace {

struct FreeSurface {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
struct FreeContext {
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};
using Surface = std::unique_ptr<cairo_surface_t, FreeSurface>;
using Context = std::unique_ptr<cairo_t, FreeContext>;

/// What the library writes goes to the file until either of them gives up.
struct Stream {
    std::unique_ptr<FileReplacement> file;
    bool isOpen = true;

    static cairo_status_t write(void* stream, unsigned char const* bytes, unsigned int count)
    {
        auto& self = *static_cast<Stream*>(stream);
        self.isOpen = self.isOpen && self.file->write({ bytes, count });
        return self.isOpen ? CAIRO_STATUS_SUCCESS : CAIRO_STATUS_WRITE_ERROR;
    }
};

// The library takes the JPEG as it is. What it would draw where it cannot is never asked for on a
// page, so one pixel stands for the picture, stretched to its place.
Surface surfaceOf(PdfPicture const& picture)
{
    using Bytes = decltype(picture.jpeg);
    Surface surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, 1, 1));
    auto kept = std::make_unique<std::remove_const_t<Bytes>>(picture.jpeg);
    auto const status = cairo_surface_set_mime_data(
        surface.get(), CAIRO_MIME_TYPE_JPEG, picture.jpeg->data(), picture.jpeg->size(),
        [](void* bytes) { delete static_cast<std::remove_const_t<Bytes>*>(bytes); }, kept.get());
    if (status != CAIRO_STATUS_SUCCESS)
        return nullptr;
    static_cast<void>(kept.release()); // the surface's now
    return surface;
}

class CairoPdfCanvas final : public PdfCanvas {
public:
    CairoPdfCanvas(std::unique_ptr<FileReplacement> file, PdfWriter::Document const& document)
        : height_(document.page.height)
        , stream_ { std::move(file) }
        , surface_(cairo_pdf_surface_create_for_stream(
              Stream::write, &stream_, document.page.width, document.page.height))
        , page_(cairo_create(surface_.get()))
    {
        cairo_pdf_surface_set_metadata(
            surface_.get(), CAIRO_PDF_METADATA_TITLE, oneLine(document.title).c_str());
        cairo_pdf_surface_set_metadata(
            surface_.get(), CAIRO_PDF_METADATA_CREATOR, oneLine(document.creator).c_str());
    }

    // The library completes what is dropped, but nobody wants it then.
    ~CairoPdfCanvas() override { stream_.isOpen = false; }

    double textWidth(std::string_view text, PdfTextStyle const& style) override
    {
        text_.set(text, style, PdfText::Cut::none, 0);
        return text_.width();
    }

    void drawText(
        std::string_view text, PdfTextStyle const& style, PagePoint at, double width) override
    {
        // What was measured fits into its own width, however the sums were rounded.
        constexpr double tolerance = 0.01;
        text_.set(text, style, PdfText::Cut::end, width + tolerance);
        drawLine(style, at.x, height_ - at.y - text_.descent());
    }

    void drawLabel(std::string_view text, PdfTextStyle const& style, PageRect const& box) override
    {
        text_.set(text, style, PdfText::Cut::middle, box.width);
        auto const top = height_ - (box.y + box.height);
        drawLine(style, box.x + (box.width - text_.width()) / 2, top + text_.ascent());
    }

    void fill(PageRect const& rect, WhiteLevel white) override
    {
        useTone(white);
        cairo_rectangle(
            page_.get(), rect.x, height_ - rect.y - rect.height, rect.width, rect.height);
        cairo_fill(page_.get());
    }

    void drawLine(PagePoint from, PagePoint to, double width, WhiteLevel white) override
    {
        useTone(white);
        cairo_set_line_width(page_.get(), width);
        cairo_move_to(page_.get(), from.x, height_ - from.y);
        cairo_line_to(page_.get(), to.x, height_ - to.y);
        cairo_stroke(page_.get());
    }

    void drawPicture(PdfPicture const& picture, PageRect const& rect) override
    {
        auto const surface = surfaceOf(picture);
        if (!surface)
            return;
        cairo_save(page_.get());
        cairo_translate(page_.get(), rect.x, height_ - rect.y - rect.height);
        cairo_scale(page_.get(), rect.width, rect.height);
        cairo_set_source_surface(page_.get(), surface.get(), 0, 0);
        cairo_pattern_set_filter(cairo_get_source(page_.get()), CAIRO_FILTER_BEST);
        cairo_paint(page_.get());
        cairo_restore(page_.get());
    }

    bool endPage() override
    {
        cairo_show_page(page_.get());
        return isSound();
    }

    std::optional<WriteProblem> finish() override
    {
        // A page that refused to be drawn on left the rest out, though the document is sound.
        bool const isDrawn = cairo_status(page_.get()) == CAIRO_STATUS_SUCCESS;
        page_.reset();
        cairo_surface_finish(surface_.get());
        bool const isWhole
            = isDrawn && cairo_surface_status(surface_.get()) == CAIRO_STATUS_SUCCESS;
        // A file that could not be written says why; no other one is complete.
        if (!isWhole && stream_.isOpen)
            return WriteProblem::other;
        return stream_.file->finish();
    }

private:
    void useTone(WhiteLevel white) { cairo_set_source_rgb(page_.get(), white, white, white); }

    void drawLine(PdfTextStyle const& style, double x, double baseline)
    {
        useTone(style.white);
        text_.draw(page_.get(), x, baseline);
    }

    bool isSound() const
    {
        return cairo_status(page_.get()) == CAIRO_STATUS_SUCCESS
            && cairo_surface_status(surface_.get()) == CAIRO_STATUS_SUCCESS;
    }

    double const height_;
    Stream stream_;
    PdfText text_;
    Surface surface_;
    Context page_;
};

} // namespace

std::variant<std::unique_ptr<PdfCanvas>, WriteProblem> CairoPdfWriter::begin(
    Document const& document)
{
    auto begun = files_.begin(document.target, document.agreed);
    if (auto const* const problem = std::get_if<WriteProblem>(&begun))
        return *problem;
    return std::make_unique<CairoPdfCanvas>(
        std::move(std::get<std::unique_ptr<FileReplacement>>(begun)), document);
}

PdfPicture CairoPdfWriter::pictureOf(Bitmap const& bitmap, WhiteLevel background)
{
    auto jpeg = jpegOf(bitmap, static_cast<int>(std::lround(background * 255)));
    if (jpeg.empty())
        return {};
    return { bitmap.size, std::make_shared<std::vector<std::uint8_t> const>(std::move(jpeg)) };
}

} // namespace pixelhain
