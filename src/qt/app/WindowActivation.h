#pragma once
#include "qt/app/OpenRequest.h"
#include <cstdint>
#include <string_view>

class QWidget;

namespace pixelhain {

/// When, in milliseconds of the display server, the person acted who caused a start with this id
/// ("…_TIME12345"); nothing if it does not say.
[[nodiscard]] std::optional<std::uint32_t> timeOfStartupId(std::string_view id);

/// Shows the first window of this process, with the tokens of the start that it is of. They are not
/// in the environment after that: programs that are started from here are not what they are for.
void showFirst(QWidget& window, OpenRequest const& request);

/// Shows the window, if it was closed or minimized, and asks the desktop to bring it to the front
/// and give it the keyboard. Desktops let a program do so on its own only when a person asked for
/// it, which the request's tokens prove.
void bringForward(QWidget& window, OpenRequest const& request);

} // namespace pixelhain
