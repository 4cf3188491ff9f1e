#pragma once

namespace pixelhain {

/// A colour by what it stands for; the toolkit's palette gives the tone.
enum class ColorRole { clear, accent, primary, secondary, tertiary, black, white };

struct Tint {
    ColorRole role = ColorRole::clear;
    double opacity = 1;
    bool operator==(Tint const&) const = default;
};

/// A line drawn inside its shape, its outer edge on the shape's.
struct Stroke {
    Tint tint;
    double width = 0;
    bool operator==(Stroke const&) const = default;
};

} // namespace pixelhain
