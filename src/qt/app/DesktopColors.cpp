#include "qt/app/DesktopColors.h"
#include "qt/ports/SessionBus.h"
#include "qt/window/EdgeStyle.h"
#include <QApplication>
#include <QDBusMessage>
#include <QDBusVariant>
#include <utility>

namespace pixelhain {

namespace {

QString const path = QStringLiteral("/org/freedesktop/portal/desktop");
QString const interface = QStringLiteral("org.freedesktop.portal.Settings");
QString const appearance = QStringLiteral("org.freedesktop.appearance");
QString const colorScheme = QStringLiteral("color-scheme");
constexpr uint prefersDark = 1;

// The portal wraps the value once or twice, depending on its version.
uint unwrapped(QVariant value)
{
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value.toUInt();
}

} // namespace

QPalette darkPalette()
{
    QColor const window(0x2b, 0x2b, 0x2e);
    QColor const base(0x1e, 0x1e, 0x20);
    QColor const text(0xec, 0xec, 0xee);
    QColor const faint(0x8a, 0x8a, 0x90);
    QColor const accent(0x3d, 0x8b, 0xe8);
    QPalette palette(text, QColor(0x3a, 0x3a, 0x3e), QColor(0x5a, 0x5a, 0x60),
        QColor(0x18, 0x18, 0x1a), QColor(0x30, 0x30, 0x34), text, Qt::white, base, window);
    palette.setColor(QPalette::AlternateBase, QColor(0x25, 0x25, 0x28));
    palette.setColor(QPalette::ToolTipBase, QColor(0x3a, 0x3a, 0x3e));
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, faint);
    palette.setColor(QPalette::Highlight, accent);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(0x6c, 0xae, 0xf5));
    palette.setColor(QPalette::LinkVisited, QColor(0xb4, 0x9a, 0xe8));
    for (auto const role : { QPalette::WindowText, QPalette::Text, QPalette::ButtonText })
        palette.setColor(QPalette::Disabled, role, faint);
    return palette;
}

DesktopColors::DesktopColors()
{
    EdgeStyle::use();
    light_ = QApplication::palette();
    auto const ground = light_.color(QPalette::Window).lightness();
    bool const followsByItself
        = QT_VERSION >= QT_VERSION_CHECK(6, 5, 0) || ground < 128 || !hasSessionBus();
    if (followsByItself)
        return;
    listenToSessionBus(
        this, { path, interface, QStringLiteral("SettingChanged") }, [this] { ask(); },
        [this](QDBusMessage const& message) { settingChanged(message); });
}

void DesktopColors::ask()
{
    auto call = portalCall(interface, QStringLiteral("Read"));
    call << appearance << colorScheme;
    callSessionBus(this, call, [this](QDBusMessage const& answer) {
        auto const values = answer.arguments();
        if (answer.type() == QDBusMessage::ReplyMessage && !values.isEmpty())
            use(unwrapped(values.front()));
    });
}

void DesktopColors::settingChanged(QDBusMessage const& message)
{
    auto const arguments = message.arguments();
    if (arguments.size() == 3 && arguments[0] == appearance && arguments[1] == colorScheme)
        use(unwrapped(arguments[2]));
}

void DesktopColors::use(uint scheme)
{
    bool const dark = scheme == prefersDark;
    if (std::exchange(isDark_, dark) == dark)
        return;
    QApplication::setPalette(dark ? darkPalette() : light_);
    // A menu over the dark gallery would otherwise have no visible edge.
    auto menus = QApplication::palette();
    if (dark)
        menus.setColor(QPalette::Base, QColor(0x36, 0x36, 0x3a));
    QApplication::setPalette(menus, "QMenu");
}

} // namespace pixelhain
