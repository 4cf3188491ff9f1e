#pragma once
#include "ports/MainLoop.h"
#include "ports/Sharing.h"
#include "posix/DetachedPrograms.h"
#include "posix/ThreadQueue.h"
#include <QObject>
#include <map>
#include <memory>
#include <optional>

class QDBusMessage;

namespace pixelhain {

class UserTime;

/// Sharing by e-mail, by Bluetooth, and with the devices that KDE Connect reaches.
class QtSharing final : public QObject, public Sharing {
public:
    /// More attachments than this are handed to the mail program by name, not by descriptor: the
    /// process may hold only so many files open.
    static constexpr std::size_t mostDescriptors = 100;

    QtSharing(MainLoop& loop, UserTime& userTime);

    [[nodiscard]] std::vector<ShareService> services() const override;
    void refresh() override;
    void share(std::string_view id, std::span<FileUrl const> files) override;

private:
    using Files = std::vector<FileUrl>;

    struct Installed {
        bool mailProgram = false;
        std::optional<std::string> bluetoothProgram;
    };

    static Installed lookForPrograms();
    void lookForMailPortal();
    void lookForDevices();
    void composeByPortal(Files const& files);
    void startProgram(std::string const& program, Files const& files, char const* option = nullptr);
    void sendToDevice(std::string const& device, Files const& files);

    MainLoop& loop_;
    UserTime& userTime_;
    Installed installed_;
    bool hasMailPortal_ = false;
    std::map<std::string, std::string> devices_; ///< names of KDE Connect's devices by their ids
    DetachedPrograms programs_;
    std::shared_ptr<char> alive_ = std::make_shared<char>();
    ThreadQueue queue_ { 1 };
};

} // namespace pixelhain
