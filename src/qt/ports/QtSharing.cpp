#include "qt/ports/QtSharing.h"
#include "posix/Descriptor.h"
#include "qt/ports/FileUrlText.h"
#include "qt/ports/SessionBus.h"
#include "qt/ports/UserTime.h"
#include "window/ShareMenu.h"
#include <QDBusArgument>
#include <QDBusUnixFileDescriptor>
#include <QVariantMap>
#include <fcntl.h>

namespace pixelhain {

namespace {

constexpr std::string_view mail = "mail";
constexpr std::string_view bluetooth = "bluetooth";
constexpr std::string_view device = "device:";
QString const mailPortal = QStringLiteral("org.freedesktop.portal.Email");
QString const kdeConnect = QStringLiteral("org.kde.kdeconnect");
QString const kdeConnectPath = QStringLiteral("/modules/kdeconnect");

QDBusMessage kdeConnectCall(QString const& path, QString const& interface, QString const& method)
{
    auto call = QDBusMessage::createMethodCall(kdeConnect, path, interface, method);
    call.setAutoStartService(false); // a menu that opens is no reason to start it
    return call;
}

std::map<std::string, std::string> namesById(QDBusMessage const& answer)
{
    std::map<std::string, std::string> names;
    if (answer.signature() != QStringLiteral("a{ss}"))
        return names;
    auto const all = qdbus_cast<QMap<QString, QString>>(answer.arguments().value(0));
    for (auto const& [id, name] : all.asKeyValueRange())
        names.emplace(id.toStdString(), name.toStdString());
    return names;
}

QList<QDBusUnixFileDescriptor> handlesOf(std::vector<FileUrl> const& files)
{
    QList<QDBusUnixFileDescriptor> handles;
    for (auto const& file : files)
        if (Descriptor const handle(::open(file.cString(), O_PATH | O_CLOEXEC)); handle)
            handles.emplaceBack(handle.get());
    return handles;
}

} // namespace

QtSharing::QtSharing(MainLoop& loop, UserTime& userTime)
    : loop_(loop)
    , userTime_(userTime)
{
}

std::vector<ShareService> QtSharing::services() const
{
    std::vector<ShareService> all;
    if (hasMailPortal_ || installed_.mailProgram)
        all.push_back({ std::string(mail), std::string(ShareMenu::mailTitle) });
    if (installed_.bluetoothProgram)
        all.push_back({ std::string(bluetooth), std::string(ShareMenu::bluetoothTitle) });
    for (auto const& [id, name] : devices_)
        all.push_back({ std::string(device) + id, "KDE Connect: " + name });
    return all;
}

void QtSharing::refresh()
{
    queue_.add([this, alive = std::weak_ptr(alive_)] {
        loop_.post([this, alive, found = lookForPrograms()] {
            if (!alive.expired())
                installed_ = found;
        });
    });
    lookForMailPortal();
    lookForDevices();
}

QtSharing::Installed QtSharing::lookForPrograms()
{
    Installed found;
    found.mailProgram = isInstalled("xdg-email");
    for (char const* program : { "bluetooth-sendto", "blueman-sendto" })
        if (!found.bluetoothProgram && isInstalled(program))
            found.bluetoothProgram = program;
    return found;
}

void QtSharing::lookForMailPortal()
{
    auto ask = portalCall(QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    ask << mailPortal << QStringLiteral("version");
    callSessionBus(this, ask, [this](QDBusMessage const& answer) {
        hasMailPortal_ = answer.type() == QDBusMessage::ReplyMessage;
    });
}

void QtSharing::lookForDevices()
{
    auto ask = kdeConnectCall(
        kdeConnectPath, QStringLiteral("org.kde.kdeconnect.daemon"), QStringLiteral("deviceNames"));
    constexpr bool onlyReachable = true;
    constexpr bool onlyPaired = true;
    ask << onlyReachable << onlyPaired;
    callSessionBus(this, ask, [this](QDBusMessage const& answer) { devices_ = namesById(answer); });
}

void QtSharing::share(std::string_view id, std::span<FileUrl const> files)
{
    if (files.empty())
        return;
    Files const all(files.begin(), files.end());
    if (id == mail && hasMailPortal_ && all.size() <= mostDescriptors)
        composeByPortal(all);
    else if (id == mail)
        startProgram("xdg-email", all, "--attach");
    else if (id == bluetooth && installed_.bluetoothProgram)
        startProgram(*installed_.bluetoothProgram, all);
    else if (id.starts_with(device))
        sendToDevice(std::string(id.substr(device.size())), all);
}

void QtSharing::composeByPortal(Files const& files)
{
    queue_.add([this, alive = std::weak_ptr(alive_), files] {
        loop_.post([this, alive, files, handles = handlesOf(files)] {
            if (alive.expired())
                return;
            auto call = portalCall(mailPortal, QStringLiteral("ComposeEmail"));
            call << portalParentWindow()
                 << QVariantMap { { QStringLiteral("attachment_fds"),
                        QVariant::fromValue(handles) } };
            callSessionBus(this, call, [this, files](QDBusMessage const& answer) {
                if (isRefused(answer))
                    startProgram("xdg-email", files, "--attach");
            });
        });
    });
}

void QtSharing::startProgram(std::string const& program, Files const& files, char const* option)
{
    std::vector<std::string> arguments { program };
    for (auto const& file : files) {
        if (option)
            arguments.emplace_back(option);
        arguments.emplace_back(file.path());
    }
    queue_.add([this, arguments, variables = userTime_.newStartVariables()] {
        (void)programs_.start(arguments, variables);
    });
}

void QtSharing::sendToDevice(std::string const& id, Files const& files)
{
    auto const path
        = kdeConnectPath + QStringLiteral("/devices/") + shownText(id) + QStringLiteral("/share");
    for (auto const& file : files) {
        auto call = kdeConnectCall(
            path, QStringLiteral("org.kde.kdeconnect.device.share"), QStringLiteral("shareUrl"));
        call << shownText(uriOf(file));
        callSessionBus(this, call, [](QDBusMessage const&) {});
    }
}

} // namespace pixelhain
