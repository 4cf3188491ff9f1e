#pragma once
#include <span>
#include <string_view>

namespace pixelhain {

/// One file-name extension that counts as a photo, in lower case and without a dot.
struct PhotoType {
    std::string_view extension;
    /// What the desktop's shared database says of such a file, by its name or, where it does not
    /// know the extension, by its first bytes.
    std::string_view mimeType;
};

/// The extensions of all formats that are built in, in byte order. The desktop is told of the same.
[[nodiscard]] std::span<PhotoType const> photoTypes();

} // namespace pixelhain
