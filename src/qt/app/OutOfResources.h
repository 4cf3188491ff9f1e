#pragma once

namespace pixelhain {

/// Where the system lets the program have no thread, or no memory, that it cannot do without, it
/// says so on stderr and ends with 1 from now on, instead of leaving a crash behind.
void sayWhyWhenOutOfResources();

} // namespace pixelhain
