#pragma once
#include <cstdint>
#include <string_view>

namespace pixelhain {

enum class SortKey : std::uint8_t { name, date, size };

/// The word under which the settings keep a sort key: "name", "date" or "size".
constexpr std::string_view rawValue(SortKey key)
{
    switch (key) {
    case SortKey::date:
        return "date";
    case SortKey::size:
        return "size";
    case SortKey::name:
        break;
    }
    return "name";
}

/// The sort key of a stored word; `name` for any other word.
constexpr SortKey sortKeyFromRawValue(std::string_view word)
{
    if (word == "date")
        return SortKey::date;
    return word == "size" ? SortKey::size : SortKey::name;
}

} // namespace pixelhain
