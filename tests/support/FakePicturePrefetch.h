#pragma once
#include "ports/PicturePrefetch.h"
#include <string>
#include <vector>

namespace pixelhain {

/// Remembers which pictures were wanted.
class FakePicturePrefetch final : public PicturePrefetch {
public:
    FakePicturePrefetch();
    ~FakePicturePrefetch() override;

    struct Request {
        FileUrl shown;
        std::vector<FileUrl> next;
        bool operator==(Request const&) const = default;
    };

    void prefetchDisplay(FileUrl const& shown, std::vector<FileUrl> const& next) override;

    /// The names of what the last request wanted next.
    std::vector<std::string> next() const;

    std::vector<Request> requests;
};

} // namespace pixelhain
