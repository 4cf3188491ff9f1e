#include "viewer/ViewerContainer.h"
#include "support/Desk.h"
#include "support/FakeImageDecoder.h"
#include "support/FakeThumbnails.h"
#include "support/FakeViewerSource.h"
#include <doctest/doctest.h>

using namespace pixelhain;
using namespace std::chrono_literals;
using Kind = FakeViewerSource::Kind;
using Layer = ViewerContainer::Layer;
using Layers = std::vector<Layer>;

namespace {

struct Viewer {
    Desk desk;
    FakeViewerSource source;
    int photoChanges = 0;
    ViewerContainer container { { desk.model(), source, desk.background, desk.loop },
        [this] { ++photoChanges; }, [](auto) {} };
    Observation observation = desk.model().observe([this] { container.modelChanged(); });

    Viewer() { desk.open("/Fotos", { "a.jpg", "b.jpg", "c.jpg" }); }

    BrowserModel& model() { return desk.model(); }
    FileUrl url(std::size_t index) { return (*model().items)[index].url; }
    void open(std::size_t index)
    {
        model().openViewer(index);
        desk.settle();
    }
    std::string shown() const
    {
        return container.image() ? std::string(container.image()->item().name()) : "";
    }
};

} // namespace

TEST_CASE("the viewer has a photo while one is open, a new one for each step")
{
    Viewer v;
    CHECK_FALSE(v.container.image());
    CHECK(v.container.layers().empty());
    v.open(0);
    CHECK(v.shown() == "a.jpg");
    CHECK(v.source.wanted(Kind::display) == Names { "a.jpg" });
    v.container.image()->doubleClick();
    v.model().stepViewer(+1);
    v.desk.settle();
    CHECK(v.shown() == "b.jpg");
    CHECK(v.container.image()->zoom() == Zoom {});
    CHECK(v.source.wanted(Kind::display) == Names { "b.jpg" });
    CHECK(v.source.wanted(Kind::full).empty());
    v.model().closeViewer();
    v.desk.settle();
    CHECK_FALSE(v.container.image());
    CHECK_FALSE(v.container.chrome());
    CHECK(v.source.wanted(Kind::display).empty());
    CHECK(v.photoChanges == 3);
}

TEST_CASE("a photo that only moves in the list stays as it is")
{
    Viewer v;
    v.open(0);
    v.container.image()->doubleClick();
    v.model().setAscending(false);
    v.desk.settle();
    REQUIRE(v.shown() == "a.jpg");
    CHECK(v.container.image()->scale() == 2.5);
    CHECK(v.container.chrome()->position() == "3 / 3");
    CHECK(v.photoChanges == 1);
}

TEST_CASE("a photo whose file changed keeps its picture, and its new size and date are known")
{
    Viewer v;
    v.open(0);
    v.container.image()->doubleClick();
    auto const url = v.url(0);
    v.desk.files.addFile(url, 77);
    v.model().reload();
    v.desk.settle();
    REQUIRE(v.container.item());
    CHECK(v.container.item()->url == url);
    CHECK(v.container.item()->size == 77);
    CHECK(v.container.image()->scale() == 2.5);
    CHECK(v.photoChanges == 1);
    v.model().closeViewer();
    v.desk.settle();
    CHECK_FALSE(v.container.item());
}

TEST_CASE("a photo that is put into the trash makes way for the next")
{
    Viewer v;
    v.open(1);
    v.container.chrome()->perform(ViewerChrome::Action::trash);
    v.desk.settle();
    CHECK(v.shown() == "c.jpg");
}

TEST_CASE("what is known of the file says whether it moves, and nothing is waited for")
{
    Viewer v;
    v.source.metas[v.url(0)] = ImageMeta { PixelSize { 10, 10 }, true };
    v.source.metas[v.url(1)] = ImageMeta { PixelSize { 10, 10 }, false };
    v.open(0);
    CHECK(v.container.image()->isAnimated());
    CHECK(v.source.asked(Kind::display) == 0);
    v.open(1);
    CHECK_FALSE(v.container.image()->isAnimated());
    CHECK(v.source.asked(Kind::meta) == 0);
    v.open(2);
    CHECK(v.source.wanted(Kind::meta) == Names { "c.jpg" });
    CHECK_FALSE(v.container.image()->isAnimated());
    v.source.answerMeta(ImageMeta { PixelSize { 10, 10 }, true });
    CHECK(v.container.image()->isAnimated());
    CHECK(v.source.wanted(Kind::display).empty());
}

TEST_CASE("a photo that turns out to move keeps its still picture until it does")
{
    Viewer v;
    v.open(0);
    auto const still = std::make_shared<CGImageBox>(CGImageBox { grayBitmap({ 4, 3 }) });
    v.source.answer(Kind::display, still);
    REQUIRE(v.container.image()->shown() == still);
    v.source.answerMeta(ImageMeta { PixelSize { 10, 10 }, true });
    CHECK(v.container.image()->isAnimated());
    CHECK(v.container.image()->shown() == still);
}

TEST_CASE("what stands for a photo is measured as the picture that will come")
{
    Viewer v;
    CHECK(v.container.standInShape() == PixelSize {});
    v.source.thumbnails[v.url(0)]
        = std::make_shared<CGImageBox>(CGImageBox { grayBitmap({ 256, 170 }) });
    v.open(0);
    CHECK(v.container.standInShape() == PixelSize { 256, 170 });
    v.source.answerMeta(ImageMeta { PixelSize { 6000, 4001 }, false });
    CHECK(v.container.standInShape() == PixelSize { 1920, 1280 });
    v.source.answer(Kind::display, pictureOf(1920, 1280));
    CHECK(v.container.standInShape() == PixelSize {});
}

TEST_CASE("what stood for a photo that turns out to move stays until it does")
{
    Viewer v;
    auto const small = std::make_shared<CGImageBox>(CGImageBox { grayBitmap({ 256, 170 }) });
    v.source.thumbnails[v.url(0)] = small;
    v.open(0);
    v.source.answerMeta(ImageMeta { PixelSize { 10, 10 }, true });
    CHECK(v.container.image()->isAnimated());
    CHECK(v.container.image()->standIn() == small);
    CHECK_FALSE(v.container.image()->shown());
    CHECK(v.container.standInShape() == PixelSize { 10, 10 });
}

TEST_CASE("a file without metadata counts as still")
{
    Viewer v;
    v.open(0);
    v.source.answerMeta(std::nullopt);
    CHECK_FALSE(v.container.image()->isAnimated());
    CHECK(v.source.wanted(Kind::display) == Names { "a.jpg" });
}

TEST_CASE("the layers lie over each other in their order")
{
    Viewer v;
    v.open(0);
    CHECK(v.container.layers() == Layers { Layer::ground, Layer::picture, Layer::chrome });
    v.model().toggleInfo();
    CHECK(v.container.layers()
        == Layers { Layer::ground, Layer::picture, Layer::chrome, Layer::infoPanel });
    v.model().startSlideshow();
    CHECK(v.container.layers() == Layers { Layer::ground, Layer::picture, Layer::infoPanel });
    v.model().toggleSlideshowPause();
    CHECK(v.container.layers()
        == Layers { Layer::ground, Layer::picture, Layer::pauseLabel, Layer::infoPanel });
    CHECK(ViewerContainer::pauseText == "Pausiert – Leertaste setzt fort, Esc beendet");
    CHECK(ViewerContainer::pauseSymbol == "pause.fill");
    v.model().stopSlideshow();
    CHECK(v.container.shows(Layer::chrome));
    CHECK_FALSE(v.container.shows(Layer::pauseLabel));
}

TEST_CASE("only the slideshow's own steps blend")
{
    Viewer v;
    v.open(0);
    CHECK(v.container.transitionTime() == 0ms);
    v.model().startSlideshow();
    v.desk.loop.advance(4s);
    CHECK(v.shown() == "b.jpg");
    CHECK(v.container.transitionTime() == 700ms);
    v.model().stepViewer(+1);
    v.desk.settle();
    CHECK(v.container.transitionTime() == 0ms);
}

TEST_CASE("the wheel steps through the photos, and beeps at the ends")
{
    Viewer v;
    v.open(0);
    v.container.shown();
    v.container.turnWheel(120);
    CHECK(v.desk.window.beepCount == 1);
    v.container.turnWheel(-120);
    v.desk.settle();
    CHECK(v.shown() == "b.jpg");
    v.container.turnWheel(-120);
    v.desk.settle();
    CHECK(v.shown() == "b.jpg");
    v.container.shown();
    v.container.turnWheel(-120);
    v.desk.settle();
    CHECK(v.shown() == "c.jpg");
}

TEST_CASE("pictures of a photo that was left are given back off the main thread")
{
    Viewer v;
    auto picture = pictureOf(30, 20);
    std::weak_ptr const watched = picture;
    v.source.pictures[v.url(0)] = picture;
    v.open(0);
    v.source.pictures.clear();
    picture.reset();
    CHECK_FALSE(watched.expired());
    v.model().stepViewer(+1);
    v.desk.loop.settle();
    CHECK_FALSE(watched.expired());
    v.desk.background.finishAll();
    CHECK(watched.expired());
}
