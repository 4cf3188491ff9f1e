#pragma once
#include <QDBusContext>
#include <QObject>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>
#include <functional>
#include <memory>

namespace pixelhain {

struct OpenRequest;

/// The program as others on the session bus see it: they may ask it to come to the front, to open a
/// file and to do what the desktop offers. Anybody there may call, so nothing that comes is taken
/// on trust. Main thread.
class ApplicationService final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    static QString name() { return QStringLiteral("de.pixelhain.Pixelhain"); }
    static QString path() { return QStringLiteral("/de/pixelhain/Pixelhain"); }
    static QString interface() { return QStringLiteral("org.freedesktop.Application"); }

    ApplicationService();
    ~ApplicationService() override;

    /// Whether the request is taken. Who hears that it is not goes on without this program.
    using Asked = std::function<bool(OpenRequest const&)>;

    /// From now on `asked` is called for each request. One that came before, the last of them, is
    /// passed on at once.
    void serve(Asked asked);

public slots:
    void Activate(QVariantMap const& platformData);

    /// Only the first file counts. Something else than a file of this computer is an error, and
    /// none at all asks for nothing.
    void Open(QStringList const& uris, QVariantMap const& platformData);

    /// A `ServiceAction` by its name. None of them takes a parameter, and others there are not.
    void ActivateAction(
        QString const& action, QVariantList const& parameter, QVariantMap const& platformData);

private:
    void ask(OpenRequest const& request);

    Asked asked_;
    std::unique_ptr<OpenRequest const> waiting_;
};

} // namespace pixelhain
