#pragma once
#include "base/Geometry.h"
#include <cstdint>
#include <memory>
#include <vector>

namespace pixelhain {

/// Lengths and places on a page are points (1/72 inch), counted from its bottom left corner.
struct PageSize {
    double width = 0;
    double height = 0;
    bool operator==(PageSize const&) const = default;
};
struct PagePoint {
    double x = 0;
    double y = 0;
    bool operator==(PagePoint const&) const = default;
};
struct PageRect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
    bool operator==(PageRect const&) const = default;
};

/// A tone between black (0) and white (1).
using WhiteLevel = double;

struct PdfTextStyle {
    enum class Weight : std::uint8_t { regular, semibold };
    double size = 0; ///< points
    Weight weight = Weight::regular;
    WhiteLevel white = 0;
    bool operator==(PdfTextStyle const&) const = default;
};

/// A picture as it goes into a PDF: the bytes of a JPEG without transparency. Empty: none.
struct PdfPicture {
    PixelSize size;
    std::shared_ptr<std::vector<std::uint8_t> const> jpeg;
    explicit operator bool() const { return jpeg != nullptr; }
};

} // namespace pixelhain
