#include "qt/ports/QtScreens.h"
#include "app/AppDelegate.h"
#include "images/DisplayPixelSize.h"
#include "qt/Wait.h"
#include "support/Desk.h"
#include <QGuiApplication>
#include <QProcess>
#include <QStandardPaths>
#include <doctest/doctest.h>
#include <memory>

using namespace pixelhain;

namespace {

bool xrandr(QString const& words)
{
    QProcess program;
    program.start(QStringLiteral("xrandr"), words.split(QLatin1Char(' ')));
    return program.waitForFinished() && program.exitCode() == 0;
}

// The virtual screen in another resolution as long as this lives.
class OtherResolution {
public:
    OtherResolution()
        : isSet_(xrandr(QStringLiteral("--newmode other 60 1280 1300 1320 1400 720 730 740 760"))
            && xrandr(QStringLiteral("--addmode screen other"))
            && xrandr(QStringLiteral("--output screen --mode other")))
    {
    }
    OtherResolution(OtherResolution const&) = delete;
    OtherResolution& operator=(OtherResolution const&) = delete;
    ~OtherResolution()
    {
        xrandr(QStringLiteral("--output screen --mode 1920x1080"));
        xrandr(QStringLiteral("--delmode screen other"));
        xrandr(QStringLiteral("--rmmode other"));
    }

    bool isSet() const { return isSet_; }

private:
    bool isSet_;
};

} // namespace

TEST_CASE("the size that pictures are decoded to follows the resolution of the screen")
{
    bool const isX11 = QGuiApplication::platformName() == QStringLiteral("xcb");
    if (!isX11 || QStandardPaths::findExecutable(QStringLiteral("xrandr")).isEmpty())
        return;
    Desk desk;
    std::unique_ptr<AppDelegate> delegate;
    QtScreens const screens([&] { delegate->applicationDidChangeScreenParameters(); });
    int size = 0;
    delegate = std::make_unique<AppDelegate>(desk.model(), desk.loop, screens,
        [&](std::span<Screen const> all) { size = displayPixelSizeFor(all); });
    delegate->applicationDidFinishLaunching();
    CHECK(size == 1920);
    {
        OtherResolution const other;
        REQUIRE(other.isSet());
        CHECK(eventually([&] { return size == 1280; }));
    }
    CHECK(eventually([&] { return size == 1920; }));
}
