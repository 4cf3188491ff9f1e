#pragma once
#include "base/Bitmap.h"
#include "base/Geometry.h"
#include "base/ResampleKernels.h"
#include <cstddef>
#include <cstdint>
#include <vector>

namespace pixelhain {

/// `size` brought to a longest side of at most `maxPixel`: never enlarged, sides rounded to the
/// nearest pixel and at least 1. A `maxPixel` of 0 or less keeps the size.
[[nodiscard]] PixelSize fittedSize(PixelSize size, int maxPixel);

/// Brings pictures of four 8-bit channels to another size by Lanczos-3, row by row, so that a
/// decoder's rows are used while they are in the processor's cache and no whole picture need be
/// kept. Reductions of more than sixfold are averaged over whole pixels first, down to at least
/// three times the wanted size, which keeps memory and time bounded at no visible loss.
/// Alpha must be premultiplied.
class RowResampler {
public:
    /// `target` gets the rows; it must outlive the resampler and is not empty.
    RowResampler(
        PixelSize from, Bitmap& target, ResampleKernels const& kernels = resampleKernels());

    /// A picture's place in the target along one side: the centre of the target's pixel i lies at
    /// (i + 0.5) × `step` + `origin` of the picture's pixels.
    struct Axis {
        double step = 1;
        double origin = 0;
    };
    RowResampler(PixelSize from, Axis across, Axis down, Bitmap& target,
        ResampleKernels const& kernels = resampleKernels());

    /// Room for the next row, `from.width` × 4 bytes; to be filled before `commitRow`.
    [[nodiscard]] std::uint8_t* nextRow();

    /// Takes the row that was filled and writes every row of the target that is complete with it.
    void commitRow();

    /// Rows of the target that are written.
    [[nodiscard]] int rowsWritten() const { return rowsOut_; }

private:
    /// For each result the values it is made of: `taps` weights from `firsts` on, the last of them
    /// zero where fewer count.
    struct Filter {
        std::vector<std::int32_t> firsts;
        std::vector<std::int32_t> ends; ///< behind the last value that counts
        std::vector<std::int16_t> weights;
        int taps = 0; ///< a multiple of 4
        int longest = 0; ///< the most that count
    };

    static Filter makeFilter(int count, Axis axis, int to);
    void takeReducedRow();
    void averageRow();
    void writeRow();

    PixelSize from_;
    Bitmap& target_;
    ResampleKernels kernels_;
    int boxX_ = 1;
    int boxY_ = 1;
    int reducedWidth_ = 0;
    int reducedHeight_ = 0;
    Filter across_;
    Filter down_;
    std::size_t ringRows_ = 0;
    std::size_t ringStride_ = 0;
    std::vector<std::uint8_t> ring_;
    std::vector<std::uint8_t> wide_; ///< one row as it came, when rows are averaged first
    std::vector<std::uint32_t> sums_;
    std::vector<std::int16_t> between_;
    std::vector<std::uint8_t const*> rows_;
    int rowsIn_ = 0;
    int summed_ = 0;
    int reducedIn_ = 0;
    int rowsOut_ = 0;
};

/// How many pixels are averaged to one along a side before it is shrunk so much.
[[nodiscard]] int averagedPixels(double step);

/// `from` at another size; empty if there is no memory for it.
[[nodiscard]] Bitmap resampled(Bitmap const& from, PixelSize to);

} // namespace pixelhain
