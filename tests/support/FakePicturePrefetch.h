#pragma once
#include "ports/PicturePrefetch.h"
#include <string>
#include <vector>

namespace pixelhain {

/// Remembers which pictures were wanted.
class FakePicturePrefetch final : public PicturePrefetch {
public:
    struct Request {
        FileUrl shown;
        std::vector<FileUrl> next;
        bool operator==(Request const&) const = default;
    };

    void prefetchDisplay(FileUrl const& shown, std::vector<FileUrl> const& next) override
    {
        requests.push_back({ shown, next });
    }

    /// The names of what the last request wanted next.
    std::vector<std::string> next() const
    {
        std::vector<std::string> names;
        if (!requests.empty())
            for (auto const& url : requests.back().next)
                names.emplace_back(url.name());
        return names;
    }

    std::vector<Request> requests;
};

} // namespace pixelhain
