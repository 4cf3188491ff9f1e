#pragma once
#include "codecs/JpegScanRun.h"
#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace pixelhain {

/// Reads a scan of the blocks' means of a progressive JPEG: the first, or one that adds a bit.
class JpegMeansScan final : public JpegScanRun {
public:
    /// Null if a code that it needs is missing or is none.
    [[nodiscard]] static std::unique_ptr<JpegMeansScan> make(
        ByteSource const& bytes, JpegMarkers const& markers, std::vector<JpegPlane>& planes);

private:
    JpegMeansScan(
        ByteSource const& bytes, JpegMarkers const& markers, std::vector<JpegPlane>& planes);

    [[nodiscard]] Taken take(std::uint8_t const* data, std::uint32_t position, std::uint32_t limit,
        std::uint32_t most) override;
    void restart() override { means_.fill(0); }
    [[nodiscard]] bool takeUnit(std::uint8_t const* data, std::uint32_t& position);

    std::array<HuffmanLookup, 4> codes_ {};
    std::array<std::uint32_t, 4> means_ {};
    int unitX_ = 0;
    int unitY_ = 0;
};

} // namespace pixelhain
