#include "qt/viewer/DarkLook.h"
#include "qt/Contrast.h"
#include <QImage>
#include <QPainter>
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

QColor materialOver(QColor const& photo)
{
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(photo);
    QPainter painter(&image);
    paintMaterial(painter, image.rect(), 0);
    painter.end();
    return image.pixelColor(4, 4);
}

} // namespace

TEST_CASE("what is written over a photo can be read, however bright the photo is")
{
    constexpr double readable = 4.5;
    auto const palette = viewerPalette();
    for (auto const& photo : { QColor(Qt::white), QColor(Qt::yellow), QColor(Qt::black) })
        for (auto const role :
            { QPalette::WindowText, QPalette::ButtonText, QPalette::PlaceholderText }) {
            CAPTURE(photo.name().toStdString());
            CAPTURE(static_cast<int>(role));
            CHECK(contrast(palette.color(role), materialOver(photo)) >= readable);
        }
}

TEST_CASE("a photo shines a little through what lies over it")
{
    CHECK(materialOver(Qt::white) != materialOver(Qt::black));
}
