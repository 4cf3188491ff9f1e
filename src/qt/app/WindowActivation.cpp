#include "qt/app/WindowActivation.h"
#include "qt/app/X11Startup.h"
#include <QGuiApplication>
#include <QWidget>
#include <charconv>

namespace pixelhain {

std::optional<std::uint32_t> timeOfStartupId(std::string_view id)
{
    constexpr std::string_view mark = "_TIME";
    auto const at = id.rfind(mark);
    if (at == id.npos)
        return std::nullopt;
    auto const digits = id.substr(at + mark.size());
    std::uint32_t time = 0;
    auto const* const end = digits.data() + digits.size();
    auto const read = std::from_chars(digits.data(), end, time);
    if (read.ec != std::errc() || read.ptr != end || time == 0)
        return std::nullopt;
    return time;
}

namespace {

// The toolkit takes the token from the environment, and from nowhere else, when a window asks for
// the keyboard. It is there for that moment only: programs that are started later shall not find
// it. A thread that reads the environment in that moment, as the ones do that start programs or
// look for the trash, may miss another variable: a short risk that the toolkit leaves no way
// around.
void activateByToken(QWidget& window, std::string const& token)
{
    constexpr auto variable = "XDG_ACTIVATION_TOKEN";
    qputenv(variable, QByteArray::fromStdString(token));
    window.activateWindow();
    qunsetenv(variable);
}

bool isOnWayland()
{
    return QGuiApplication::platformName().startsWith(QStringLiteral("wayland"));
}

} // namespace

// On X11 the toolkit has read the id when it connected, and gives it to the first window.
void showFirst(QWidget& window, OpenRequest const& request)
{
    qunsetenv("DESKTOP_STARTUP_ID");
    window.show();
    if (!request.activationToken.empty() && isOnWayland())
        activateByToken(window, request.activationToken);
}

void bringForward(QWidget& window, OpenRequest const& request)
{
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    if (!request.activationToken.empty() && isOnWayland()) {
        activateByToken(window, request.activationToken);
        return;
    }
    // Launchers of today may give only the one of the two.
    auto const& id = request.startupId.empty() ? request.activationToken : request.startupId;
    auto const time = timeOfStartupId(id);
    if (!time || !activateByStartupId(window.winId(), id, *time))
        window.activateWindow();
}

} // namespace pixelhain
