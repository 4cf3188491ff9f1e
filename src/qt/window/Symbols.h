#pragma once
#include <QColor>
#include <QImage>
#include <string_view>

namespace pixelhain {

/// The line drawing called `name`, `edge` device pixels wide and high, in one colour. Drawn anew at
/// every size, so it is sharp on every screen; kept for the next time. Null for an unknown name.
/// Main thread only.
[[nodiscard]] QImage symbolImage(std::string_view name, int edge, QColor const& color);

} // namespace pixelhain
