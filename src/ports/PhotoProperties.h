#pragma once
#include "base/Geometry.h"
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace pixelhain {

/// What a file states about the photo in it. Texts are as stored, but valid UTF-8, and never
/// blank; numbers are finite. A value of another kind than it should be counts as not stated.
struct PhotoProperties {
    std::optional<PixelSize> pixelSize; ///< as stored, not turned by the orientation
    std::optional<std::string> dateTimeOriginal; ///< usually "2023:05:17 14:30:12"
    std::optional<std::string> make; ///< of the camera
    std::optional<std::string> model;
    std::optional<std::string> lensModel;
    /// The lens by other sources than EXIF's own field; looked for only where that is not stated.
    std::optional<std::string> auxLensModel;
    std::optional<double> focalLength; ///< millimetres
    std::optional<double> fNumber;
    std::optional<double> exposureTime; ///< seconds
    std::vector<std::uint32_t> isoSpeedRatings;
    bool operator==(PhotoProperties const&) const = default;
};

} // namespace pixelhain
