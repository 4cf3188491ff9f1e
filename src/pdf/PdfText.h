#pragma once
#include "ports/PdfPage.h"
#include <cstdint>
#include <map>
#include <memory>
#include <pango/pangocairo.h>
#include <string>
#include <string_view>
#include <utility>

namespace pixelhain {

/// Frees what the libraries behind a PDF hand out.
struct GObjectUnref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <typename T> using GObject = std::unique_ptr<T, GObjectUnref>;

/// `text` as one line of valid UTF-8: what is no text becomes U+FFFD, and what would break or bend
/// the line a blank.
[[nodiscard]] std::string oneLine(std::string_view text);

/// Lines of text in any script, measured and drawn in points, with the fonts of the system.
class PdfText {
public:
    PdfText();

    enum class Cut : std::uint8_t { none, middle, end };

    /// Makes `text` the line that the other functions are about, cut to `width` if it is wider.
    void set(std::string_view text, PdfTextStyle const& style, Cut cut, double width);

    [[nodiscard]] double width() const;
    /// From the top of the line's box to the baseline, and on to its bottom: the font's own,
    /// whatever other fonts the line borrows letters from, so that lines side by side stand level.
    [[nodiscard]] double ascent() const { return current_->ascent; }
    [[nodiscard]] double descent() const { return current_->descent; }

    /// Draws the line from `x` on, y downwards.
    void draw(cairo_t* to, double x, double baseline) const;

private:
    struct FreeFont {
        void operator()(PangoFontDescription* font) const { pango_font_description_free(font); }
    };
    struct Font {
        std::unique_ptr<PangoFontDescription, FreeFont> description;
        double ascent = 0;
        double descent = 0;
    };
    Font const& fontOf(PdfTextStyle const& style);
    void setWhole(std::string const& line);
    std::string shortened(std::string const& line, Cut cut, double width);

    GObject<PangoFontMap> fonts_;
    GObject<PangoContext> context_;
    GObject<PangoLayout> layout_;
    std::map<std::pair<double, PdfTextStyle::Weight>, Font> styles_;
    Font const* current_ = nullptr;
};

} // namespace pixelhain
