#include "window/ThumbnailCell.h"
#include "base/Text.h"
#include "images/DecodeRules.h"
#include <algorithm>

namespace pixelhain {

Tint ThumbnailCell::background() const
{
    return isSelected ? Tint { ColorRole::accent, 0.18 } : Tint { ColorRole::primary, 0.05 };
}

Stroke ThumbnailCell::frame() const
{
    if (isSelected)
        return { { ColorRole::accent }, 3 };
    return { { isCursor ? ColorRole::secondary : ColorRole::clear }, 1.5 };
}

PixelSize ThumbnailCell::drawnShape() const
{
    if (image)
        return image->image.size;
    if (meta && meta->size)
        return redrawnSize(*meta->size, pixel);
    return embedded ? embedded->image.size : PixelSize {};
}

std::optional<Rect> ThumbnailCell::imageRect() const
{
    if (!image || image->image.size.width <= 0 || image->image.size.height <= 0)
        return std::nullopt;
    double const pixelsWide = image->image.size.width;
    double const pixelsHigh = image->image.size.height;
    auto const edge = std::max(0.0, size - 2 * imageInset);
    auto const scale = std::min(edge / pixelsWide, edge / pixelsHigh);
    auto const width = pixelsWide * scale;
    auto const height = pixelsHigh * scale;
    return Rect { (size - width) / 2, (size - height) / 2, width, height };
}

std::string ThumbnailCell::badgeLabel() const
{
    auto label = displayText(item.url.extension());
    for (auto& letter : label)
        if (letter >= 'a' && letter <= 'z')
            letter = static_cast<char>(letter - 'a' + 'A');
    return label;
}

Tint ThumbnailCell::circleFill() const
{
    return isSelected ? Tint { ColorRole::accent } : Tint { ColorRole::black, 0.3 };
}

std::string_view ThumbnailCell::circleTip() const
{
    return isSelected ? "Auswahl entfernen (X)" : "Auswählen (X)";
}

std::string ThumbnailCell::nameText() const
{
    return displayText(item.name());
}

Tint ThumbnailCell::nameTint() const
{
    return { isSelected ? ColorRole::accent : ColorRole::secondary };
}

std::string ThumbnailCell::resolutionText() const
{
    if (!meta || !meta->size)
        return " ";
    return std::to_string(meta->size->width) + " × " + std::to_string(meta->size->height);
}

} // namespace pixelhain
