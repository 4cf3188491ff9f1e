#include "qt/app/FontWarmUp.h"
#include <QApplication>
#include <QFontDatabase>
#include <QFontMetrics>
#include <doctest/doctest.h>
#include <fontconfig/fontconfig.h>
#include <memory>

using namespace pixelhain;

namespace {

QString anyFontFile()
{
    std::unique_ptr<FcPattern, decltype(&FcPatternDestroy)> const any(
        FcPatternCreate(), FcPatternDestroy);
    FcConfigSubstitute(nullptr, any.get(), FcMatchPattern);
    FcDefaultSubstitute(any.get());
    FcResult result {};
    std::unique_ptr<FcPattern, decltype(&FcPatternDestroy)> const font(
        FcFontMatch(nullptr, any.get(), &result), FcPatternDestroy);
    FcChar8* file = nullptr;
    REQUIRE(font);
    REQUIRE(FcPatternGetString(font.get(), FC_FILE, 0, &file) == FcResultMatch);
    return QString::fromUtf8(reinterpret_cast<char const*>(file));
}

// The toolkit looks anew when a font is taken away that a program had brought along.
void haveFontsForgotten()
{
    auto const id = QFontDatabase::addApplicationFont(anyFontFile());
    REQUIRE(id >= 0);
    REQUIRE(QFontDatabase::removeApplicationFont(id));
}

} // namespace

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
    haveFontsForgotten();
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
