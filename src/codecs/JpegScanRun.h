#pragma once
#include "codecs/JpegPlanes.h"
#include "codecs/JpegScanBytes.h"
#include <cstdint>
#include <vector>

namespace pixelhain {

/// One pass over coded bytes, unit by unit and from restart to restart. What the units say is the
/// derived class's business.
class JpegScanRun {
public:
    enum class Outcome : std::uint8_t {
        whole,
        cut, ///< the bytes ended early; what was missing was read as zeros, as far as one unit
        foreign, ///< bits that are no code, or restarts where none belong
    };

    virtual ~JpegScanRun() = default;
    JpegScanRun(JpegScanRun const&) = delete;
    JpegScanRun& operator=(JpegScanRun const&) = delete;

    [[nodiscard]] Outcome run();

    /// Where the coded bytes end; to be asked after `run`, if it took all units.
    [[nodiscard]] std::uint64_t end() const;
    /// What was read behind them.
    [[nodiscard]] JpegScanBytes::Rest rest() const
    {
        return bytes_.isComplete() ? bytes_.rest() : JpegScanBytes::Rest {};
    }

protected:
    JpegScanRun(ByteSource const& bytes, JpegMarkers const& markers, std::vector<JpegPlane>& planes,
        std::size_t piece);

    /// A block of the unit at hand, and how to come to the one at the same place in the next unit.
    struct Place {
        JpegPlane* plane = nullptr;
        std::size_t part = 0; ///< of the scan
        int across = 1; ///< blocks of the part in a unit
        int down = 1;
        int x = 0; ///< within the unit
        int y = 0;
    };
    struct Taken {
        std::uint32_t position = 0;
        std::uint32_t units = 0; ///< at least one, unless it is lost
        bool isLost = false;
    };

    /// Takes at most `most` units from the bit `position` on that begin before `limit`. Behind the
    /// limit there are `JpegScanBytes::margin` bytes that may be looked at.
    [[nodiscard]] virtual Taken take(
        std::uint8_t const* data, std::uint32_t position, std::uint32_t limit, std::uint32_t most)
        = 0;
    /// A restart was passed.
    virtual void restart() = 0;

    [[nodiscard]] std::vector<Place> const& places() const { return places_; }
    [[nodiscard]] int unitsAcross() const { return unitsAcross_; }
    [[nodiscard]] int unitsDown() const { return unitsDown_; }
    [[nodiscard]] JpegScan const& scan() const { return scan_; }

private:
    [[nodiscard]] bool passRestart();
    void advance();

    JpegScan const& scan_;
    JpegScanBytes bytes_;
    ByteSource const& whole_;
    std::vector<Place> places_;
    int unitsAcross_ = 0;
    int unitsDown_ = 0;
    std::uint32_t unitsLeft_ = 0;
    std::uint32_t interval_ = 0;
    std::uint32_t intervalLeft_ = 0;
    int nextRestart_ = 0;
    std::uint32_t position_ = 0; ///< the next bit, counted from the bytes at hand
};

} // namespace pixelhain
