#pragma once
#include "ports/PhotoProperties.h"

namespace pixelhain {

/// What a camera states about a photo.
inline PhotoProperties sampleProperties()
{
    PhotoProperties properties;
    properties.dateTimeOriginal = "2023:05:17 14:30:12";
    properties.make = "Canon";
    properties.model = "Canon EOS R5";
    properties.lensModel = "RF50mm F1.8 STM";
    properties.focalLength = 50;
    properties.fNumber = 1.8;
    properties.exposureTime = 0.004;
    properties.isoSpeedRatings = { 200, 400 };
    return properties;
}

} // namespace pixelhain
