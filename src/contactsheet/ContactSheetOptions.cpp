#include "contactsheet/ContactSheetOptions.h"
#include <algorithm>
#include <cstddef>
#include <utility>

namespace pixelhain {

namespace {

struct Paper {
    std::string_view rawValue;
    std::string_view title;
    PageSize portrait;
};

// By PaperSize.
constexpr std::array<Paper, paperSizes.size()> papers { {
    { "a4", "A4", { 595.28, 841.89 } },
    { "a3", "A3", { 841.89, 1190.55 } },
    { "letter", "US Letter", { 612, 792 } },
} };

constexpr Paper const& paperOf(PaperSize paper)
{
    return papers[static_cast<std::size_t>(paper)];
}

} // namespace

std::string_view rawValue(PaperSize paper)
{
    return paperOf(paper).rawValue;
}

std::optional<PaperSize> paperSizeFromRawValue(std::string_view value)
{
    auto const* const found = std::ranges::find(
        paperSizes, value, [](PaperSize paper) { return paperOf(paper).rawValue; });
    return found == paperSizes.end() ? std::nullopt : std::optional(*found);
}

std::string_view titleOf(PaperSize paper)
{
    return paperOf(paper).title;
}

PageSize portraitPage(PaperSize paper)
{
    return paperOf(paper).portrait;
}

PageSize ContactSheetOptions::page() const
{
    auto size = portraitPage(paper);
    if (landscape)
        std::swap(size.width, size.height);
    return size;
}

} // namespace pixelhain
