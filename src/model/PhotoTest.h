#pragma once
#include "base/FileUrl.h"
#include <map>
#include <mutex>
#include <string>
#include <string_view>

namespace pixelhain {

class ImageTypes;

/// Decides by its extension whether a file is a photo. Vector drawings, page documents and layered
/// editor files are none, whatever the codecs could do with them. Thread-safe.
class PhotoTest {
public:
    explicit PhotoTest(ImageTypes& types);

    bool isImage(FileUrl const& url) { return isImageName(url.name()); }
    bool isImageName(std::string_view name);

private:
    ImageTypes& types_;
    std::mutex lock_;
    std::map<std::string, bool, std::less<>> answers_;
};

} // namespace pixelhain
