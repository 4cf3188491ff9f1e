#pragma once
#include <QColor>
#include <algorithm>
#include <cmath>

namespace pixelhain {

inline double luminance(QColor const& color)
{
    auto const linear = [](double level) {
        return level <= 0.03928 ? level / 12.92 : std::pow((level + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF())
        + 0.0722 * linear(color.blueF());
}

/// As the guidelines for readable text on screens reckon it, from 1 to 21.
inline double contrast(QColor const& a, QColor const& b)
{
    auto const ratio = (luminance(a) + 0.05) / (luminance(b) + 0.05);
    return std::max(ratio, 1 / ratio);
}

} // namespace pixelhain
