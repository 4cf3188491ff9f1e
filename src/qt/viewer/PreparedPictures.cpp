#include "qt/viewer/PreparedPictures.h"
#include "viewer/PictureGeometry.h"
#include <algorithm>

namespace pixelhain {

std::shared_ptr<MipLevels const> levelsFor(Bitmap const& picture, PixelSize area)
{
    auto const fitted = fittedInto(area, picture.size);
    // A level of less than the fitted size is never drawn.
    auto const smallest = std::max(1, 2 * std::min(fitted.width, fitted.height) - 1);
    return std::make_shared<MipLevels const>(picture, smallest);
}

void PreparedPictures::setArea(PixelSize area)
{
    std::scoped_lock const guard(lock_);
    area_ = area;
}

PixelSize PreparedPictures::area() const
{
    std::scoped_lock const guard(lock_);
    return area_;
}

void PreparedPictures::prepare(ImageRef const& image)
{
    auto const area = this->area();
    if (!image || image->image.isEmpty() || area.width <= 0 || area.height <= 0)
        return;
    auto const& picture = image->image;
    PreparedPicture prepared;
    prepared.source = image;
    prepared.levels = levelsFor(picture, area);
    prepared.drawing.whole = fittedInto(area, picture.size);
    prepared.drawing.part = { 0, 0, prepared.drawing.whole.width, prepared.drawing.whole.height };
    if (prepared.drawing.whole != picture.size)
        prepared.sharp = prepared.levels->sharp(prepared.drawing);
    // The levels hold the picture itself beyond the cache of display images.
    auto const cost = picture.cost() * 2 + prepared.sharp.cost();
    kept_.store(image.get(), std::make_shared<PreparedPicture const>(std::move(prepared)), cost);
}

std::shared_ptr<PreparedPicture const> PreparedPictures::find(ImageRef const& image) const
{
    if (!image)
        return nullptr;
    auto found = kept_.find(image.get());
    if (!found || found->source.lock() != image
        || found->drawing.whole != fittedInto(area(), image->image.size))
        return nullptr;
    return found;
}

} // namespace pixelhain
