#include "pdf/PdfText.h"
#include "base/Text.h"
#include <algorithm>
#include <cmath>

namespace pixelhain {

namespace {

constexpr double unitsPerPoint = PANGO_SCALE;

struct FreeOptions {
    void operator()(cairo_font_options_t* options) const { cairo_font_options_destroy(options); }
};
struct FreeMetrics {
    void operator()(PangoFontMetrics* metrics) const { pango_font_metrics_unref(metrics); }
};

// A page has no pixels that letters would have to be fitted to.
void useExactPlaces(PangoContext& context)
{
    std::unique_ptr<cairo_font_options_t, FreeOptions> const options(cairo_font_options_create());
    cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
    pango_cairo_context_set_font_options(&context, options.get());
    pango_context_set_round_glyph_positions(&context, FALSE);
}

bool breaksLines(gunichar character)
{
    constexpr gunichar lineSeparator = 0x2028;
    constexpr gunichar paragraphSeparator = 0x2029;
    return g_unichar_iscntrl(character) || character == lineSeparator
        || character == paragraphSeparator;
}

struct OmittedText {
    std::size_t begin = 0;
    std::size_t length = 0;
};

// What the ellipsis of a line that has been cut stands for.
OmittedText omittedIn(PangoLayoutLine const& line)
{
    for (auto const* link = line.runs; link != nullptr; link = link->next) {
        auto const& item = *static_cast<PangoLayoutRun const*>(link->data)->item;
        if ((item.analysis.flags & PANGO_ANALYSIS_FLAG_IS_ELLIPSIS) != 0)
            return { static_cast<std::size_t>(item.offset), static_cast<std::size_t>(item.length) };
    }
    return {};
}

} // namespace

std::string oneLine(std::string_view text)
{
    auto const valid = displayText(text);
    std::string line;
    line.reserve(valid.size());
    char const* const end = valid.data() + valid.size();
    for (char const* at = valid.data(); at < end;) {
        char const* const next = g_utf8_next_char(at);
        if (breaksLines(g_utf8_get_char(at)))
            line += ' ';
        else
            line.append(at, next);
        at = next;
    }
    return line;
}

PdfText::PdfText()
    : fonts_(pango_cairo_font_map_new())
    , context_(pango_font_map_create_context(fonts_.get()))
{
    useExactPlaces(*context_);
    layout_.reset(pango_layout_new(context_.get()));
    pango_layout_set_single_paragraph_mode(layout_.get(), TRUE);
}

PdfText::Font const& PdfText::fontOf(PdfTextStyle const& style)
{
    auto& font = styles_[{ style.size, style.weight }];
    if (font.description)
        return font;
    font.description.reset(pango_font_description_from_string("sans-serif"));
    pango_font_description_set_absolute_size(font.description.get(), style.size * unitsPerPoint);
    if (style.weight == PdfTextStyle::Weight::semibold)
        pango_font_description_set_weight(font.description.get(), PANGO_WEIGHT_SEMIBOLD);
    std::unique_ptr<PangoFontMetrics, FreeMetrics> const metrics(
        pango_context_get_metrics(context_.get(), font.description.get(), nullptr));
    font.ascent = pango_font_metrics_get_ascent(metrics.get()) / unitsPerPoint;
    font.descent = pango_font_metrics_get_descent(metrics.get()) / unitsPerPoint;
    return font;
}

void PdfText::set(std::string_view text, PdfTextStyle const& style, Cut cut, double width)
{
    auto const line = oneLine(text);
    current_ = &fontOf(style);
    pango_layout_set_font_description(layout_.get(), current_->description.get());
    setWhole(line);
    if (cut != Cut::none && this->width() > width)
        setWhole(shortened(line, cut, width));
}

void PdfText::setWhole(std::string const& line)
{
    pango_layout_set_width(layout_.get(), -1);
    pango_layout_set_ellipsize(layout_.get(), PANGO_ELLIPSIZE_NONE);
    pango_layout_set_text(layout_.get(), line.data(), static_cast<int>(line.size()));
}

// The library would store the whole text behind its ellipsis; what is copied out of a document
// shall be what is seen there.
std::string PdfText::shortened(std::string const& line, Cut cut, double width)
{
    pango_layout_set_ellipsize(
        layout_.get(), cut == Cut::middle ? PANGO_ELLIPSIZE_MIDDLE : PANGO_ELLIPSIZE_END);
    pango_layout_set_width(
        layout_.get(), static_cast<int>(std::floor(std::max(width, 0.0) * unitsPerPoint)));
    auto const omitted = omittedIn(*pango_layout_get_line_readonly(layout_.get(), 0));
    auto kept = line;
    return kept.replace(omitted.begin, omitted.length, "…");
}

double PdfText::width() const
{
    PangoRectangle logical {};
    auto* const line = pango_layout_get_line_readonly(layout_.get(), 0);
    pango_layout_line_get_extents(line, nullptr, &logical);
    return logical.width / unitsPerPoint;
}

void PdfText::draw(cairo_t* to, double x, double baseline) const
{
    cairo_move_to(to, x, baseline);
    pango_cairo_show_layout_line(to, pango_layout_get_line_readonly(layout_.get(), 0));
}

} // namespace pixelhain
