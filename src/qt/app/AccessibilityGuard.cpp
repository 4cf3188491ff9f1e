#include "qt/app/AccessibilityGuard.h"
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QVariantMap>

namespace pixelhain {

namespace {

// The toolkit's names for its connection and for the place of all accessible objects.
QString const connectionName = QStringLiteral("a11y");
QString const place = QStringLiteral("/org/a11y/atspi/accessible");

// Stands before the toolkit's own object.
class Guard final : public QDBusVirtualObject {
public:
    explicit Guard(QDBusVirtualObject& guarded)
        : guarded_(guarded)
    {
        setParent(&guarded);
    }

    QString introspect(QString const& path) const override { return guarded_.introspect(path); }

    bool handleMessage(QDBusMessage const& message, QDBusConnection const& connection) override
    {
        if (!isTooShort(message))
            return guarded_.handleMessage(message, connection);
        if (message.member() == QStringLiteral("GetAll"))
            return connection.send(message.createReply(QVariantMap()));
        return connection.send(message.createErrorReply(QDBusError::InvalidArgs, QString()));
    }

private:
    static bool isTooShort(QDBusMessage const& message)
    {
        qsizetype const needed = message.member() == QStringLiteral("Set") ? 3 : 2;
        return message.interface() == QStringLiteral("org.freedesktop.DBus.Properties")
            && message.arguments().size() < needed;
    }

    QDBusVirtualObject& guarded_;
};

void standGuard()
{
    QDBusConnection bus(connectionName);
    auto* const guarded = dynamic_cast<QDBusVirtualObject*>(bus.objectRegisteredAt(place));
    if (!guarded || dynamic_cast<Guard*>(guarded))
        return;
    bus.unregisterObject(place);
    bus.registerVirtualObject(place, new Guard(*guarded), QDBusConnection::SubPath);
}

} // namespace

AccessibilityGuard::AccessibilityGuard()
{
    QAccessible::installActivationObserver(this);
    accessibilityActiveChanged(QAccessible::isActive());
}

AccessibilityGuard::~AccessibilityGuard()
{
    QAccessible::removeActivationObserver(this);
}

// The toolkit puts its object there right after it has told of this.
void AccessibilityGuard::accessibilityActiveChanged(bool active)
{
    if (active)
        QMetaObject::invokeMethod(qApp, standGuard, Qt::QueuedConnection);
}

} // namespace pixelhain
