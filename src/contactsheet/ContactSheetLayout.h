#pragma once
#include "base/Geometry.h"
#include "contactsheet/ContactSheetOptions.h"
#include "ports/PdfPage.h"
#include <cstddef>
#include <string>
#include <string_view>

namespace pixelhain {

/// Where everything on the pages of a contact sheet goes. A plain function of the options, the
/// number of photos and the size of a page.
struct ContactSheetLayout {
    static constexpr double margin = 36; ///< on every side
    static constexpr double gap = 10; ///< between cells
    static constexpr double headerHeight = 34; ///< kept free below the top margin
    static constexpr double pictureInset = 2; ///< between a cell and its picture
    static constexpr double labelBoxHeight = 12;
    static constexpr int pixelsPerPoint = 3;
    static constexpr WhiteLevel darkGrey = 1.0 / 3;
    static constexpr WhiteLevel ruleWhite = 0.75;
    static constexpr double ruleWidth = 0.5;
    static constexpr WhiteLevel cellWhite = 0.95;
    static constexpr PdfTextStyle titleStyle { 13, PdfTextStyle::Weight::semibold, 0 };
    static constexpr PdfTextStyle infoStyle { 9, PdfTextStyle::Weight::regular, darkGrey };

    ContactSheetLayout(ContactSheetOptions const& options, std::size_t photoCount, PageSize page);

    PageSize page;
    std::size_t columns = 1;
    double cell = 0; ///< edge of the square for one photo
    double labelHeight = 0; ///< that a row has for its names; 0 without names
    double pitch = 0; ///< from one row to the next
    std::size_t rows = 1;
    std::size_t perPage = 1;
    std::size_t pages = 1; ///< at least 1
    int thumbnailPixels = 0; ///< longest side that thumbnails are asked for
    PdfTextStyle labelStyle;

    /// Lower left corners of the lines of text.
    [[nodiscard]] PagePoint titleAt() const { return { margin, page.height - 51 }; }
    [[nodiscard]] PagePoint infoAt(double infoWidth) const;
    /// What is left for the title beside an info line of this width.
    [[nodiscard]] double titleWidth(double infoWidth) const;
    [[nodiscard]] PagePoint ruleBegin() const { return { margin, page.height - 58 }; }
    [[nodiscard]] PagePoint ruleEnd() const { return { page.width - margin, page.height - 58 }; }

    /// The square of the photo at `index` on its page, from 0.
    [[nodiscard]] PageRect cellRect(std::size_t index) const;
    [[nodiscard]] static PageRect labelBox(PageRect const& cell);
    /// The picture as large as it goes into its cell, in the middle, its proportions kept.
    [[nodiscard]] static PageRect pictureRect(PageRect const& cell, PixelSize picture);
};

/// The title as it is printed and stored: never empty.
[[nodiscard]] std::string_view contactSheetTitle(ContactSheetOptions const& options);

/// "42 Fotos  ·  16.11.2026  ·  Seite 1/2"
[[nodiscard]] std::string contactSheetInfo(
    std::size_t photoCount, std::string_view date, std::size_t page, std::size_t pages);

} // namespace pixelhain
