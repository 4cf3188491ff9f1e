#include "qt/window/Tones.h"
#include <QFont>
#include <algorithm>
#include <cmath>

namespace pixelhain {

namespace {

double luminance(QColor const& color)
{
    auto const linear = [](double level) {
        return level <= 0.03928 ? level / 12.92 : std::pow((level + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF())
        + 0.0722 * linear(color.blueF());
}

QColor mix(QColor const& over, QColor const& under, double share)
{
    auto const level = [share](int above, int below) {
        return static_cast<int>(std::lround(above * share + below * (1 - share)));
    };
    return { level(over.red(), under.red()), level(over.green(), under.green()),
        level(over.blue(), under.blue()) };
}

// The accents of desktops are made for areas and lines. As little of black or white is added as
// letters need, whether they have the color or stand on it.
QColor withContrast(QColor const& color, QColor const& other)
{
    constexpr double readable = 4.5; // the least that guidelines ask of text in usual sizes
    constexpr double step = 0.02;
    auto const fixed = luminance(other) + 0.05;
    constexpr double middle = 0.179; // equally far from black and white
    auto const isOnLight = fixed - 0.05 > middle;
    for (double share = 0; share < 1; share += step) {
        auto const candidate = mix(isOnLight ? Qt::black : Qt::white, color, share);
        auto const own = luminance(candidate) + 0.05;
        if ((isOnLight ? fixed / own : own / fixed) >= readable)
            return candidate;
    }
    return isOnLight ? Qt::black : Qt::white;
}

} // namespace

Tones::Tones(QPalette const& palette, Ground ground)
    : ground_(palette.color(ground == Ground::gallery ? QPalette::Base : QPalette::Window))
    , primary_(palette.color(ground == Ground::gallery ? QPalette::Text : QPalette::WindowText))
    , accent_(palette.color(QPalette::Highlight))
    , selectedText_(palette.color(QPalette::HighlightedText))
{
}

QColor Tones::mixed(double share) const
{
    return mix(primary_, ground_, share);
}

QColor Tones::separator() const
{
    return mixed(0.16);
}

QColor Tones::divider() const
{
    return mixed(0.22);
}

QColor Tones::unusable() const
{
    return mixed(0.45);
}

QColor Tones::edge() const
{
    return mixed(0.45);
}

QColor Tones::link() const
{
    return withContrast(accent_, ground_);
}

QColor Tones::selection() const
{
    return withContrast(accent_, selectedText_);
}

QColor Tones::of(Tint const& tint) const
{
    auto color = [&]() -> QColor {
        switch (tint.role) {
        case ColorRole::accent:
            return accent_;
        case ColorRole::primary:
            return primary_;
        case ColorRole::secondary:
            return mixed(0.66);
        case ColorRole::tertiary:
            return mixed(0.6);
        case ColorRole::black:
            return Qt::black;
        case ColorRole::white:
            return Qt::white;
        case ColorRole::clear:
            break;
        }
        return Qt::transparent;
    }();
    if (tint.role != ColorRole::clear)
        color.setAlphaF(static_cast<float>(tint.opacity));
    return color;
}

QFont scaledFont(QFont font, double factor)
{
    constexpr double smallestPoints = 7.5;
    constexpr int smallestPixels = 10;
    if (font.pointSizeF() > 0)
        font.setPointSizeF(std::max(font.pointSizeF() * factor, smallestPoints));
    else
        font.setPixelSize(
            std::max(static_cast<int>(std::lround(font.pixelSize() * factor)), smallestPixels));
    return font;
}

} // namespace pixelhain
