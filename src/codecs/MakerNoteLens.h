#pragma once
#include "codecs/MakerNoteDirectory.h"
#include <optional>
#include <string>
#include <string_view>

namespace pixelhain {

/// The lens that a maker note names: Canon, Olympus and Panasonic in words, Nikon and Sony by the
/// figures on it ("18-105mm f/3.5-5.6"). Nothing is looked up: numbers that stand for lenses mean
/// several at once. `make`: the camera's, which some notes are told by.
[[nodiscard]] std::optional<std::string> makerNoteLens(
    MakerNoteDirectory const& note, std::string_view make);

} // namespace pixelhain
