#pragma once
#include "ports/FolderEvents.h"
#include "posix/FolderStream.h"
#include <memory>
#include <thread>
#include <vector>

namespace pixelhain {

class MainLoop;

/// Folder changes as the kernel tells them, one watch for each folder and none for files. Each
/// stream runs on a thread of its own and adds its watches there, the upper folders first. At the
/// system's limit it keeps the watches that it has. Main thread only but for `areReported`.
class InotifyFolderEvents final : public FolderEvents {
public:
    explicit InotifyFolderEvents(MainLoop& loop, FolderStreamOptions options = {});

    /// Waits for the threads of all streams.
    ~InotifyFolderEvents() override;
    InotifyFolderEvents(InotifyFolderEvents const&) = delete;
    InotifyFolderEvents& operator=(InotifyFolderEvents const&) = delete;

    [[nodiscard]] Task watch(FileUrl const& root, std::function<void()> folderChanged) override;
    [[nodiscard]] bool areReported(FileUrl const& folder) const override;

private:
    struct Running;

    void joinEnded();

    MainLoop& loop_;
    FolderStreamOptions const options_;
    std::vector<std::shared_ptr<Running>> running_;
};

} // namespace pixelhain
