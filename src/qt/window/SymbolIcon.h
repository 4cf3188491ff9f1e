#pragma once
#include "window/ThumbnailCell.h"
#include <QIcon>
#include <string_view>

namespace pixelhain {

/// A symbol for controls that take icons: sharp at every scale, and in the colour that `role`
/// stands for when it is painted, so it follows a change of the desktop's colours.
[[nodiscard]] QIcon symbolIcon(std::string_view name, ColorRole role = ColorRole::secondary);

} // namespace pixelhain
