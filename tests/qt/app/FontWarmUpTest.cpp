#include "qt/app/FontWarmUp.h"
#include <QApplication>
#include <QFontDatabase>
#include <QFontMetrics>
#include <doctest/doctest.h>

using namespace pixelhain;

TEST_CASE("a start that ends before the toolkit is there does not wait for it")
{
    FontWarmUp const fonts; // its end is the test
}

TEST_CASE("the toolkit may be told of more than once")
{
    FontWarmUp fonts;
    fonts.toolkitIsReady();
    fonts.toolkitIsReady();
}

TEST_CASE("text is measured alike while the fonts are being found and afterwards")
{
    auto const width = [] { return QFontMetrics(QFont()).horizontalAdvance("Kein Ordner"); };
    // Has the toolkit forget what it knows of the fonts.
    QFontDatabase::removeAllApplicationFonts();
    int meanwhile = 0;
    {
        FontWarmUp fonts;
        fonts.toolkitIsReady();
        meanwhile = width();
    }
    CHECK(meanwhile > 0);
    CHECK(meanwhile == width());
    CHECK_FALSE(QFontDatabase::families().isEmpty());
}
