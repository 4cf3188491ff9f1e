#pragma once

class QKeyEvent;

namespace pixelhain {

/// Whether a key means something to a text that is being edited, whether or not the field has a use
/// for it now: nobody means a photo by it, although menus may have it too.
[[nodiscard]] bool isTextKey(QKeyEvent const& event);

} // namespace pixelhain
