#pragma once
#include "ports/ImageTypes.h"
#include <set>

namespace pixelhain {

/// A few formats, among them those that are images but never photos.
class FakeImageTypes final : public ImageTypes {
public:
    bool isImageExtension(std::string_view extension) const override
    {
        static std::set<std::string_view> const known { "jpg", "jpeg", "png", "gif", "webp", "tiff",
            "bmp", "svg", "psd" };
        return known.contains(extension);
    }
};

} // namespace pixelhain
