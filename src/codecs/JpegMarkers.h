#pragma once
#include "base/Geometry.h"
#include "codecs/ByteView.h"
#include "codecs/HuffmanLookup.h"
#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace pixelhain {

/// One of a JPEG's up to four planes of samples.
struct JpegComponent {
    std::uint8_t name = 0;
    int across = 1; ///< blocks of it in a unit of the picture, 1 to 4
    int down = 1;
    std::size_t quantization = 0; ///< number of its table
};

struct JpegFrame {
    bool isProgressive = false;
    PixelSize size;
    std::vector<JpegComponent> components;
    int mostAcross = 1; ///< of all components
    int mostDown = 1;
};

/// What the components mean.
enum class JpegColors : std::uint8_t { grey, ycbcr, rgb, cmyk, ycck };

/// A pass over some of the components, and where its coded bytes begin.
struct JpegScan {
    struct Part {
        std::size_t component = 0;
        std::size_t meansCode = 0; ///< number of the Huffman code
        std::size_t othersCode = 0;
    };
    std::vector<Part> parts;
    int first = 0; ///< the coefficients that it codes, in their order along the diagonals
    int last = 63;
    int lowBitBefore = 0; ///< 0: no scan coded them before
    int lowBit = 0; ///< bits below it are left for later scans
    std::uint64_t coded = 0;
};

/// Walks over the segments of a JPEG and keeps what its pixels need. Takes only what an encoder of
/// 8 bits in Huffman codes writes, and takes offence at everything else, so that whoever knows the
/// format's dark corners may have a go.
class JpegMarkers {
public:
    enum class Stop : std::uint8_t { scan, end, foreign };
    using Quantization = std::array<std::uint16_t, 64>; ///< in the order along the diagonals

    explicit JpegMarkers(ByteSource const& bytes)
        : bytes_(bytes)
    {
    }

    /// Goes on from the file's beginning to the frame. False if there is none of the known kind.
    [[nodiscard]] bool readFrame();

    /// Goes on from `offset` to the next scan, or to the end; the end of the file is one too.
    [[nodiscard]] Stop next(std::uint64_t offset);
    [[nodiscard]] std::uint64_t behindFrame() const { return behindFrame_; }

    [[nodiscard]] JpegFrame const& frame() const { return frame_; }
    [[nodiscard]] JpegScan const& scan() const { return scan_; }
    [[nodiscard]] std::optional<JpegColors> colors() const;
    [[nodiscard]] bool hasAdobeMarker() const { return adobe_.has_value(); }
    [[nodiscard]] std::optional<Quantization> const& quantization(std::size_t number) const
    {
        return quantizations_[number & 3U];
    }
    [[nodiscard]] std::optional<HuffmanCode> const& meansCode(std::size_t number) const
    {
        return codes_[number & 3U];
    }
    [[nodiscard]] std::optional<HuffmanCode> const& othersCode(std::size_t number) const
    {
        return codes_[4 + (number & 3U)];
    }
    [[nodiscard]] std::uint32_t restartInterval() const { return restartInterval_; }

private:
    struct Segment {
        std::uint8_t marker = 0;
        std::uint64_t contents = 0;
        std::size_t length = 0;
    };

    [[nodiscard]] std::optional<Segment> segmentAt(std::uint64_t offset);
    [[nodiscard]] bool take(Segment const& segment);
    [[nodiscard]] bool takeQuantizations(ByteSpan tables);
    [[nodiscard]] bool takeCodes(ByteSpan codes);
    [[nodiscard]] bool takeFrame(bool isProgressive, ByteSpan frame);
    [[nodiscard]] bool takeScan(ByteSpan head, std::uint64_t coded);
    [[nodiscard]] bool isBandSound() const;
    void takeApplicationData(std::uint8_t marker, ByteSpan contents);

    ByteSource const& bytes_;
    JpegFrame frame_;
    JpegScan scan_;
    std::array<std::optional<Quantization>, 4> quantizations_;
    std::array<std::optional<HuffmanCode>, 8> codes_; ///< of means, then of others
    std::uint32_t restartInterval_ = 0;
    bool hasJfif_ = false;
    std::optional<std::uint8_t> adobe_; ///< what it says about the colours
    std::uint64_t behindFrame_ = 0;
    int segments_ = 0;
    int fill_ = 0;
};

} // namespace pixelhain
