#pragma once
#include "codecs/ByteView.h"
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace pixelhain {

enum class JpegRestarts : std::uint8_t { none, expected };

/// The coded bytes of one scan without their stuffing, piece by piece. They end in front of the
/// first marker that is not a restart, or of the first at all where none are expected.
class JpegScanBytes {
public:
    /// Bytes of zero behind those that there are: more than a unit of ten blocks can take.
    static constexpr std::size_t margin = 4096;
    static constexpr std::size_t largestPiece = std::size_t { 1 } << 20;

    struct Restart {
        std::size_t offset = 0; ///< of what follows it
        int number = 0; ///< 0 to 7
    };

    /// Reads at most `piece` bytes at once.
    JpegScanBytes(
        ByteSource const& bytes, std::uint64_t offset, std::size_t piece, JpegRestarts restarts);

    /// Drops the bytes in front of `used`, with their restarts, and reads on unless all are there.
    void advance(std::size_t used);

    [[nodiscard]] std::uint8_t const* data() const { return clean_.get(); }
    [[nodiscard]] std::size_t size() const { return size_; }
    [[nodiscard]] bool isComplete() const { return isComplete_; }
    /// The next restart that was met; null if there is none.
    [[nodiscard]] Restart const* restart() const
    {
        return nextRestart_ < restarts_.size() ? &restarts_[nextRestart_] : nullptr;
    }
    void passRestart() { ++nextRestart_; }

    /// Of all of them: where the marker stands that ends them, or where the file ends.
    [[nodiscard]] std::uint64_t end() const { return end_; }
    /// Of all of them: what was read behind `end` without being taken; may be less than that.
    struct Rest {
        std::uint64_t offset = 0; ///< where it stands
        ByteSpan bytes;
    };
    [[nodiscard]] Rest rest() const;
    /// Of all of them: whether the file ends there, or a segment begins that has a place there.
    [[nodiscard]] bool isEndSound() const { return endMarker_ == 0 || endMarker_ >= 0xC0; }
    /// Until then: where one may go on to look for it.
    [[nodiscard]] std::uint64_t readSoFar() const { return offset_ - (isInMarker_ ? 1 : 0); }

private:
    void takeRaw(ByteSpan raw);
    [[nodiscard]] bool takeMarker(std::uint8_t second);

    ByteSource const& bytes_;
    std::uint64_t offset_; ///< of the next raw byte
    std::size_t piece_;
    JpegRestarts expected_;
    std::unique_ptr<std::uint8_t[]> raw_;
    std::size_t rawSize_ = 0; ///< of the bytes that were read last
    std::unique_ptr<std::uint8_t[]> clean_;
    std::size_t size_ = 0;
    std::vector<Restart> restarts_;
    std::size_t nextRestart_ = 0;
    bool isInMarker_ = false; ///< the last byte was 0xFF
    bool isComplete_ = false;
    std::uint64_t end_ = 0;
    std::uint8_t endMarker_ = 0; ///< 0: the file ends
};

/// Where the coded bytes end that begin at `offset`, without a look at what they say.
[[nodiscard]] std::uint64_t endOfScan(ByteSource const& bytes, std::uint64_t offset);

} // namespace pixelhain
