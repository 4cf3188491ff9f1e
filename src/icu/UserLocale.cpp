#include "icu/UserLocale.h"
#include <string_view>

namespace pixelhain {

std::string userLocale(
    char const* category, std::function<char const*(char const*)> const& variable)
{
    for (char const* const name : { "LC_ALL", category, "LANG" }) {
        char const* const value = variable(name);
        if (value == nullptr || *value == '\0')
            continue;
        std::string_view const all = value;
        std::string locale(all.substr(0, all.find_first_of(".@")));
        return locale == "C" || locale == "POSIX" || locale.empty() ? "de_DE" : locale;
    }
    return "de_DE";
}

} // namespace pixelhain
