#pragma once
#include <algorithm>

namespace pixelhain {

/// Width and height in whole pixels.
struct PixelSize {
    int width = 0;
    int height = 0;

    int longestSide() const { return std::max(width, height); }
    PixelSize turned() const { return { height, width }; }
    bool operator==(PixelSize const&) const = default;
};

/// A rectangle of whole pixels, y downwards.
struct PixelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    int right() const { return x + width; }
    int bottom() const { return y + height; }
    bool isEmpty() const { return width <= 0 || height <= 0; }
    PixelSize size() const { return { width, height }; }
    bool contains(PixelRect const& other) const
    {
        return other.x >= x && other.y >= y && other.right() <= right()
            && other.bottom() <= bottom();
    }
    PixelRect moved(int dx, int dy) const { return { x + dx, y + dy, width, height }; }
    PixelRect intersected(PixelRect const& other) const
    {
        auto const left = std::max(x, other.x);
        auto const top = std::max(y, other.y);
        return { left, top, std::min(right(), other.right()) - left,
            std::min(bottom(), other.bottom()) - top };
    }
    bool operator==(PixelRect const&) const = default;
};

/// A point in points (device-independent pixels), y downwards.
struct Point {
    double x = 0;
    double y = 0;
    bool operator==(Point const&) const = default;
};

/// A rectangle in points, y downwards.
struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    double right() const { return x + width; }
    double bottom() const { return y + height; }
    bool contains(Point point) const
    {
        return point.x >= x && point.x < right() && point.y >= y && point.y < bottom();
    }
    bool operator==(Rect const&) const = default;
};

} // namespace pixelhain
