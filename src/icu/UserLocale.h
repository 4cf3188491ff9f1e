#pragma once
#include <functional>
#include <string>

namespace pixelhain {

/// The language and country that the environment asks for in `category` ("LC_TIME"), as
/// the variables LC_ALL, `category` and LANG say it; German where they ask for none. `variable`
/// yields a variable's value or null, as getenv does.
std::string userLocale(
    char const* category, std::function<char const*(char const*)> const& variable);

} // namespace pixelhain
