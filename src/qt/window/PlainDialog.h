#pragma once
#include <Qt>

namespace pixelhain {

/// A dialog of a fixed size that belongs to a window: it can be closed, but neither made an icon of
/// nor made to fill the screen.
inline constexpr Qt::WindowFlags plainDialogFlags = Qt::Dialog | Qt::CustomizeWindowHint
    | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint;

} // namespace pixelhain
