#include "support/FakePicturePrefetch.h"

namespace pixelhain {

FakePicturePrefetch::FakePicturePrefetch() = default;
FakePicturePrefetch::~FakePicturePrefetch() = default;

void FakePicturePrefetch::prefetchDisplay(FileUrl const& shown, std::vector<FileUrl> const& next)
{
    requests.push_back({ shown, next });
}

std::vector<std::string> FakePicturePrefetch::next() const
{
    std::vector<std::string> names;
    if (!requests.empty())
        for (auto const& url : requests.back().next)
            names.emplace_back(url.name());
    return names;
}

} // namespace pixelhain
