#include "qt/viewer/PicturePainter.h"
#include "qt/viewer/PreparedPictures.h"
#include "qt/window/Gallery.h"
#include "support/FakeBackground.h"
#include "support/FakeLoop.h"
#include <QPainter>
#include <doctest/doctest.h>
#include <sys/resource.h>

using namespace pixelhain;

namespace {

/// While it lives the process gets no more memory than it has.
class NoMemory {
public:
    NoMemory()
    {
        ::getrlimit(RLIMIT_AS, &usual_);
        rlimit const none { 1, usual_.rlim_max };
        ::setrlimit(RLIMIT_AS, &none);
    }
    NoMemory(NoMemory const&) = delete;
    NoMemory& operator=(NoMemory const&) = delete;
    ~NoMemory() { ::setrlimit(RLIMIT_AS, &usual_); }

private:
    rlimit usual_ {};
};

// Red to the left, blue to the right.
ImageRef stripes(int width, int height)
{
    auto bitmap = Bitmap::allocate({ width, height }, true);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            reinterpret_cast<QRgb*>(bitmap.row(y))[x]
                = x < width / 2 ? qRgb(255, 0, 0) : qRgb(0, 0, 255);
    return std::make_shared<CGImageBox>(CGImageBox { bitmap, PixelOrigin::full });
}

} // namespace

#if !defined(__SANITIZE_ADDRESS__) // which ends the process where memory is refused
TEST_CASE(
    "without memory for the sharp picture the soft one stays, and the attempts come to an end")
{
    FakeBackground background;
    FakeLoop loop;
    PreparedPictures prepared;
    PicturePainter painter({ background, loop, prepared }, [] {});
    // The sharp picture is larger than any gap that earlier tests left in the allocator's memory.
    painter.show(plainPicture(6600, 4950, Qt::red));
    constexpr PixelSize area { 6000, 4500 };
    int attempts = 0;
    for (int frame = 0; frame < 20; ++frame) {
        painter.place(area, { 0, 0, 6000, 4500 });
        attempts += background.pending() > 0 ? 1 : 0;
        {
            NoMemory const none;
            background.finishAll();
        }
        loop.settle();
    }
    CHECK(attempts == PicturePainter::mostFailures);
    CHECK_FALSE(painter.isEmpty());
    CHECK_FALSE(painter.isSharp());

    painter.place(area, { 0, 0, 3000, 2250 });
    loop.advance(PicturePainter::restTime);
    background.finishAll();
    loop.settle();
    CHECK(painter.isSharp());
}
#endif

TEST_CASE("a picture that fills a large screen is there to the last pixel before it is sharp")
{
    // Few enough pixels to be scaled one by one; in blocks of two by two; of three by three.
    for (auto const area :
        { PixelSize { 1999, 1401 }, PixelSize { 2501, 1403 }, PixelSize { 3841, 2161 } }) {
        CAPTURE(area.width);
        FakeBackground background;
        FakeLoop loop;
        PreparedPictures prepared;
        PicturePainter painter({ background, loop, prepared }, [] {});
        painter.show(stripes(area.width * 5 / 4, area.height * 5 / 4));
        painter.place(area, { 0, 0, area.width, area.height });
        QImage screen(area.width, area.height, QImage::Format_RGB32);
        screen.fill(Qt::green);
        {
            QPainter onScreen(&screen);
            painter.paint(onScreen, screen.rect());
        }
        CHECK_FALSE(painter.isSharp());
        for (auto const y : { 0, area.height / 2, area.height - 1 }) {
            CHECK(screen.pixelColor(0, y).name() == QColor(Qt::red).name());
            CHECK(screen.pixelColor(area.width / 2 - 4, y).name() == QColor(Qt::red).name());
            CHECK(screen.pixelColor(area.width / 2 + 4, y).name() == QColor(Qt::blue).name());
            CHECK(screen.pixelColor(area.width - 1, y).name() == QColor(Qt::blue).name());
        }
    }
}
