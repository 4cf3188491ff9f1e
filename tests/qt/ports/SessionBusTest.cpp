#include "qt/ports/SessionBus.h"
#include "qt/Variable.h"
#include "qt/Wait.h"
#include "qt/ports/BusService.h"
#include "support/TemporaryFolder.h"
#include <QDir>
#include <QFile>
#include <doctest/doctest.h>
#include <fstream>
#include <memory>
#include <optional>
#include <vector>

using namespace pixelhain;

namespace {

QString const name = QStringLiteral("de.pixelhain.Test");
QString const path = QStringLiteral("/de/pixelhain/Test");

// Somebody on the bus who repeats what is said, and rings.
class Station final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "de.pixelhain.Test")

public:
    bool isRunning() const { return service_.isRunning(); }

public slots:
    QString Repeat(QString const& text) { return text; }

signals:
    void Rang(int times);

private:
    BusService service_ { name, path, *this };
};

QDBusMessage repeat(QString const& text)
{
    auto call = QDBusMessage::createMethodCall(name, path, name, QStringLiteral("Repeat"));
    call << text;
    return call;
}

constexpr auto address = "DBUS_SESSION_BUS_ADDRESS";
constexpr auto runtimeFolder = "XDG_RUNTIME_DIR";

} // namespace

TEST_CASE("the bus is where the environment says, or in the runtime folder")
{
    TemporaryFolder folder;
    auto const place = folder.url().child("a b,c");
    REQUIRE(QDir().mkpath(QFile::decodeName(place.cString())));
    Variable const runtime(runtimeFolder, place.cString());
    {
        Variable const given(address, "unix:path=/tmp/somewhere");
        CHECK(hasSessionBus());
        CHECK(sessionBusAddress() == QStringLiteral("unix:path=/tmp/somewhere"));
    }
    {
        Variable const given(address, "autolaunch:");
        CHECK(sessionBusAddress().isEmpty());
    }
    Variable const none(address, {});
    CHECK_FALSE(hasSessionBus());
    CHECK(sessionBusAddress().isEmpty());
    std::ofstream(place.child("bus").cString()) << "";
    CHECK(hasSessionBus());
    CHECK(sessionBusAddress().endsWith(QStringLiteral("/a%20b%2Cc/bus")));
}

TEST_CASE("without a bus a call is refused at once, and nothing is listened to")
{
    TemporaryFolder folder;
    Variable const runtime(runtimeFolder, folder.url().cString());
    Variable const none(address, {});
    QObject context;
    bool isAnswered = false;
    callSessionBus(&context, repeat({}), [&](QDBusMessage const& answer) {
        isAnswered = true;
        CHECK(answer.type() == QDBusMessage::ErrorMessage);
        CHECK(isRefused(answer));
    });
    CHECK(isAnswered);
    bool isListening = false;
    listenToSessionBus(
        &context, { path, name, QStringLiteral("Rang") }, [&] { isListening = true; }, {});
    QTest::qWait(50);
    CHECK_FALSE(isListening);
}

TEST_CASE("calls are answered here, each with its own answer")
{
    if (!hasTestBus())
        return;
    Station station;
    REQUIRE(station.isRunning());
    QObject context;
    QStringList answers;
    for (auto const* const text : { "eins", "zwei" })
        callSessionBus(&context, repeat(QString::fromUtf8(text)),
            [&](QDBusMessage const& answer) { answers << answer.arguments().value(0).toString(); });
    CHECK(answers.isEmpty()); // it returns before the bus has been asked
    CHECK(eventually([&] { return answers.size() == 2; }));
    CHECK(answers.contains(QStringLiteral("eins")));
    CHECK(answers.contains(QStringLiteral("zwei")));
}

TEST_CASE("an error is an answer too")
{
    if (!hasTestBus())
        return;
    QObject context;
    std::optional<QDBusMessage> heard;
    callSessionBus(&context, repeat({}), [&](QDBusMessage const& answer) { heard = answer; });
    CHECK(eventually([&] { return heard.has_value(); }));
    CHECK(heard->type() == QDBusMessage::ErrorMessage);
    CHECK(isRefused(*heard));
}

TEST_CASE("who has gone by then hears no answer")
{
    if (!hasTestBus())
        return;
    Station station;
    QObject stays;
    auto goes = std::make_unique<QObject>();
    std::vector<int> heard;
    callSessionBus(goes.get(), repeat({}), [&](QDBusMessage const&) { heard.push_back(1); });
    callSessionBus(&stays, repeat({}), [&](QDBusMessage const&) { heard.push_back(2); });
    goes.reset();
    CHECK(eventually([&] { return !heard.empty(); }));
    CHECK(heard == std::vector { 2 });
}

TEST_CASE("a signal is heard from when that is said, for as long as the listener lives")
{
    if (!hasTestBus())
        return;
    Station station;
    REQUIRE(station.isRunning());
    BusSignal const rang { path, name, QStringLiteral("Rang") };
    auto goes = std::make_unique<QObject>();
    QObject stays;
    int listening = 0;
    std::vector<int> first;
    std::vector<int> second;
    auto const noteIn = [](std::vector<int>& heard) {
        return [&heard](QDBusMessage const& message) {
            heard.push_back(message.arguments().value(0).toInt());
        };
    };
    listenToSessionBus(
        goes.get(), rang, [&] { ++listening; }, noteIn(first));
    listenToSessionBus(
        &stays, rang, [&] { ++listening; }, noteIn(second));
    REQUIRE(eventually([&] { return listening == 2; }));
    emit station.Rang(3);
    CHECK(eventually([&] { return !first.empty() && !second.empty(); }));
    goes.reset();
    emit station.Rang(4);
    CHECK(eventually([&] { return second.size() == 2; }));
    CHECK(first == std::vector { 3 });
    CHECK(second == std::vector { 3, 4 });
}

#include "SessionBusTest.moc"
