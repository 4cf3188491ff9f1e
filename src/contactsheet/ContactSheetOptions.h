#pragma once
#include "ports/PdfPage.h"
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace pixelhain {

enum class PaperSize : std::uint8_t { a4, a3, letter };

/// All of them, in the order in which they are offered.
inline constexpr std::array paperSizes { PaperSize::a4, PaperSize::a3, PaperSize::letter };

/// "a4", "a3", "letter"
[[nodiscard]] std::string_view rawValue(PaperSize paper);
[[nodiscard]] std::optional<PaperSize> paperSizeFromRawValue(std::string_view value);

/// "A4", "A3", "US Letter"
[[nodiscard]] std::string_view titleOf(PaperSize paper);

[[nodiscard]] PageSize portraitPage(PaperSize paper);

/// What one contact sheet is made by.
struct ContactSheetOptions {
    static constexpr int leastColumns = 2;
    static constexpr int mostColumns = 10;

    std::string title; ///< heading of every page, and the document's title
    int columns = 5; ///< thumbnails in a row
    PaperSize paper = PaperSize::a4;
    bool landscape = false;
    bool showNames = true; ///< file names under the thumbnails

    /// Width and height as they are printed, turned for landscape.
    [[nodiscard]] PageSize page() const;
    bool operator==(ContactSheetOptions const&) const = default;
};

} // namespace pixelhain
