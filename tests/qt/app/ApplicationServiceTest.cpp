#include "qt/app/ApplicationService.h"
#include "qt/Wait.h"
#include "qt/app/OpenRequest.h"
#include "qt/ports/BusService.h"
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingReply>
#include <doctest/doctest.h>
#include <vector>

using namespace pixelhain;

namespace {

struct Served {
    ApplicationService service;
    std::vector<OpenRequest> requests;
    bool isTaken = true;

    Served()
    {
        service.serve([this](OpenRequest const& request) {
            requests.push_back(request);
            return isTaken;
        });
    }
};

// The service on a bus, and somebody there who calls it.
struct OnBus : Served {
    BusService bus { ApplicationService::name(), ApplicationService::path(), service };

    QDBusMessage call(QString const& method, QVariantList const& arguments)
    {
        auto message = QDBusMessage::createMethodCall(ApplicationService::name(),
            ApplicationService::path(), ApplicationService::interface(), method);
        message.setArguments(arguments);
        auto const pending = QDBusConnection::sessionBus().asyncCall(message);
        CHECK(eventually([&] { return pending.isFinished(); }));
        return pending.reply();
    }

    bool takes(QString const& method, QVariantList const& arguments)
    {
        return call(method, arguments).type() == QDBusMessage::ReplyMessage;
    }
};

QStringList uris(QString const& first, int count)
{
    return QStringList(first) + QStringList(count - 1, QStringLiteral("file:///b"));
}

QVariantMap tokens(QVariant const& startupId, QVariant const& token)
{
    return { { QStringLiteral("desktop-startup-id"), startupId },
        { QStringLiteral("activation-token"), token } };
}

} // namespace

TEST_CASE("the first of the files is asked for, with all its bytes, and the tokens beside it")
{
    Served served;
    served.service.Open({ QStringLiteral("file:///a%20b/%E4%FF.jpg"), QStringLiteral("file:///c") },
        tokens(QStringLiteral("id_TIME5"), QStringLiteral("token")));
    REQUIRE(served.requests.size() == 1);
    CHECK(served.requests[0].file == FileUrl("/a b/\xe4\xff.jpg"));
    CHECK(served.requests[0].startupId == "id_TIME5");
    CHECK(served.requests[0].activationToken == "token");
}

TEST_CASE("coming to the front names no file, and an empty list asks for nothing")
{
    Served served;
    served.service.Activate({});
    served.service.Open({}, {});
    REQUIRE(served.requests.size() == 1);
    CHECK_FALSE(served.requests[0].file);
}

TEST_CASE("a request that comes before the window is there is done when it is, the last one only")
{
    ApplicationService service;
    service.Open({ QStringLiteral("file:///a") }, {});
    service.Open({ QStringLiteral("file:///b") }, {});
    std::vector<FileUrl> files;
    service.serve([&](OpenRequest const& request) {
        files.push_back(*request.file);
        return true;
    });
    CHECK(files == std::vector { FileUrl("/b") });
}

TEST_CASE("coming to the front does not make a file forgotten that waits to be opened")
{
    ApplicationService service;
    service.Open({ QStringLiteral("file:///a") }, {});
    service.Activate({});
    std::vector<std::optional<FileUrl>> files;
    service.serve([&](OpenRequest const& request) {
        files.push_back(request.file);
        return true;
    });
    CHECK(files == std::vector { std::optional(FileUrl("/a")) });
}

TEST_CASE("actions of the desktop are asked for by their names, with the tokens beside them")
{
    Served served;
    auto const data = tokens(QStringLiteral("id_TIME5"), QStringLiteral("token"));
    served.service.ActivateAction(QStringLiteral("choose-folder"), {}, data);
    served.service.ActivateAction(QStringLiteral("show-help"), {}, {});
    REQUIRE(served.requests.size() == 2);
    CHECK(served.requests[0].action == ServiceAction::chooseFolder);
    CHECK(served.requests[0].startupId == "id_TIME5");
    CHECK(served.requests[0].activationToken == "token");
    CHECK(served.requests[1].action == ServiceAction::showHelp);
}

TEST_CASE("other actions, and such with a parameter, ask for nothing")
{
    Served served;
    for (auto const* name : { "", "quit", "--show-help", "Show-help", "show-helps" })
        served.service.ActivateAction(QString::fromLatin1(name), {}, {});
    served.service.ActivateAction(QStringLiteral("show-help"), { 1 }, {});
    CHECK(served.requests.empty());
}

TEST_CASE("an action that waits for the window is not forgotten for a mere call")
{
    ApplicationService service;
    service.ActivateAction(QStringLiteral("show-help"), {}, {});
    service.Activate({});
    std::vector<OpenRequest> requests;
    service.serve([&](OpenRequest const& request) {
        requests.push_back(request);
        return true;
    });
    REQUIRE(requests.size() == 1);
    CHECK(requests[0].action == ServiceAction::showHelp);
}

TEST_CASE("tokens that are no tokens are left out")
{
    auto const read = [](QVariant const& value) {
        return OpenRequest::fromPlatformData(std::nullopt, tokens(value, value)).startupId;
    };
    CHECK(read(QStringLiteral("a-b_TIME7")) == "a-b_TIME7");
    CHECK(read(QString(OpenRequest::longestToken, QLatin1Char('x'))).size() == 512);
    CHECK(read(QString(OpenRequest::longestToken + 1, QLatin1Char('x'))).empty());
    CHECK(read(QStringLiteral("a\nb")).empty());
    CHECK(read(QStringLiteral("a b")).empty());
    CHECK(read(QStringLiteral("ä")).empty());
    CHECK(read(QString(QChar(u'\0'))).empty());
    CHECK(read(7).empty());
    CHECK(read(QVariantList { 1 }).empty());
}

TEST_CASE("the tokens of a start travel as they came")
{
    OpenRequest const request { std::nullopt, "id_TIME5", "token" };
    auto const again = OpenRequest::fromPlatformData(std::nullopt, request.platformData());
    CHECK(again.startupId == request.startupId);
    CHECK(again.activationToken == request.activationToken);
    CHECK(OpenRequest().platformData().isEmpty());
}

TEST_CASE("on the bus the program opens files, comes to the front and does what the desktop offers")
{
    if (!hasTestBus())
        return;
    OnBus program;
    REQUIRE(program.bus.isRunning());
    CHECK(program.takes(QStringLiteral("Activate"), { QVariantMap() }));
    CHECK(program.takes(
        QStringLiteral("Open"), { QStringList(QStringLiteral("file:///a")), QVariantMap() }));
    CHECK(program.takes(QStringLiteral("ActivateAction"),
        { QStringLiteral("choose-folder"), QVariantList(), QVariantMap() }));
    REQUIRE(program.requests.size() == 3);
    CHECK(program.requests[1].file == FileUrl("/a"));
    CHECK(program.requests[2].action == ServiceAction::chooseFolder);
}

TEST_CASE("callers on the bus who send something else are told so, and nothing happens")
{
    if (!hasTestBus())
        return;
    OnBus program;
    auto const open = QStringLiteral("Open");
    CHECK_FALSE(program.takes(open, {}));
    CHECK_FALSE(program.takes(open, { QStringLiteral("file:///a"), QVariantMap() }));
    CHECK_FALSE(program.takes(open, { QVariantList { 1, 2 }, QVariantMap() }));
    CHECK_FALSE(program.takes(
        open, { uris(QStringLiteral("https://example.org/a.jpg"), 2), QVariantMap() }));
    CHECK_FALSE(program.takes(open, { uris(QStringLiteral("file:///a%00b"), 1), QVariantMap() }));
    CHECK_FALSE(program.takes(open, { uris(QStringLiteral("file:a"), 1), QVariantMap() }));
    CHECK_FALSE(program.takes(open, { uris(QString(), 1), QVariantMap() }));
    CHECK_FALSE(program.takes(QStringLiteral("Activate"), { 5 }));
    CHECK_FALSE(program.takes(QStringLiteral("Delete"), { QVariantMap() }));
    auto const action = program.call(QStringLiteral("ActivateAction"),
        { QStringLiteral("quit"), QVariantList(), QVariantMap() });
    CHECK(action.errorName() == QStringLiteral("org.freedesktop.DBus.Error.InvalidArgs"));
    CHECK(action.errorMessage() == QStringLiteral("Diese Aktion gibt es nicht."));
    CHECK(program.requests.empty());
}

TEST_CASE("callers on the bus are told when the program does not take what they ask for")
{
    if (!hasTestBus())
        return;
    OnBus program;
    program.isTaken = false;
    auto const answers = { program.call(QStringLiteral("Activate"), { QVariantMap() }),
        program.call(
            QStringLiteral("Open"), { uris(QStringLiteral("file:///a"), 1), QVariantMap() }) };
    for (auto const& answer : answers) {
        CHECK(answer.errorName() == QStringLiteral("org.freedesktop.DBus.Error.Failed"));
        CHECK(answer.errorMessage() == QStringLiteral("Das Programm wird gerade beendet."));
    }
    CHECK(program.requests.size() == 2);
}

TEST_CASE("ten thousand files and a megabyte of text on the bus are one request each")
{
    if (!hasTestBus())
        return;
    OnBus program;
    auto const open = QStringLiteral("Open");
    CHECK(program.takes(open, { uris(QStringLiteral("file:///a"), 10'000), QVariantMap() }));
    QString const megabyte(1 << 20, QLatin1Char('x'));
    CHECK(program.takes(
        open, { uris(QStringLiteral("file:///") + megabyte, 1), tokens(megabyte, megabyte) }));
    REQUIRE(program.requests.size() == 2);
    CHECK(program.requests[0].file == FileUrl("/a"));
    CHECK(program.requests[1].file->path().size() == (1 << 20) + 1);
    CHECK(program.requests[1].startupId.empty());
}
