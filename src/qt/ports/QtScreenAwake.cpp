#include "qt/ports/QtScreenAwake.h"
#include "qt/ports/FileUrlText.h"
#include "qt/ports/SessionBus.h"
#include <QDBusObjectPath>
#include <QPointer>
#include <QVariantMap>
#include <optional>
#include <utility>

namespace pixelhain {

namespace {

QDBusMessage screenSaverCall(QString const& method)
{
    return QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.ScreenSaver"),
        QStringLiteral("/org/freedesktop/ScreenSaver"),
        QStringLiteral("org.freedesktop.ScreenSaver"), method);
}

} // namespace

// What was answered says how to take the request back. An answer may come after it was dropped.
struct QtScreenAwake::Request {
    QString reason;
    bool isDropped = false;
    std::optional<QDBusMessage> end;
};

Task QtScreenAwake::keepAwake(std::string_view reason)
{
    auto const request = std::make_shared<Request>();
    request->reason = shownText(reason);
    askScreenSaver(request);
    return Task([self = QPointer<QtScreenAwake>(this), request] {
        request->isDropped = true;
        if (self)
            self->withdraw(*request);
    });
}

void QtScreenAwake::askScreenSaver(std::shared_ptr<Request> const& request)
{
    auto call = screenSaverCall(QStringLiteral("Inhibit"));
    call << QStringLiteral("Pixelhain") << request->reason;
    callSessionBus(this, call, [this, request](QDBusMessage const& answer) {
        if (answer.signature() == QStringLiteral("u")) {
            request->end = screenSaverCall(QStringLiteral("UnInhibit"))
                << answer.arguments().first();
            withdraw(*request);
        } else if (!request->isDropped) {
            askPortal(request);
        }
    });
}

void QtScreenAwake::askPortal(std::shared_ptr<Request> const& request)
{
    constexpr uint idle = 8;
    auto call
        = portalCall(QStringLiteral("org.freedesktop.portal.Inhibit"), QStringLiteral("Inhibit"));
    call << portalParentWindow() << idle
         << QVariantMap { { QStringLiteral("reason"), request->reason } };
    callSessionBus(this, call, [this, request](QDBusMessage const& answer) {
        if (answer.signature() != QStringLiteral("o"))
            return;
        auto const handle = answer.arguments().first().value<QDBusObjectPath>();
        request->end = QDBusMessage::createMethodCall(answer.service(), handle.path(),
            QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Close"));
        withdraw(*request);
    });
}

// As soon as it is both answered and no longer wanted.
void QtScreenAwake::withdraw(Request& request)
{
    if (request.isDropped && request.end)
        callSessionBus(this, *std::exchange(request.end, std::nullopt), [](QDBusMessage const&) {});
}

} // namespace pixelhain
