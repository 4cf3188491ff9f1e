#pragma once
#include "codecs/JpegScanRun.h"
#include "codecs/JpegWalk.h"
#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace pixelhain {

/// Reads a sequential scan into the samples of its planes.
///
/// A long stretch of coded bytes is walked through from several places at once. Where a unit begins
/// is known of the first of them only; the others begin anywhere, and as codes do, they fall into
/// step after a while. When a walk comes to a place where the next one began a unit too, all that
/// one read from there on is right; if that never happens, what it read is dropped.
class JpegSequentialScan final : public JpegScanRun {
public:
    /// Null if a code that it needs is missing or is none.
    [[nodiscard]] static std::unique_ptr<JpegSequentialScan> make(ByteSource const& bytes,
        JpegMarkers const& markers, std::vector<JpegPlane>& planes, std::size_t piece);

private:
    struct Codes {
        HuffmanLookup means;
        HuffmanLookup others;
        std::optional<NumberTable> meanNumbers;
        std::optional<SkipTable> skips;
        std::array<std::int16_t, 64> steps {};
    };
    /// Where the next unit's block of one place goes.
    struct Target {
        std::int8_t* at = nullptr;
        std::ptrdiff_t advance = 0; ///< to the next unit
        std::ptrdiff_t stride = 0;
        std::uint32_t* mean = nullptr; ///< of the block before
        std::int32_t step = 0;
        bool isQuartered = false;
    };

    JpegSequentialScan(ByteSource const& bytes, JpegMarkers const& markers,
        std::vector<JpegPlane>& planes, std::size_t piece);
    [[nodiscard]] bool prepare(JpegMarkers const& markers);
    [[nodiscard]] static bool readCodes(JpegMarkers const& markers, JpegScan::Part const& part,
        JpegPlane const& plane, Codes& into);

    [[nodiscard]] Taken take(std::uint8_t const* data, std::uint32_t position, std::uint32_t limit,
        std::uint32_t most) override;
    void restart() override { means_.fill(0); }

    void walkAll(std::uint8_t const* data, std::size_t count);
    [[nodiscard]] bool join(
        std::uint8_t const* data, JpegWalk const& guess, std::uint32_t most, Taken& taken);
    void keep(JpegWalk const& walk, std::uint32_t from, std::uint32_t count);
    void beginRow();

    std::array<Codes, 4> codes_ {};
    JpegUnit unit_;
    std::vector<JpegWalk> walks_;
    std::uint32_t room_ = 0; ///< of each
    std::vector<Target> targets_;
    std::array<std::uint32_t, 4> means_ {};
    int unitX_ = 0;
    int unitY_ = 0;
    int joined_ = 0; ///< less the guesses that came to nothing
};

} // namespace pixelhain
