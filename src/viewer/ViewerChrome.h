#pragma once
#include "base/Tint.h"
#include "model/PhotoItem.h"
#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace pixelhain {

class BrowserModel;

/// The bar over the photo in the viewer and the arrows at its sides: what they show, and what they
/// do. Lengths are points.
class ViewerChrome {
public:
    static constexpr double spacing = 14;
    static constexpr double fontSize = 14;
    static constexpr double paddingX = 16;
    static constexpr double paddingY = 10;
    static constexpr double arrowPadding = 10; ///< from the edge of the viewer
    static constexpr double arrowSymbolSize = 26; ///< semibold
    static constexpr double arrowWidth = 56;
    static constexpr double arrowHeight = 120;
    static constexpr double arrowCornerRadius = 10;
    static constexpr Tint positionTint { ColorRole::secondary };
    static constexpr Tint nameTint { ColorRole::primary };

    enum class Action : std::uint8_t { close, select, info, slideshow, trash, share, fullScreen };

    /// From left to right; position, name and a flexible space follow the first one.
    static constexpr std::array order { Action::close, Action::select, Action::info,
        Action::slideshow, Action::trash, Action::share, Action::fullScreen };

    struct Button {
        std::string_view symbol;
        Tint tint;
        std::string_view tip;
        std::string_view name; ///< for who cannot see the symbol
        bool operator==(Button const&) const = default;
    };

    enum class Side : std::uint8_t { left, right };

    struct Arrow {
        std::string_view symbol;
        Tint fill;
        Tint tint;
        std::string_view name;
        bool operator==(Arrow const&) const = default;
    };

    ViewerChrome(BrowserModel& model, PhotoItem item)
        : model_(model)
        , item_(std::move(item))
    {
    }

    PhotoItem const& item() const { return item_; }

    /// "1 / 12"
    [[nodiscard]] std::string position() const;

    /// Bytes that are no text are replaced; cut in its middle where it is too long.
    [[nodiscard]] std::string name() const;

    /// "IMG_1.jpg, 1 von 12", and ", ausgewählt" of a marked photo, for who cannot see it.
    [[nodiscard]] std::string spokenName() const;
    [[nodiscard]] Button button(Action action) const;
    [[nodiscard]] Arrow arrow(Side side) const;
    /// Not where there is no other photo to go to.
    [[nodiscard]] bool showsArrows() const;

    /// Everything but sharing, which is the business of whoever has the menu.
    void perform(Action action);
    void step(Side side);

    bool hoverLeft = false; ///< the pointer is over the arrow
    bool hoverRight = false;

private:
    BrowserModel& model_;
    PhotoItem item_;
};

} // namespace pixelhain
