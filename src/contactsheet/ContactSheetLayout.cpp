#include "contactsheet/ContactSheetLayout.h"
#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace pixelhain {

namespace {

constexpr int manyColumns = 8; // from here on names are printed smaller

double sharedBy(std::size_t columns, double width)
{
    auto const count = static_cast<double>(columns);
    return (width - (count - 1) * ContactSheetLayout::gap) / count;
}

// A page so odd that rows cannot be counted is nobody's input.
std::size_t wholeRows(double rows)
{
    if (!std::isfinite(rows))
        std::abort();
    return static_cast<std::size_t>(std::max(1.0, std::trunc(rows)));
}

} // namespace

ContactSheetLayout::ContactSheetLayout(
    ContactSheetOptions const& options, std::size_t photoCount, PageSize pageSize)
    : page(pageSize)
    , columns(options.columns < 2 ? 1 : static_cast<std::size_t>(options.columns))
    , cell(sharedBy(columns, page.width - 2 * margin))
    , labelHeight(options.showNames ? 13 : 0)
    , pitch(labelHeight + cell + gap)
    , rows(wholeRows((page.height - 2 * margin - headerHeight + gap) / pitch))
    , perPage(rows * columns)
    , pages(std::max<std::size_t>(1, (photoCount + perPage - 1) / perPage))
    , thumbnailPixels(std::max(1, static_cast<int>(cell * pixelsPerPoint)))
    , labelStyle { options.columns >= manyColumns ? 5.5 : 7, PdfTextStyle::Weight::regular,
        darkGrey }
{
}

PagePoint ContactSheetLayout::infoAt(double infoWidth) const
{
    return { page.width - margin - infoWidth, page.height - 49 };
}

double ContactSheetLayout::titleWidth(double infoWidth) const
{
    constexpr double distance = 12;
    return std::max(0.0, page.width - 2 * margin - infoWidth - distance);
}

PageRect ContactSheetLayout::cellRect(std::size_t index) const
{
    auto const row = static_cast<double>(index / columns);
    auto const column = static_cast<double>(index % columns);
    return { margin + column * (cell + gap), (page.height - 70) - pitch * row - cell, cell, cell };
}

PageRect ContactSheetLayout::labelBox(PageRect const& cell)
{
    return { cell.x, cell.y - 13, cell.width, labelBoxHeight };
}

PageRect ContactSheetLayout::pictureRect(PageRect const& cell, PixelSize picture)
{
    PageRect const inset { cell.x + pictureInset, cell.y + pictureInset,
        cell.width - 2 * pictureInset, cell.height - 2 * pictureInset };
    if (picture.width <= 0 || picture.height <= 0)
        return inset;
    auto const scale = std::min(inset.width / picture.width, inset.height / picture.height);
    auto const width = picture.width * scale;
    auto const height = picture.height * scale;
    return { inset.x + (inset.width - width) / 2, inset.y + (inset.height - height) / 2, width,
        height };
}

std::string_view contactSheetTitle(ContactSheetOptions const& options)
{
    return options.title.empty() ? std::string_view("Kontaktabzug") : options.title;
}

std::string contactSheetInfo(
    std::size_t photoCount, std::string_view date, std::size_t page, std::size_t pages)
{
    return std::to_string(photoCount) + " Fotos  ·  " + std::string(date) + "  ·  Seite "
        + std::to_string(page) + "/" + std::to_string(pages);
}

} // namespace pixelhain
