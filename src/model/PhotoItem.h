#pragma once
#include "base/FileUrl.h"
#include "base/Timestamp.h"
#include <cstdint>
#include <string_view>

namespace pixelhain {

/// One image file. Two items are the same photo when their URLs are equal; no list holds two of
/// one URL.
struct PhotoItem {
    FileUrl url;
    /// When the content last changed; distantPast when the file system does not say, and until it
    /// was asked.
    Timestamp date = distantPast;
    /// Bytes in the file; 0 when the file system does not say, `notYetKnown` until it was asked.
    std::int64_t size = 0;

    static constexpr std::int64_t notYetKnown = -1;
    bool isKnownByName() const { return size == notYetKnown; }

    /// The last path component, extension included, as the file system has it.
    std::string_view name() const { return url.name(); }

    bool operator==(PhotoItem const&) const = default;
};

} // namespace pixelhain
