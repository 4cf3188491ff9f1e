#pragma once
#include <string_view>

namespace pixelhain {

/// Which file-name extensions stand for image formats.
class ImageTypes {
public:
    virtual ~ImageTypes() = default;

    /// `extension` in lower case, without the dot. Thread-safe.
    [[nodiscard]] virtual bool isImageExtension(std::string_view extension) const = 0;
};

} // namespace pixelhain
