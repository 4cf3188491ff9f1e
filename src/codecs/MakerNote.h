#pragma once
#include "codecs/RawContents.h"
#include "codecs/TiffReader.h"
#include <vector>

namespace pixelhain {

/// What of a maker note concerns decoding.
struct MakerNote {
    std::vector<ByteRange> previews; ///< where JPEGs may lie, in the file: nothing is checked
    RawColors colors = RawColors::unknown;
};

/// Reads the note that `note`, a field of `reader`, holds. Makers disagree on where a note's
/// directory begins, in which byte order it is and what its offsets count from.
[[nodiscard]] MakerNote readMakerNote(
    ByteSource const& bytes, TiffReader const& reader, TiffField const& note);

/// The colours that the EXIF directory `exif` names.
[[nodiscard]] RawColors exifColors(TiffReader const& reader, TiffDirectory const& exif);

} // namespace pixelhain
