#pragma once
#include "base/FileUrl.h"
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unistd.h>

namespace pixelhain {

/// Where to make files that need no disk: thousands of them take no time in memory.
inline std::filesystem::path inMemory()
{
    std::filesystem::path const memory("/dev/shm");
    return ::access(memory.c_str(), W_OK | X_OK) == 0 ? memory
                                                      : std::filesystem::temp_directory_path();
}

/// An empty folder on the disk that goes away with everything in it.
class TemporaryFolder {
public:
    explicit TemporaryFolder(
        std::filesystem::path const& in = std::filesystem::temp_directory_path())
    {
        auto pattern = (in / "pixelhain-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr)
            throw std::runtime_error("no temporary folder");
        url_ = FileUrl(pattern);
    }
    TemporaryFolder(TemporaryFolder const&) = delete;
    TemporaryFolder& operator=(TemporaryFolder const&) = delete;
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(std::filesystem::path(url_.path()), ignored);
    }

    FileUrl const& url() const { return url_; }

    /// A file in the folder with these bytes.
    FileUrl file(std::string_view name, std::string_view bytes = {}) const
    {
        auto const url = url_.child(name);
        std::ofstream out(url.cString(), std::ios::binary);
        out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        if (!out.flush())
            throw std::runtime_error("cannot write a temporary file");
        return url;
    }

private:
    FileUrl url_;
};

} // namespace pixelhain
