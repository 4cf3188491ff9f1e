#pragma once

namespace pixelhain {

/// Where the system lets the program have no thread, or no memory, that it cannot do without, it
/// says so on stderr and ends with 1 from now on, instead of leaving a crash or a window that
/// stands still behind. The toolkit's own threads count among these: it reports that one could not
/// be started and then waits for it.
void sayWhyWhenOutOfResources();

} // namespace pixelhain
