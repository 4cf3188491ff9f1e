#include "qt/viewer/PicturePainter.h"
#include "qt/viewer/PreparedPictures.h"
#include "qt/window/Gallery.h"
#include "support/FakeBackground.h"
#include "support/FakeLoop.h"
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
