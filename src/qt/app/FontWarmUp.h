#pragma once

namespace pixelhain {

/// Begins to read what fonts there are, on a thread of its own: beside the start of the toolkit,
/// which would do it later, while everybody waits. Call once, before the toolkit is there.
void warmUpFonts();

} // namespace pixelhain
