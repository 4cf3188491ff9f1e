#pragma once
#include <QIcon>

namespace pixelhain {

/// The program's mark for windows and what tells about the program: the desktop's icon theme may
/// have its own; without one it is drawn from what is built in, at any size.
[[nodiscard]] QIcon programIcon();

/// The built-in mark, as programIcon() gives it on a desktop that has none.
[[nodiscard]] QIcon builtInProgramIcon();

} // namespace pixelhain
