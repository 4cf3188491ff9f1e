#include "qt/app/WindowActivation.h"
#include <QWidget>
#include <doctest/doctest.h>

using namespace pixelhain;

TEST_CASE("a startup id tells when a person acted")
{
    CHECK(timeOfStartupId("launcher/pixelhain/1-2-host_TIME123456") == 123456U);
    CHECK(timeOfStartupId("a_TIME1_TIME2") == 2U);
    CHECK(timeOfStartupId("a_TIME4294967295") == 4294967295U);
}

TEST_CASE("a startup id without a time tells nothing")
{
    for (auto const* id : { "", "abc", "_TIME", "a_TIME0", "a_TIME-1", "a_TIME12x", "a_TIME 1",
             "a_TIME4294967296", "a_TIME99999999999999999999", "a_time12" })
        CHECK_FALSE(timeOfStartupId(id));
}

TEST_CASE(
    "the tokens of a start are used, and not handed on to programs that are started from here")
{
    qputenv("XDG_ACTIVATION_TOKEN", "token");
    qputenv("DESKTOP_STARTUP_ID", "start_TIME12");
    auto const request = OpenRequest::takeFromEnvironment(std::nullopt);
    CHECK(request.activationToken == "token");
    CHECK(request.startupId == "start_TIME12");
    CHECK_FALSE(qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));
    CHECK(qEnvironmentVariableIsSet("DESKTOP_STARTUP_ID")); // the toolkit is still to read it
    QWidget window;
    showFirst(window, request);
    CHECK(window.isVisible());
    CHECK_FALSE(qEnvironmentVariableIsSet("DESKTOP_STARTUP_ID"));
    CHECK_FALSE(qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));
}

TEST_CASE("a window that was closed or minimized is shown again")
{
    QWidget window;
    bringForward(window, {});
    CHECK(window.isVisible());
    window.close();
    bringForward(window, { std::nullopt, "start\"\\_TIME12", "" });
    CHECK(window.isVisible());
    window.showMinimized();
    bringForward(window, { std::nullopt, "", "start_TIME12" });
    CHECK_FALSE(window.isMinimized());
}
