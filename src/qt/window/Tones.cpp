#include "qt/window/Tones.h"
#include <QFont>
#include <algorithm>
#include <cmath>

namespace pixelhain {

Tones::Tones(QPalette const& palette, Ground ground)
    : ground_(palette.color(ground == Ground::gallery ? QPalette::Base : QPalette::Window))
    , primary_(palette.color(ground == Ground::gallery ? QPalette::Text : QPalette::WindowText))
    , accent_(palette.color(QPalette::Highlight))
{
}

QColor Tones::mixed(double share) const
{
    auto const mix = [share](int over, int under) {
        return static_cast<int>(std::lround(over * share + under * (1 - share)));
    };
    return { mix(primary_.red(), ground_.red()), mix(primary_.green(), ground_.green()),
        mix(primary_.blue(), ground_.blue()) };
}

QColor Tones::separator() const
{
    return mixed(0.16);
}

QColor Tones::link() const
{
    return ground_.lightness() > 127 ? accent_.darker(140) : accent_.lighter(125);
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
            return mixed(0.56);
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
