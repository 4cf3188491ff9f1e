#pragma once
#include "base/Timestamp.h"
#include <cstdint>
#include <string>

namespace pixelhain {

/// Numbers and dates as the user's language and country write them, in UTF-8. All spaces are plain
/// ones. Thread-safe.
class TextFormats {
public:
    virtual ~TextFormats() = default;

    /// The size of a file as file managers show it: "512 Byte", "5,2 MB". A thousand of one unit
    /// are one of the next; kilobytes are whole, megabytes have at most one decimal, everything
    /// above has at most two.
    [[nodiscard]] virtual std::string byteCount(std::int64_t bytes) const = 0;

    /// "17.05.2023"
    [[nodiscard]] virtual std::string date(Timestamp moment) const = 0;

    /// "17.05.2023, 14:30"
    [[nodiscard]] virtual std::string dateAndTime(Timestamp moment) const = 0;
};

} // namespace pixelhain
