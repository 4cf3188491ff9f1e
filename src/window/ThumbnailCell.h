#pragma once
#include "base/Geometry.h"
#include "base/Tint.h"
#include "images/ImageLoader.h"
#include "model/PhotoItem.h"
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace pixelhain {

/// One photo of the gallery: what it is, and what to draw for it. Lengths are points, positions
/// count from the top left of the square picture area.
struct ThumbnailCell {
    static constexpr double cornerRadius = 6;
    static constexpr double imageInset = 5;
    static constexpr double cornerInset = 7; ///< of the badge and the selection circle
    static constexpr double badgeFontSize = 9; ///< bold, white
    static constexpr double badgePaddingX = 5;
    static constexpr double badgePaddingY = 2;
    static constexpr double badgeCornerRadius = 4;
    static constexpr Tint badgeFill { ColorRole::black, 0.55 };
    static constexpr Tint badgeText { ColorRole::white };
    static constexpr std::string_view badgeTip = "Animiert";
    static constexpr double circleDiameter = 22;
    static constexpr Stroke circleOutline { { ColorRole::white }, 1.5 };
    static constexpr std::string_view circleSymbol = "checkmark"; ///< white, while selected
    static constexpr double circleSymbolSize = 11; ///< bold
    static constexpr std::string_view failedSymbol = "exclamationmark.triangle";
    static constexpr Tint failedTint { ColorRole::secondary };
    static constexpr Tint resolutionTint { ColorRole::tertiary };

    PhotoItem item;
    double size = 0; ///< edge of the square picture area
    int pixel = 0; ///< edge in device pixels that the thumbnail was asked for
    bool isSelected = false;
    bool isCursor = false;
    bool selectionActive = false; ///< any photo is marked
    bool showName = true;
    bool showResolution = true;
    std::function<void()> onToggle;
    ImageRef image;
    ImageRef embedded; ///< drawn softly in the place of `image` until that is there; may be null
    std::optional<ImageMeta> meta;
    bool failed = false;
    bool hovering = false;

    Tint background() const;
    Stroke frame() const;

    /// What is drawn, and how many pixels what is drawn in the end has, as far as that is known:
    /// the place of both is that of the latter.
    ImageRef const& drawn() const { return image ? image : embedded; }
    PixelSize drawnShape() const;

    /// Where the picture goes, its proportions kept; nothing without a picture.
    std::optional<Rect> imageRect() const;
    bool showsFailure() const { return !image && failed; }

    bool showsBadge() const { return meta && meta->isAnimated; }
    std::string badgeLabel() const;

    bool showsCircle() const { return isSelected || hovering || selectionActive; }
    Rect circleRect() const { return { cornerInset, cornerInset, circleDiameter, circleDiameter }; }
    Tint circleFill() const;
    std::string_view circleTip() const;

    std::string nameText() const;
    Tint nameTint() const;

    /// "6000 × 4000"; a single blank while the size is unknown, so that the line keeps its height.
    std::string resolutionText() const;
};

} // namespace pixelhain
