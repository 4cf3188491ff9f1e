#include "model/FolderNames.h"
#include "base/FileUrl.h"
#include "base/Text.h"
#include <algorithm>
#include <array>

namespace pixelhain {

bool isPackageName(std::string_view name)
{
    // Sorted. What programs of other systems leave on drives that people carry here.
    static constexpr auto packages = std::to_array<std::string_view>({ "aplibrary", "app", "appex",
        "band", "bundle", "cocatalog", "component", "fcpbundle", "framework", "imovielibrary",
        "kext", "key", "logicx", "lrdata", "lrlibrary", "migratedaplibrary", "migratedphotolibrary",
        "mpkg", "musiclibrary", "numbers", "pages", "photolibrary", "photoslibrary", "pkg",
        "playground", "plugin", "prefpane", "qlgenerator", "rtfd", "saver", "sparsebundle",
        "theater", "tvlibrary", "wdgt", "workflow", "xcodeproj", "xpc" });
    static_assert(std::ranges::is_sorted(packages));
    return std::ranges::binary_search(packages, asciiLowercased(extensionOf(name)));
}

} // namespace pixelhain
