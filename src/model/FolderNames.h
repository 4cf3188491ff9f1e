#pragma once
#include <string_view>

namespace pixelhain {

/// Whether a name is hidden: it begins with a dot.
constexpr bool isHiddenName(std::string_view name)
{
    return name.starts_with('.');
}

/// Whether a folder of this name is a package: one document or program that happens to be made of
/// files, such as a photo library. Its contents are nobody's photos. Told by the extension alone,
/// letter case ignored.
bool isPackageName(std::string_view name);

} // namespace pixelhain
