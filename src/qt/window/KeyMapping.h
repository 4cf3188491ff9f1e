#pragma once
#include "model/KeyEvent.h"

class QKeyEvent;

namespace pixelhain {

/// The toolkit's key event as the model takes it, without what the event does not know: the window
/// and the focus.
///
/// Keys that the model knows by their place are told by what they are in the user's keyboard
/// settings (Escape on the Caps Lock key, arrows on a layer of Neo, the keypad without Num Lock),
/// and by their place where they type something unusual there (a no-break space). Letters and signs
/// are those that the layout types, whatever is printed on the keys.
[[nodiscard]] KeyEvent mappedKey(QKeyEvent const& event);

} // namespace pixelhain
