#include "qt/app/DesktopColors.h"
#include "qt/Contrast.h"
#include "qt/Wait.h"
#include "qt/ports/BusService.h"
#include "qt/window/Tones.h"
#include <QApplication>
#include <QDBusMessage>
#include <QDBusVariant>
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

// A settings portal on the test's own bus.
class FakePortal final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    uint scheme = 0;
    bool isRunning() const { return service_.isRunning(); }

public slots:
    QDBusVariant Read(QString const& group, QString const& key)
    {
        bool const known = group == QStringLiteral("org.freedesktop.appearance")
            && key == QStringLiteral("color-scheme");
        return QDBusVariant(QVariant::fromValue(QDBusVariant(known ? scheme : 99U)));
    }

signals:
    void SettingChanged(QString const& group, QString const& key, QDBusVariant const& value);

private:
    BusService service_ { QStringLiteral("org.freedesktop.portal.Desktop"),
        QStringLiteral("/org/freedesktop/portal/desktop"), *this };
};

} // namespace

TEST_CASE("every text tone can be read on its ground, in light and dark colours")
{
    for (auto const& palette : { QApplication::palette(), darkPalette() })
        for (auto const ground : { Tones::Ground::gallery, Tones::Ground::window }) {
            Tones const tones(palette, ground);
            CHECK(contrast(tones.of(ColorRole::primary), tones.ground()) >= 7);
            CHECK(contrast(tones.of(ColorRole::secondary), tones.ground()) >= 4.5);
            CHECK(contrast(tones.link(), tones.ground()) >= 4.5);
            CHECK(contrast(tones.of(ColorRole::tertiary), tones.ground()) >= 4.5);
            CHECK(contrast(tones.selectedText(), tones.selection()) >= 4.5);
            CHECK(contrast(tones.edge(), tones.ground()) >= 3);
        }
}

TEST_CASE("letters on an accent and in its color can be read, whatever accent the desktop has")
{
    for (auto palette : { QApplication::palette(), darkPalette() })
        for (auto const& accent : { QColor(255, 220, 0), QColor(240, 240, 240), QColor(20, 20, 20),
                 QColor(0, 160, 60), QColor(200, 40, 90) })
            for (auto const& text : { QColor(Qt::white), QColor(Qt::black) }) {
                palette.setColor(QPalette::Highlight, accent);
                palette.setColor(QPalette::HighlightedText, text);
                Tones const tones(palette, Tones::Ground::gallery);
                CAPTURE(accent.name().toStdString());
                CHECK(contrast(tones.link(), tones.ground()) >= 4.5);
                CHECK(contrast(tones.selectedText(), tones.selection()) >= 4.5);
            }
}

TEST_CASE("an accent that can be read stays as it is")
{
    auto palette = QApplication::palette();
    palette.setColor(QPalette::Highlight, QColor(0, 60, 150));
    CHECK(Tones(palette).link() == QColor(0, 60, 150));
    CHECK(Tones(palette).selection() == QColor(0, 60, 150));
}

TEST_CASE("the accent stands out from the ground of both palettes")
{
    for (auto const& palette : { QApplication::palette(), darkPalette() }) {
        Tones const tones(palette, Tones::Ground::gallery);
        CHECK(contrast(tones.of(ColorRole::accent), tones.ground()) >= 3);
    }
}

TEST_CASE("the dark palette is dark")
{
    CHECK(darkPalette().color(QPalette::Base).lightness() < 64);
    CHECK(darkPalette().color(QPalette::Text).lightness() > 192);
}

TEST_CASE("the window follows the desktop between light and dark")
{
    if (!hasTestBus())
        return;
    auto const light = QApplication::palette();
    FakePortal portal;
    REQUIRE(portal.isRunning());
    portal.scheme = 1;
    DesktopColors const colors;
    auto const ground = [] { return QApplication::palette().color(QPalette::Base); };
    CHECK(eventually([&] { return ground() == darkPalette().color(QPalette::Base); }));
    emit portal.SettingChanged(QStringLiteral("org.freedesktop.appearance"),
        QStringLiteral("color-scheme"), QDBusVariant(2U));
    CHECK(eventually([&] { return ground() == light.color(QPalette::Base); }));
}

#include "DesktopColorsTest.moc"
