#include "qt/window/Symbols.h"
#include <doctest/doctest.h>

using namespace pixelhain;

TEST_CASE("every symbol that the window names is drawn in the wanted colour and size")
{
    for (std::string_view const name :
        { "photo.stack", "photo.on.rectangle.angled", "exclamationmark.triangle", "checkmark",
            "folder", "folder.fill", "folder.badge.plus", "arrow.clockwise", "arrow.up", "sparkles",
            "square.grid.3x3", "photo", "checkmark.circle", "play.rectangle", "trash",
            "doc.richtext", "square.and.arrow.up", "keyboard", "questionmark.circle",
            "lightbulb.fill", "magnifyingglass", "xmark.circle.fill", "square.grid.2x2",
            "arrow.up.arrow.down", "ellipsis.circle", "chevron.right.2", "sidebar.left" }) {
        CAPTURE(name);
        auto const image = symbolImage(name, 48, Qt::red);
        REQUIRE(image.size() == QSize(48, 48));
        int inked = 0;
        for (int y = 0; y < 48; ++y)
            for (int x = 0; x < 48; ++x)
                if (auto const pixel = image.pixelColor(x, y); pixel.alpha() > 250) {
                    ++inked;
                    CHECK(pixel.rgb() == QColor(Qt::red).rgb());
                }
        CHECK(inked > 20);
    }
}

TEST_CASE("an unknown symbol is no image")
{
    CHECK(symbolImage("no.such.symbol", 20, Qt::red).isNull());
    CHECK(symbolImage("checkmark", 0, Qt::red).isNull());
}
