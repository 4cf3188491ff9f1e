#pragma once
#include "codecs/TiffReader.h"
#include <cstdint>
#include <optional>

namespace pixelhain {

/// The directory of a maker note, with a reader that knows what its offsets count from. Makers
/// disagree on where it begins, in which byte order it is and what offsets count from.
struct MakerNoteDirectory {
    /// By the words that the note begins with; several makers begin with none.
    enum class Style : std::uint8_t { nikon, pentax, olympus, other };
    Style style = Style::other;
    TiffReader reader;
    TiffDirectory directory;

    /// The directory that `tag` holds or points at.
    [[nodiscard]] std::optional<TiffDirectory> subDirectory(std::uint16_t tag) const;
};

/// Opens the note that `note`, a field of `reader`, holds.
[[nodiscard]] std::optional<MakerNoteDirectory> openMakerNote(
    ByteSource const& bytes, TiffReader const& reader, TiffField const& note);

} // namespace pixelhain
