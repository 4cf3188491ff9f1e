#include "qt/ports/QtWorkspace.h"
#include "posix/Descriptor.h"
#include "qt/ports/FileUrlText.h"
#include "qt/ports/SessionBus.h"
#include "qt/ports/UserTime.h"
#include <QDBusUnixFileDescriptor>
#include <QVariantMap>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace pixelhain {

namespace {

// Without a right to read: whoever gets it opens the file with rights of their own.
std::shared_ptr<Descriptor> handleOf(FileUrl const& file)
{
    return std::make_shared<Descriptor>(::open(file.cString(), O_PATH | O_CLOEXEC));
}

QDBusMessage openUriCall(QString const& method, Descriptor const& handle)
{
    auto call = portalCall(QStringLiteral("org.freedesktop.portal.OpenURI"), method);
    call << portalParentWindow() << QVariant::fromValue(QDBusUnixFileDescriptor(handle.get()))
         << QVariantMap();
    return call;
}

// In a sandbox other programs can only be reached by the portal.
bool isSandboxed()
{
    return ::access("/.flatpak-info", F_OK) == 0 || std::getenv("SNAP") != nullptr;
}

} // namespace

QtWorkspace::QtWorkspace(MainLoop& loop, UserTime& userTime)
    : loop_(loop)
    , userTime_(userTime)
{
}

void QtWorkspace::reveal(std::span<FileUrl const> files)
{
    if (files.empty())
        return;
    QStringList uris;
    for (auto const& file : files)
        uris += shownText(uriOf(file));
    auto call = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.FileManager1"),
        QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    call << uris << shownText(userTime_.newStartupId());
    callSessionBus(this, call, [this, first = files.front()](QDBusMessage const& answer) {
        if (isRefused(answer))
            openFolderOf(first);
    });
}

// Marks the file in its folder if the portal can, and shows the folder in any case.
void QtWorkspace::openFolderOf(FileUrl const& file)
{
    queue_.add([this, alive = std::weak_ptr(alive_), file] {
        auto const handle = handleOf(file);
        loop_.post([this, alive, handle, file] {
            if (alive.expired())
                return;
            auto const folder = file.parent();
            if (!*handle) {
                startOpener(folder);
                return;
            }
            auto const call = openUriCall(QStringLiteral("OpenDirectory"), *handle);
            callSessionBus(this, call, [this, folder](QDBusMessage const& answer) {
                if (isRefused(answer))
                    startOpener(folder);
            });
        });
    });
}

void QtWorkspace::open(FileUrl const& file)
{
    queue_.add(
        [this, alive = std::weak_ptr(alive_), file, variables = userTime_.newStartVariables()] {
            if (isSandboxed() || !programs_.start({ "xdg-open", uriOf(file) }, variables)) {
                auto const handle = handleOf(file);
                loop_.post([this, alive, handle, file] {
                    if (alive.expired() || !*handle)
                        return;
                    callSessionBus(this, openUriCall(QStringLiteral("OpenFile"), *handle),
                        [this, file](QDBusMessage const& answer) {
                            if (isRefused(answer))
                                startOpener(file);
                        });
                });
            }
        });
}

void QtWorkspace::startOpener(FileUrl const& file)
{
    queue_.add([this, file, variables = userTime_.newStartVariables()] {
        (void)programs_.start({ "xdg-open", uriOf(file) }, variables);
    });
}

} // namespace pixelhain
