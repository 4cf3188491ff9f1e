#include "qt/ports/QtScreenAwake.h"
#include "qt/Wait.h"
#include "qt/ports/BusService.h"
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QSet>
#include <QVariantMap>
#include <doctest/doctest.h>
#include <memory>
#include <optional>

using namespace pixelhain;

namespace {

class FakeScreenSaver final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.ScreenSaver")

public:
    QStringList asked; ///< who, and why
    QSet<uint> inhibitors;
    bool refuses = false;
    bool holdsBack = false;
    std::optional<QDBusMessage> heldBack;

    void answerLate()
    {
        inhibitors += 99;
        bus_->send(heldBack->createReply(99U));
    }

public slots:
    uint Inhibit(QString const& application, QString const& reason)
    {
        asked += application + QStringLiteral(": ") + reason;
        if (refuses) {
            sendErrorReply(QDBusError::AccessDenied);
            return 0;
        }
        if (holdsBack) {
            setDelayedReply(true);
            heldBack = message();
            bus_ = connection();
            return 0;
        }
        inhibitors += ++cookie_;
        return cookie_;
    }
    void UnInhibit(uint cookie) { inhibitors -= cookie; }

private:
    uint cookie_ = 6;
    std::optional<QDBusConnection> bus_;
    BusService service_ { QStringLiteral("org.freedesktop.ScreenSaver"),
        QStringLiteral("/org/freedesktop/ScreenSaver"), *this };
};

class FakeRequest final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Request")

public:
    int closed = 0;

public slots:
    void Close() { ++closed; }
};

class FakeInhibitPortal final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Inhibit")

public:
    QList<uint> flags; ///< of each call
    QStringList reasons;
    FakeRequest request;

public slots:
    QDBusObjectPath Inhibit(QString const&, uint what, QVariantMap const& options)
    {
        flags += what;
        reasons += options.value(QStringLiteral("reason")).toString();
        return QDBusObjectPath(QStringLiteral("/org/freedesktop/portal/desktop/request/1/t"));
    }

private:
    BusService service_ { QStringLiteral("org.freedesktop.portal.Desktop"),
        QStringLiteral("/org/freedesktop/portal/desktop"), *this };
    bool hasRequest_
        = service_.add(QStringLiteral("/org/freedesktop/portal/desktop/request/1/t"), request);
};

} // namespace

TEST_CASE("without a bus, or without any service, nothing keeps the screen awake and nobody waits")
{
    QtScreenAwake awake;
    auto task = awake.keepAwake("Diashow");
    QTest::qWait(1);
    task.cancel();
}

TEST_CASE("the screen saver is held off until the task is dropped")
{
    if (!hasTestBus())
        return;
    FakeScreenSaver saver;
    QtScreenAwake awake;
    auto task = awake.keepAwake("Diashow läuft");
    REQUIRE(eventually([&] { return saver.inhibitors == QSet<uint> { 7 }; }));
    CHECK(saver.asked == QStringList { QStringLiteral("Pixelhain: Diashow läuft") });
    task.cancel();
    CHECK(eventually([&] { return saver.inhibitors.isEmpty(); }));
}

TEST_CASE("two that hold off the screen saver do not end each other's request")
{
    if (!hasTestBus())
        return;
    FakeScreenSaver saver;
    QtScreenAwake awake;
    auto first = awake.keepAwake("1");
    auto const second = awake.keepAwake("2");
    REQUIRE(eventually([&] { return saver.inhibitors.size() == 2; }));
    first.cancel();
    REQUIRE(eventually([&] { return saver.inhibitors.size() == 1; }));
    CHECK(saver.inhibitors == QSet<uint> { 8 });
}

TEST_CASE("a request that is dropped before it is answered is taken back when it is")
{
    if (!hasTestBus())
        return;
    FakeScreenSaver saver;
    saver.holdsBack = true;
    QtScreenAwake awake;
    auto task = awake.keepAwake("Diashow");
    REQUIRE(eventually([&] { return saver.heldBack.has_value(); }));
    task.cancel();
    saver.answerLate();
    CHECK(saver.inhibitors == QSet<uint> { 99 });
    CHECK(eventually([&] { return saver.inhibitors.isEmpty(); }));
}

TEST_CASE("the portal is asked to stay from idling where no screen saver answers")
{
    if (!hasTestBus())
        return;
    FakeInhibitPortal portal;
    QtScreenAwake awake;
    auto task = awake.keepAwake("Diashow");
    REQUIRE(eventually([&] { return !portal.flags.isEmpty(); }));
    CHECK(portal.flags == QList<uint> { 8 });
    CHECK(portal.reasons == QStringList { QStringLiteral("Diashow") });
    CHECK(portal.request.closed == 0);
    task.cancel();
    REQUIRE(eventually([&] { return portal.request.closed > 0; }));
    CHECK(portal.request.closed == 1);
}

TEST_CASE("the portal is asked where the screen saver refuses, and only there")
{
    if (!hasTestBus())
        return;
    FakeScreenSaver saver;
    FakeInhibitPortal portal;
    QtScreenAwake awake;
    auto task = awake.keepAwake("Diashow");
    REQUIRE(eventually([&] { return !saver.inhibitors.isEmpty(); }));
    task.cancel();
    REQUIRE(eventually([&] { return saver.inhibitors.isEmpty(); }));
    CHECK(portal.flags.isEmpty());
    saver.refuses = true;
    auto const second = awake.keepAwake("Diashow");
    CHECK(eventually([&] { return portal.flags.size() == 1; }));
}

TEST_CASE("a task may outlive what it was asked of")
{
    auto awake = std::make_unique<QtScreenAwake>();
    auto task = awake->keepAwake("Diashow");
    awake.reset();
    task.cancel();
}

#include "QtScreenAwakeTest.moc"
