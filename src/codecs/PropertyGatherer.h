#pragma once
#include "codecs/ExifReader.h"
#include "codecs/MakerNoteDirectory.h"
#include "codecs/TiffReader.h"
#include "ports/PhotoProperties.h"

namespace pixelhain {

/// Gathers what a file states about its photo, block by block. What is known already stays, so
/// blocks are given in the order of their weight.
class PropertyGatherer {
public:
    void setPixelSize(PixelSize size) { properties_.pixelSize = size; }

    /// An EXIF block, or a whole file built like one.
    void takeExif(ByteSource const& block);
    void takeExif(ByteSource const& bytes, ByteRange range);

    /// The parts of a block that stands in several pieces, each a block of one directory.
    void takeCameraBlock(ByteSource const& bytes, ByteRange range);
    void takeShotBlock(ByteSource const& bytes, ByteRange range);
    void takeMakerNoteBlock(ByteSource const& bytes, ByteRange range);

    /// An XMP packet.
    void takePacket(ByteSource const& bytes, ByteRange range);

    void takeMake(std::string raw);
    void takeModel(std::string raw);

    /// Whether nothing is known of how the photo was taken.
    [[nodiscard]] bool lacksShot() const;

    [[nodiscard]] PhotoProperties finish() &&;

private:
    void takeCamera(TiffReader const& reader, TiffDirectory const& directory);
    void takeShot(TiffReader const& reader, TiffDirectory const& directory);
    void takeMakerNote(MakerNoteDirectory const& note);
    void takeIsoSpeed(TiffReader const& reader, TiffDirectory const& directory);

    PhotoProperties properties_;
    std::optional<std::string> packetLens_;
    std::optional<std::string> makerLens_;
    std::size_t blocks_ = 0;
    std::size_t packets_ = 0;
};

} // namespace pixelhain
