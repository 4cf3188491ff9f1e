#pragma once
#include "Catalogue.h"
#include "support/ImageWriters.h"

namespace pixelhain {

/// The canvas as the encoders take it; colors outside 0…1 are cut off.
RgbaPixels pixelsOf(Canvas const& canvas);

/// `pixels` as a camera with the EXIF `orientation` (1…8) would have stored them.
RgbaPixels storedAs(int orientation, RgbaPixels const& pixels);

/// Reduced by averaging to at most `longestSide`; never enlarged.
RgbaPixels reduced(RgbaPixels const& pixels, int longestSide);

/// Draws the sample and gives the bytes of its file. `scale` multiplies its size; 1 as listed.
FileBytes encodeSample(Sample const& sample, double scale);

} // namespace pixelhain
