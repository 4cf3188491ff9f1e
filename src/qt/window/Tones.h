#pragma once
#include "window/ThumbnailCell.h"
#include <QColor>
#include <QPalette>

namespace pixelhain {

/// The colours that roles stand for under one palette. What letters are drawn in keeps a contrast
/// of at least 4.5 to 1 on its ground, if not said otherwise.
class Tones {
public:
    enum class Ground { gallery, window };

    explicit Tones(QPalette const& palette, Ground ground = Ground::window);

    QColor ground() const { return ground_; }
    QColor separator() const;
    /// Between the entries of a menu.
    QColor divider() const;
    /// Letters of what cannot be used now: between 2.5 and 3.5 to 1 on the ground.
    QColor unusable() const;
    /// The edge of a control, at least 3 to 1 on the ground.
    QColor edge() const;
    /// The accent, strong enough for letters on the ground.
    QColor link() const;
    /// The accent under a selected row, strong enough for `selectedText` on it.
    QColor selection() const;
    QColor selectedText() const { return selectedText_; }
    QColor of(Tint const& tint) const;
    QColor of(ColorRole role) const { return of(Tint { role }); }

private:
    QColor mixed(double share) const;

    QColor ground_;
    QColor primary_;
    QColor accent_;
    QColor selectedText_;
};

/// The desktop's font in a size relative to its own, never too small to read.
[[nodiscard]] QFont scaledFont(QFont font, double factor);

/// Relative sizes of the text styles that are smaller than the body text.
inline constexpr double calloutScale = 0.95;
inline constexpr double captionScale = 0.88;
inline constexpr double smallCaptionScale = 0.82;

} // namespace pixelhain
