#pragma once
#include <QDBusConnection>
#include <QObject>
#include <QString>

namespace pixelhain {

/// Whether the tests have a bus of their own: the desktop's is not to be taken over.
inline bool hasTestBus()
{
    return !qEnvironmentVariableIsEmpty("PIXELHAIN_TEST_BUS");
}

/// Puts an object's slots, signals and properties on the bus under a name, with a connection of its
/// own, as long as this lives.
class BusService {
public:
    BusService(QString const& name, QString const& path, QObject& object)
        : connection_(QStringLiteral("%1 %2").arg(name).arg(++count))
    {
        auto bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, connection_);
        isRunning_ = bus.registerObject(path, &object, QDBusConnection::ExportAllContents)
            && bus.registerService(name);
    }
    BusService(BusService const&) = delete;
    BusService& operator=(BusService const&) = delete;
    ~BusService() { QDBusConnection::disconnectFromBus(connection_); }

    bool isRunning() const { return isRunning_; }

    /// One more object under the same name.
    bool add(QString const& path, QObject& object) const
    {
        return QDBusConnection(connection_)
            .registerObject(path, &object, QDBusConnection::ExportAllContents);
    }

private:
    static inline int count = 0;

    QString connection_;
    bool isRunning_ = false;
};

} // namespace pixelhain
