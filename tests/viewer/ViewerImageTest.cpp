#include "viewer/ViewerImage.h"
#include "support/FakeLoop.h"
#include "support/FakeThumbnails.h"
#include "support/FakeViewerSource.h"
#include <algorithm>
#include <doctest/doctest.h>

using namespace pixelhain;
using namespace std::chrono_literals;
using Kind = FakeViewerSource::Kind;
using Content = ViewerImage::Content;

namespace {

PhotoItem photo(std::string const& name)
{
    return { FileUrl("/Fotos/" + name), {}, 0 };
}

struct Shown {
    FakeLoop loop;
    FakeViewerSource source;
    std::vector<std::chrono::milliseconds> changes;
    ViewerImage image;

    explicit Shown(bool isAnimated = false)
        : image(source, loop, photo("a.jpg"), isAnimated,
            [this](std::chrono::milliseconds time) { changes.push_back(time); })
    {
    }

    void pinchTo(double magnification)
    {
        image.pinch(magnification);
        image.endPinch();
    }
    void dragBy(double x, double y)
    {
        image.drag({ x, y });
        image.endDrag();
    }
    std::size_t fullLoads() const { return source.asked(Kind::full); }
};

} // namespace

TEST_CASE("a photo in memory is shown at once and nothing is loaded")
{
    FakeLoop loop;
    FakeViewerSource source;
    source.pictures[photo("a.jpg").url] = pictureOf(30, 20);
    ViewerImage image(source, loop, photo("a.jpg"), false, [](auto) {});
    CHECK(image.content() == Content::picture);
    image.appear();
    CHECK(source.asked(Kind::display) == 0);
}

TEST_CASE("a photo that is not in memory is loaded when it comes on screen")
{
    Shown s;
    CHECK(s.image.content() == Content::spinner);
    CHECK(s.source.asked(Kind::display) == 0);
    s.image.appear();
    CHECK(s.source.asked(Kind::display) == 1);
    CHECK(s.image.content() == Content::spinner);
    auto const picture = pictureOf(30, 20);
    s.source.answer(Kind::display, picture);
    CHECK(s.image.content() == Content::picture);
    CHECK(s.image.image() == picture);
    CHECK(s.image.shown() == picture);
    CHECK_FALSE(s.image.failed());
    CHECK(s.changes.size() == 1);
}

TEST_CASE("a photo that cannot be read is said to have failed")
{
    Shown s;
    s.image.appear();
    s.source.answer(Kind::display, nullptr);
    CHECK(s.image.failed());
    CHECK(s.image.content() == Content::failure);
    CHECK(ViewerImage::failedText == "Bild kann nicht gelesen werden");
    CHECK(ViewerImage::failedSymbol == "exclamationmark.triangle");
}

TEST_CASE("a photo that is left gives up its loads")
{
    FakeLoop loop;
    FakeViewerSource source;
    int changes = 0;
    {
        ViewerImage image(source, loop, photo("a.jpg"), false, [&](auto) { ++changes; });
        image.appear();
        image.doubleClick();
        CHECK(source.wanted(Kind::display).size() == 1);
        CHECK(source.wanted(Kind::full).size() == 1);
        changes = 0;
    }
    CHECK(source.wanted(Kind::display).empty());
    CHECK(source.wanted(Kind::full).empty());
    source.answer(Kind::display, pictureOf(3, 2));
    source.answer(Kind::full, pictureOf(3, 2));
    CHECK(changes == 0);
}

TEST_CASE(
    "the gallery's thumbnail stands for a photo from the first moment, until its picture comes")
{
    FakeLoop loop;
    FakeViewerSource source;
    auto const thumbnail = pictureOf(256, 171);
    source.thumbnails[photo("a.jpg").url] = thumbnail;
    int changes = 0;
    ViewerImage image(source, loop, photo("a.jpg"), false, [&](auto) { ++changes; });
    CHECK(image.standIn() == thumbnail);
    CHECK(image.content() == Content::picture);
    CHECK_FALSE(image.shown());
    CHECK(image.isLoading());
    image.appear();
    CHECK(source.asked(Kind::display) == 1);
    loop.advance(1s);
    CHECK_FALSE(image.showsSpinner());
    CHECK(changes == 0);
    auto const picture = pictureOf(30, 20);
    source.answer(Kind::display, picture);
    CHECK(image.shown() == picture);
    CHECK_FALSE(image.standIn());
    CHECK_FALSE(image.isLoading());
    CHECK(changes == 1);
}

TEST_CASE("a preview of the file stands for the photo if it is better than what is there")
{
    Shown s;
    s.image.appear();
    REQUIRE(s.source.wanted(Kind::preview).size() == 1);
    auto const preview = pictureOf(1620, 1080);
    SUBCASE("nothing")
    {
        s.source.answer(Kind::preview, preview);
        CHECK(s.image.standIn() == preview);
        CHECK(s.changes.size() == 1);
    }
    SUBCASE("none comes")
    {
        s.source.answer(Kind::preview, nullptr);
        CHECK_FALSE(s.image.standIn());
        CHECK(s.changes.empty());
    }
    SUBCASE("the picture itself")
    {
        s.source.answer(Kind::display, pictureOf(30, 20));
        CHECK(s.source.wanted(Kind::preview).empty());
        s.source.answer(Kind::preview, preview);
        CHECK_FALSE(s.image.standIn());
    }
}

TEST_CASE("a preview that is smaller than the gallery's thumbnail does not take its place")
{
    FakeLoop loop;
    FakeViewerSource source;
    auto const thumbnail = pictureOf(256, 171);
    source.thumbnails[photo("a.jpg").url] = thumbnail;
    ViewerImage image(source, loop, photo("a.jpg"), false, [](auto) {});
    image.appear();
    loop.advance(ViewerImage::previewDelay);
    source.answer(Kind::preview, pictureOf(160, 107));
    CHECK(image.standIn() == thumbnail);
}

TEST_CASE("a photo that is only paged past with its thumbnail reads no preview")
{
    FakeLoop loop;
    FakeViewerSource source;
    source.thumbnails[photo("a.jpg").url] = pictureOf(256, 171);
    ViewerImage image(source, loop, photo("a.jpg"), false, [](auto) {});
    image.appear();
    loop.advance(ViewerImage::previewDelay - 1ms);
    CHECK(source.asked(Kind::preview) == 0);
    SUBCASE("one that stays does")
    {
        loop.advance(1ms);
        CHECK(source.asked(Kind::preview) == 1);
        auto const preview = pictureOf(1620, 1080);
        source.answer(Kind::preview, preview);
        CHECK(image.standIn() == preview);
    }
    SUBCASE("one whose picture is there does not")
    {
        source.answer(Kind::display, pictureOf(1920, 1280));
        loop.advance(1s);
        CHECK(source.asked(Kind::preview) == 0);
    }
    SUBCASE("nor one that is left")
    {
        CHECK_FALSE(image.takePictures().empty());
        loop.advance(1s);
        CHECK(source.asked(Kind::preview) == 0);
    }
}

TEST_CASE("the wheel turns when there is nothing to be seen after 150 milliseconds")
{
    Shown s;
    s.image.appear();
    s.loop.advance(149ms);
    CHECK_FALSE(s.image.showsSpinner());
    s.loop.advance(1ms);
    CHECK(s.image.showsSpinner());
    CHECK(s.changes.size() == 1);
    SUBCASE("and until a preview comes")
    {
        s.source.answer(Kind::preview, pictureOf(160, 107));
        CHECK_FALSE(s.image.showsSpinner());
    }
    SUBCASE("and until the picture comes")
    {
        s.source.answer(Kind::display, pictureOf(160, 107));
        CHECK_FALSE(s.image.showsSpinner());
    }
    SUBCASE("and until it is known that there is none")
    {
        s.source.answer(Kind::display, nullptr);
        CHECK_FALSE(s.image.showsSpinner());
        CHECK(s.image.content() == Content::failure);
    }
}

TEST_CASE("a photo that comes soon turns no wheel, nor does a photo in memory or an animation")
{
    Shown s;
    s.image.appear();
    s.loop.advance(100ms);
    s.source.answer(Kind::display, pictureOf(30, 20));
    s.loop.advance(1s);
    CHECK(s.changes.size() == 1);
    CHECK(s.loop.timers() == 0);
    Shown animated(true);
    animated.image.appear();
    CHECK(animated.loop.timers() == 0);
    CHECK(animated.source.asked(Kind::preview) == 0);
}

TEST_CASE("a photo that cannot be read shows nothing in its place")
{
    Shown s;
    s.image.appear();
    s.source.answer(Kind::preview, pictureOf(160, 107));
    s.source.answer(Kind::display, nullptr);
    CHECK(s.image.content() == Content::failure);
    CHECK_FALSE(s.image.standIn());
}

TEST_CASE("a photo that is left takes what stood for it along, and waits for nothing")
{
    Shown s;
    s.image.appear();
    s.source.answer(Kind::preview, pictureOf(160, 107));
    auto const preview = s.image.standIn();
    auto const taken = s.image.takePictures();
    CHECK(std::ranges::find(taken, preview) != taken.end());
    CHECK_FALSE(s.image.standIn());
    CHECK(s.loop.timers() == 0);
    CHECK(s.source.wanted(Kind::display).empty());
}

TEST_CASE("a thumbnail that is made while a photo is waited for stands for it")
{
    Shown s;
    s.image.appear();
    auto const thumbnail = pictureOf(512, 341);
    s.source.thumbnails[photo("a.jpg").url] = thumbnail;
    CHECK_FALSE(s.image.standIn());
    SUBCASE("when it is found that there is no preview")
    {
        s.source.answer(Kind::preview, nullptr);
        CHECK(s.image.standIn() == thumbnail);
        CHECK(s.changes.size() == 1);
    }
    SUBCASE("instead of a wheel")
    {
        s.loop.advance(ViewerImage::spinnerDelay);
        CHECK(s.image.standIn() == thumbnail);
        CHECK_FALSE(s.image.showsSpinner());
        CHECK(s.changes.size() == 1);
    }
    s.source.answer(Kind::display, pictureOf(1920, 1280));
    CHECK_FALSE(s.image.standIn());
}

TEST_CASE("the gallery's picture stands for an animation, and nothing is loaded for that")
{
    FakeLoop loop;
    FakeViewerSource source;
    source.thumbnails[photo("a.gif").url] = pictureOf(30, 20);
    ViewerImage image(source, loop, photo("a.gif"), true, [](auto) {});
    CHECK(image.standIn() == source.thumbnails.begin()->second);
    CHECK(image.content() == Content::animation);
    image.appear();
    CHECK(source.asked(Kind::preview) == 0);
    CHECK(source.asked(Kind::display) == 0);
}

TEST_CASE("an animation loads neither the screen-sized nor the full picture")
{
    Shown s(true);
    CHECK(s.image.content() == Content::animation);
    s.image.appear();
    s.image.doubleClick();
    CHECK(s.image.scale() == 2.5);
    s.pinchTo(3);
    CHECK(s.source.asked(Kind::display) == 0);
    CHECK(s.source.asked(Kind::full) == 0);
}

TEST_CASE("a double click zooms to 2.5, and a second one goes back to the middle")
{
    Shown s;
    s.image.doubleClick();
    CHECK(s.image.scale() == 2.5);
    CHECK(s.changes.back() == 200ms);
    s.dragBy(30, 40);
    CHECK(s.image.zoom() == Zoom { 2.5, { 30, 40 } });
    s.image.doubleClick();
    CHECK(s.image.zoom() == Zoom {});
    CHECK(s.changes.back() == 200ms);
    // The pan is forgotten, not kept for later.
    s.image.doubleClick();
    s.dragBy(10, 0);
    CHECK(s.image.zoom() == Zoom { 2.5, { 10, 0 } });
}

TEST_CASE("a double click on a picture that is hardly zoomed keeps its place")
{
    Shown s;
    s.pinchTo(1.5);
    s.dragBy(20, 0);
    s.image.pinch(1.005 / 1.5);
    CHECK(s.image.scale() == doctest::Approx(1.005));
    s.image.doubleClick();
    CHECK(s.image.zoom() == Zoom { 2.5, { 20, 0 } });
}

TEST_CASE("pinching stays between 1 and 10")
{
    Shown s;
    s.image.pinch(0.5);
    CHECK(s.image.scale() == 1.0);
    s.image.endPinch();
    CHECK(s.image.scale() == 1.0);
    s.pinchTo(40);
    CHECK(s.image.scale() == 10.0);
    s.pinchTo(0.5);
    CHECK(s.image.scale() == 5.0);
}

TEST_CASE("each pinch goes on from where the last one ended")
{
    Shown s;
    s.image.pinch(1.5);
    s.image.pinch(2);
    CHECK(s.image.scale() == 2.0);
    s.image.endPinch();
    s.pinchTo(1.5);
    CHECK(s.image.scale() == 3.0);
}

TEST_CASE("a pinch begins with a change of a hundredth")
{
    Shown s;
    s.image.pinch(1.0099);
    CHECK(s.image.scale() == 1.0);
    s.image.endPinch();
    CHECK(s.changes.empty());
    s.image.pinch(1.011);
    CHECK(s.image.scale() == doctest::Approx(1.011));
    s.image.pinch(1.005); // begun is begun
    CHECK(s.image.scale() == doctest::Approx(1.005));
}

TEST_CASE("a pinch that ends at 1.005 snaps back and clears the pan")
{
    Shown s;
    s.pinchTo(2);
    s.dragBy(50, -20);
    s.pinchTo(1.005 / 2);
    CHECK(s.image.zoom() == Zoom {});
    CHECK(s.changes.back() == 150ms);
}

TEST_CASE("a pinch that ends at 1.02 keeps it and the pan")
{
    Shown s;
    s.pinchTo(2);
    s.dragBy(50, -20);
    s.pinchTo(1.02 / 2);
    CHECK(s.image.scale() == doctest::Approx(1.02));
    CHECK(s.image.zoom().offset == Point { 50, -20 });
    CHECK(s.changes.back() == 0ms);
}

TEST_CASE("a drag of nine points does nothing, one of ten moves the picture")
{
    Shown s;
    s.image.doubleClick();
    s.image.drag({ 9, 0 });
    CHECK(s.image.zoom().offset == Point {});
    s.image.drag({ 6, 8 });
    CHECK(s.image.zoom().offset == Point { 6, 8 });
    s.image.drag({ 1, 1 }); // begun is begun
    CHECK(s.image.zoom().offset == Point { 1, 1 });
    s.image.endDrag();
    s.dragBy(100, 0);
    CHECK(s.image.zoom().offset == Point { 101, 1 });
    s.dragBy(5, 5);
    CHECK(s.image.zoom().offset == Point { 101, 1 });
}

TEST_CASE("a drag of any length does nothing while the picture is not zoomed")
{
    Shown s;
    s.dragBy(500, 500);
    CHECK(s.image.zoom() == Zoom {});
    CHECK(s.changes.empty());
    s.image.pinch(1.2);
    s.image.pinch(1.01);
    s.dragBy(500, 500);
    CHECK(s.image.zoom().offset == Point {});
}

TEST_CASE("the picture may be dragged out of view")
{
    Shown s;
    s.image.doubleClick();
    s.dragBy(1e5, -1e5);
    CHECK(s.image.zoom().offset == Point { 1e5, -1e5 });
}

TEST_CASE("pinching and dragging go on at the same time")
{
    Shown s;
    s.image.pinch(2);
    s.image.drag({ 20, 0 });
    s.image.pinch(3);
    s.image.drag({ 30, 0 });
    s.image.endPinch();
    s.image.endDrag();
    CHECK(s.image.zoom() == Zoom { 3, { 30, 0 } });
}

TEST_CASE("a double click starts exactly one load of the full picture")
{
    Shown s;
    s.image.doubleClick();
    CHECK(s.fullLoads() == 1);
}

TEST_CASE("a pinch to 1.3 starts no load of the full picture, beyond it does")
{
    Shown s;
    s.image.pinch(1.15);
    s.image.pinch(1.3);
    CHECK(s.fullLoads() == 0);
    s.image.pinch(1.31);
    CHECK(s.fullLoads() == 1);
}

TEST_CASE("every further change asks again until the full picture is there")
{
    Shown s;
    s.image.appear();
    s.source.answer(Kind::display, pictureOf(30, 20));
    s.image.pinch(1.4);
    s.image.pinch(1.5);
    s.image.pinch(1.5); // no change
    s.image.pinch(1.6);
    CHECK(s.fullLoads() == 3);
    auto const full = pictureOf(300, 200);
    s.source.answer(Kind::full, full);
    CHECK(s.image.full() == full);
    CHECK(s.image.shown() == full);
    s.image.pinch(1.7);
    CHECK(s.fullLoads() == 3);
}

TEST_CASE("a full picture that cannot be had leaves the screen-sized one in place")
{
    Shown s;
    s.image.appear();
    auto const picture = pictureOf(30, 20);
    s.source.answer(Kind::display, picture);
    s.image.doubleClick();
    s.source.answer(Kind::full, nullptr);
    CHECK(s.image.shown() == picture);
    CHECK_FALSE(s.image.failed());
}

TEST_CASE("a series of turns of the wheel is one pinch")
{
    Shown s;
    // Steps so small that each alone would snap back.
    for (int i = 0; i < 20; ++i)
        s.image.turnWheel(0.05);
    CHECK(s.image.scale() == doctest::Approx(1.25));
    s.loop.advance(249ms);
    s.image.turnWheel(1);
    CHECK(s.image.scale() == doctest::Approx(1.5625));
    s.loop.advance(250ms);
    s.image.turnWheel(-1);
    CHECK(s.image.scale() == doctest::Approx(1.25));
}

TEST_CASE("a wheel that ends hardly zoomed snaps back")
{
    Shown s;
    s.image.turnWheel(1);
    s.image.turnWheel(-0.98);
    CHECK(s.image.scale() == doctest::Approx(1.0045).epsilon(0.0005));
    s.loop.advance(250ms);
    CHECK(s.image.zoom() == Zoom {});
    CHECK(s.changes.back() == 150ms);
}

TEST_CASE("what the wheel turns beyond a limit is not to be turned back")
{
    Shown s;
    s.image.turnWheel(50);
    CHECK(s.image.scale() == 10.0);
    s.image.turnWheel(-1);
    CHECK(s.image.scale() == doctest::Approx(8));
    s.image.turnWheel(-50);
    CHECK(s.image.scale() == 1.0);
    s.image.turnWheel(1);
    CHECK(s.image.scale() == doctest::Approx(1.25));
}

TEST_CASE("a pinch after a turn of the wheel goes on from there")
{
    Shown s;
    s.image.turnWheel(1);
    s.image.pinch(2);
    CHECK(s.image.scale() == doctest::Approx(2.5));
    s.loop.advance(1s);
    s.image.endPinch();
    CHECK(s.image.scale() == doctest::Approx(2.5));
}

TEST_CASE("a double click amid turns of the wheel counts")
{
    Shown s;
    s.image.turnWheel(1);
    s.image.doubleClick();
    CHECK(s.image.scale() == 1.0);
    s.image.turnWheel(1);
    CHECK(s.image.scale() == doctest::Approx(1.25));
}

TEST_CASE("the keys zoom in steps between the limits")
{
    Shown s;
    s.image.zoomIn();
    CHECK(s.image.scale() == doctest::Approx(1.25));
    s.image.zoomOut();
    CHECK(s.image.zoom() == Zoom {});
    s.image.zoomOut();
    CHECK(s.image.scale() == 1.0);
    for (int i = 0; i < 20; ++i)
        s.image.zoomIn();
    CHECK(s.image.scale() == 10.0);
    s.dragBy(20, 0);
    s.image.showFitted();
    CHECK(s.image.zoom() == Zoom {});
}

TEST_CASE("pixel for pixel is shown as near as the limits allow")
{
    Shown s;
    s.image.showPixels(3.2);
    CHECK(s.image.scale() == doctest::Approx(3.2));
    CHECK(s.fullLoads() == 1);
    s.dragBy(20, 0);
    s.image.showPixels(40);
    CHECK(s.image.zoom() == Zoom { 10, { 20, 0 } });
    s.image.showPixels(0.2);
    CHECK(s.image.zoom() == Zoom {});
}
