#include "qt/window/ProgramIcon.h"
#include <QDir>
#include <QFile>
#include <QPixmap>
#include <QTemporaryDir>
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

// How much of the image is drawn on, from 0 to 1.
double covered(QImage const& image)
{
    double sum = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            sum += image.pixelColor(x, y).alphaF();
    return sum / image.width() / image.height();
}

QImage drawn(QIcon const& icon, int edge)
{
    return icon.pixmap(QSize(edge, edge), 1).toImage();
}

} // namespace

TEST_CASE("the program's mark is drawn at every size that desktops ask for")
{
    auto const icon = builtInProgramIcon();
    REQUIRE_FALSE(icon.isNull());
    for (auto const edge : { 16, 24, 32, 48, 64, 128, 256 }) {
        CAPTURE(edge);
        auto const image = drawn(icon, edge);
        CHECK(image.size() == QSize(edge, edge));
        CHECK(covered(image) > 0.3);
        CHECK(covered(image) < 0.9);
    }
}

TEST_CASE("the mark of the desktop's icon theme is shown instead of the one that is built in")
{
    QTemporaryDir const folder;
    auto const write = [&](QString const& name, QByteArray const& text) {
        QFile file(folder.filePath(name));
        REQUIRE(file.open(QIODevice::WriteOnly));
        file.write(text);
    };
    REQUIRE(QDir(folder.path()).mkpath(QStringLiteral("grey/16/apps")));
    write(QStringLiteral("grey/index.theme"),
        "[Icon Theme]\nName=Grey\nDirectories=16/apps\n\n[16/apps]\nSize=16\nType=Fixed\n");
    QImage grey(16, 16, QImage::Format_RGB32);
    grey.fill(QColor(90, 90, 90));
    REQUIRE(grey.save(folder.filePath(QStringLiteral("grey/16/apps/de.pixelhain.Pixelhain.png"))));
    auto const paths = QIcon::themeSearchPaths();
    auto const theme = QIcon::themeName();
    QIcon::setThemeSearchPaths({ folder.path() });
    QIcon::setThemeName(QStringLiteral("grey"));
    CHECK(drawn(programIcon(), 16).pixelColor(1, 1) == QColor(90, 90, 90));
    QIcon::setThemeSearchPaths({});
    QIcon::setThemeName(QStringLiteral("none"));
    CHECK(drawn(programIcon(), 16) == drawn(builtInProgramIcon(), 16));
    QIcon::setThemeSearchPaths(paths);
    QIcon::setThemeName(theme);
}
