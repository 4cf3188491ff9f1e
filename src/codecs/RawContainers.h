#pragma once
#include "codecs/RawContents.h"

/// One reader for each way in which cameras pack their pictures. All are bounded: they follow a
/// fixed number of directories, and none twice.
namespace pixelhain {

/// A TIFF structure whose header stands at `base`: most makers. False if there is no directory.
[[nodiscard]] bool readTiffRaw(ByteSource const& bytes, std::uint64_t base, RawContents& contents);

[[nodiscard]] bool readCr3(ByteSource const& bytes, RawContents& contents); ///< Canon, boxes
[[nodiscard]] bool readCiff(ByteSource const& bytes, RawContents& contents); ///< Canon, CRW
[[nodiscard]] bool readRaf(ByteSource const& bytes, RawContents& contents); ///< Fujifilm
[[nodiscard]] bool readMrw(ByteSource const& bytes, RawContents& contents); ///< Minolta
[[nodiscard]] bool readX3f(ByteSource const& bytes, RawContents& contents); ///< Sigma

/// The EXIF orientation of a picture that must be turned clockwise by `degrees`.
[[nodiscard]] int orientationOfTurn(std::uint32_t degrees);

} // namespace pixelhain
