#pragma once
#include <QDBusMessage>
#include <QObject>
#include <QPointer>
#include <functional>
#include <utility>

namespace pixelhain {

/// Hears a signal of the bus and passes it on as long as `context` lives. Itself it lives as long
/// as the process: the thread that connects it may hang so long. Main thread.
class BusListener final : public QObject {
    Q_OBJECT

public:
    BusListener(QObject* context, std::function<void(QDBusMessage const&)> heard)
        : context_(context)
        , heard_(std::move(heard))
    {
    }

public slots:
    void take(QDBusMessage const& message)
    {
        if (context_)
            heard_(message);
    }

private:
    QPointer<QObject> context_;
    std::function<void(QDBusMessage const&)> heard_;
};

} // namespace pixelhain
