#include "viewer/PictureGeometry.h"
#include <algorithm>
#include <cmath>

namespace pixelhain {

namespace {

bool isEmpty(PixelSize size)
{
    return size.width <= 0 || size.height <= 0;
}

double fitScale(PixelSize area, PixelSize picture)
{
    return std::min(double(area.width) / picture.width, double(area.height) / picture.height);
}

int rounded(double exact)
{
    constexpr double most = 1 << 30;
    return static_cast<int>(std::lround(std::clamp(exact, -most, most)));
}

int enlarged(int side, double scale)
{
    return std::max(1, rounded(side * scale));
}

// Halves rounded down whatever the sign.
int middle(int room)
{
    return room >= 0 ? room / 2 : -((1 - room) / 2);
}

} // namespace

PixelSize fittedInto(PixelSize area, PixelSize picture)
{
    if (isEmpty(area) || isEmpty(picture))
        return {};
    auto const scale = fitScale(area, picture);
    return { enlarged(picture.width, scale), enlarged(picture.height, scale) };
}

PixelRect picturePlace(PictureArea const& area, PixelSize picture, Zoom const& zoom)
{
    if (isEmpty(area.pixels) || isEmpty(picture))
        return {};
    auto const scale = fitScale(area.pixels, picture) * zoom.scale;
    PixelRect place { 0, 0, enlarged(picture.width, scale), enlarged(picture.height, scale) };
    place.x = middle(area.pixels.width - place.width) + rounded(zoom.offset.x * area.displayScale);
    place.y
        = middle(area.pixels.height - place.height) + rounded(zoom.offset.y * area.displayScale);
    return place;
}

double pixelScale(PictureArea const& area, PixelSize picture)
{
    return isEmpty(area.pixels) || isEmpty(picture) ? 1 : 1 / fitScale(area.pixels, picture);
}

PixelSize measuredSize(PixelSize shown, std::optional<PixelSize> const& photo, double scale)
{
    if (!photo || isEmpty(*photo) || isEmpty(shown) || scale == 1)
        return shown;
    auto const exact = double(photo->height) * shown.width / photo->width;
    auto const exactTurned = double(photo->width) * shown.height / photo->height;
    bool const isSame
        = std::abs(exact - shown.height) <= 1 || std::abs(exactTurned - shown.width) <= 1;
    return isSame ? *photo : shown;
}

} // namespace pixelhain
