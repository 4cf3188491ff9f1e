#include "support/FakeImageTypes.h"

namespace pixelhain {

FakeImageTypes::FakeImageTypes() = default;
FakeImageTypes::~FakeImageTypes() = default;

bool FakeImageTypes::isImageExtension(std::string_view extension) const
{
    static std::set<std::string_view> const known { "jpg", "jpeg", "png", "gif", "webp", "tiff",
        "bmp", "svg", "psd" };
    return known.contains(extension);
}

} // namespace pixelhain
