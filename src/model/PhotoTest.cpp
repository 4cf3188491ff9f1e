#include "model/PhotoTest.h"
#include "base/Text.h"
#include "ports/ImageTypes.h"
#include <algorithm>
#include <array>

namespace pixelhain {

namespace {

bool isExcluded(std::string_view extension)
{
    static constexpr auto excluded
        = std::to_array<std::string_view>({ "svg", "svgz", "pdf", "ai", "eps", "psd" });
    return std::ranges::find(excluded, extension) != excluded.end();
}

} // namespace

PhotoTest::PhotoTest(ImageTypes& types)
    : types_(types)
{
}

bool PhotoTest::isImageName(std::string_view name)
{
    auto const extension = asciiLowercased(extensionOf(name));
    if (extension.empty() || isExcluded(extension))
        return false;
    // Held across the question, so that no two threads ask it at once.
    std::scoped_lock const guard(lock_);
    auto const known = answers_.find(extension);
    if (known != answers_.end())
        return known->second;
    return answers_[extension] = types_.isImageExtension(extension);
}

} // namespace pixelhain
