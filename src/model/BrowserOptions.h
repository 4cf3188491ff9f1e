#pragma once
#include <cstdint>

namespace pixelhain {

/// Whether showing other folders also moves the keyboard focus to the gallery.
enum class FocusGallery : std::uint8_t { no, yes };

/// Whether a new root of the folder tree is also the folder that is shown.
enum class AlsoSelect : std::uint8_t { no, yes };

/// Whether a movement of the cursor also marks what it passes.
enum class Extend : std::uint8_t { no, yes };

/// Whether photos leave their folder for another one, or are copied there.
enum class Transfer : std::uint8_t { move, copy };

} // namespace pixelhain
