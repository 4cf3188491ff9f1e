#pragma once
#include "ports/MainLoop.h"
#include "ports/Workspace.h"
#include "posix/DetachedPrograms.h"
#include "posix/ThreadQueue.h"
#include <QObject>
#include <memory>

namespace pixelhain {

class UserTime;

/// Other programs as the desktop names them: the file manager by its name on the session bus,
/// applications by the desktop's opener, or both by the portal where that is the way.
class QtWorkspace final : public QObject, public Workspace {
public:
    QtWorkspace(MainLoop& loop, UserTime& userTime);

    void reveal(std::span<FileUrl const> files) override;
    void open(FileUrl const& file) override;

private:
    void openFolderOf(FileUrl const& file);
    void startOpener(FileUrl const& file);

    MainLoop& loop_;
    UserTime& userTime_;
    DetachedPrograms programs_;
    std::shared_ptr<char> alive_ = std::make_shared<char>();
    ThreadQueue queue_ { 1 }; ///< one after the other, so that files open in their order
};

} // namespace pixelhain
