// The viewer: frames while a 100-megapixel photo is zoomed and moved in a window of 3840 x 2160,
// beside what the toolkit takes for the same by its plain ways; frames of a cross-fade; and the
// time from a key to the finished picture of real photos, prefetched or not, beside their bare
// decode. All drawing is in software. Processor time of the main thread, wall time beside it.
//
// pixelhain-bench-viewer [PHOTOS]
#include "bench/Times.h"
#include "codecs/CodecImageTypes.h"
#include "decoder/ChosenDecoder.h"
#include "icu/IcuTextOrder.h"
#include "images/ImageLoader.h"
#include "model/BrowserModel.h"
#include "posix/PosixFileOperations.h"
#include "posix/PosixFileSystem.h"
#include "posix/ThreadPool.h"
#include "posix/ThreadQueue.h"
#include "qt/ports/QtClipboard.h"
#include "qt/ports/QtMainLoop.h"
#include "qt/ports/QtPreferences.h"
#include "qt/ports/QtWorkspace.h"
#include "qt/ports/UserTime.h"
#include "qt/viewer/PreparedPictures.h"
#include "qt/viewer/ViewerImageWidget.h"
#include "qt/viewer/ViewerWidget.h"
#include "qt/window/DrawnPicture.h"
#include "support/FakePanels.h"
#include "support/FakePicturePrefetch.h"
#include "support/FakeRandomSource.h"
#include "support/FakeScreenAwake.h"
#include <QApplication>
#include <QElapsedTimer>
#include <QPainter>
#include <QTemporaryDir>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace pixelhain {

namespace {

constexpr double tail = 0.95; // of the times that are printed

ImageRef painted(PixelSize size, unsigned seed)
{
    auto bitmap = Bitmap::allocate(size, true);
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x) {
            seed = seed * 1664525 + 1013904223;
            auto const wave
                = static_cast<unsigned>((x * 255LL / size.width + y * 90LL / size.height) & 255);
            reinterpret_cast<QRgb*>(bitmap.row(y))[x]
                = 0xff000000 | (wave << 16) | ((255 - wave) << 8) | (seed >> 26);
        }
    return std::make_shared<CGImageBox>(CGImageBox { bitmap, PixelOrigin::full });
}

// Every picture is in memory.
class PaintedPictures final : public ViewerSource {
public:
    explicit PaintedPictures(MainLoop& loop)
        : loop_(loop)
    {
    }
    Task loadDisplayImage(FileUrl const&, ImageLoader::ImageDone) override { return {}; }
    Task loadFullImage(FileUrl const&, ImageLoader::ImageDone done) override
    {
        loop_.post([done = std::move(done), full = full] { done(full); });
        return {};
    }
    Task loadMeta(FileUrl const&, ImageLoader::MetaDone) override { return {}; }
    Task loadPreview(FileUrl const&, ImageLoader::ImageDone) override { return {}; }
    ImageRef cachedThumbnail(FileUrl const&) const override { return nullptr; }
    int displayPixelSize() const override { return 3840; }
    ImageRef cachedDisplayImage(FileUrl const& url) const override
    {
        return std::hash<FileUrl> {}(url) % 2 == 0 ? display : other;
    }
    std::optional<ImageMeta> knownMeta(FileUrl const&) const override
    {
        return ImageMeta { PixelSize { 12'240, 8'160 }, false };
    }

    ImageRef full = painted({ 12'240, 8'160 }, 1);
    ImageRef display = painted({ 3840, 2560 }, 2);
    ImageRef other = painted({ 3840, 2560 }, 3);

private:
    MainLoop& loop_;
};

void frame(QWidget& window)
{
    QEvent request(QEvent::UpdateRequest);
    QApplication::sendEvent(&window, &request);
}

void events()
{
    QApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

struct Desk {
    Desk(QString const& folder, QString const& settings)
        : preferences(settings)
    {
        model.open(FileUrl(folder.toStdString()));
        while (model.isLoading || model.items->empty())
            events();
    }

    QtMainLoop loop;
    PosixFileSystem files;
    IcuTextOrder textOrder { "de_DE" };
    CodecImageTypes imageTypes;
    QtPreferences preferences;
    FakePanels panels;
    ThreadPool background;
    PosixFileOperations operations;
    QtClipboard clipboard;
    UserTime userTime;
    QtWorkspace workspace { loop, userTime };
    FakePicturePrefetch prefetch;
    FakeScreenAwake screenAwake;
    FakeRandomSource random;
    BrowserModel model { { loop, background, files, preferences, textOrder, imageTypes, panels,
        operations, clipboard, workspace, prefetch, screenAwake, random } };
    PreparedPictures prepared;
};

struct Viewer {
    QWidget window;
    ViewerWidget widget;
    Observation observation;

    Viewer(Desk& desk, ViewerSource& source, QSize size)
        : widget(
            { desk.model, source, desk.background, desk.loop, desk.prepared, nullptr, nullptr },
            &window)
        , observation(desk.model.observe([this] { widget.modelChanged(); }))
    {
        window.resize(size);
        widget.resize(size);
        window.show();
        desk.prepared.setArea({ size.width(), size.height() });
    }

    void settle()
    {
        do
            events();
        while (!widget.isComplete());
    }
    ViewerImage& image() { return *widget.container().image(); }
};

void naive(PaintedPictures const& pictures, QSize size)
{
    QImage surface(size, QImage::Format_RGB32);
    auto const full = imageOf(pictures.full->image);
    auto const display = imageOf(pictures.display->image);
    auto const half = imageOf(halved(pictures.full->image));
    struct Way {
        char const* name;
        QImage const& image;
        bool isSmooth;
        double scale; ///< of the fitted size
    };
    for (auto const& way : { Way { "toolkit: fitted from all pixels, plain", full, false, 1 },
             Way { "toolkit: fitted from all pixels, smooth", full, true, 1 },
             Way { "toolkit: zoomed 1.4 from the half, smooth", half, true, 1.4 },
             Way { "toolkit: zoomed 3 from all pixels, smooth", full, true, 3 },
             Way { "toolkit: screen-sized picture, smooth", display, true, 1 } }) {
        Times times(tail);
        for (int i = 0; i < 12; ++i)
            times.measure([&] {
                QPainter painter(&surface);
                painter.setRenderHint(QPainter::SmoothPixmapTransform, way.isSmooth);
                auto const height = size.height() * way.scale;
                auto const width = height * way.image.width() / way.image.height();
                painter.drawImage(
                    QRectF((size.width() - width) / 2, (size.height() - height) / 2, width, height),
                    way.image);
            });
        times.print(way.name);
    }
    Times scaling(tail);
    for (int i = 0; i < 3; ++i)
        scaling.measure([&] {
            std::ignore = full.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation).isNull();
        });
    scaling.print("toolkit: scaled copy of all pixels, smooth");
    Times copying(tail);
    auto const copy = display.copy(0, 0, size.width(), size.height());
    for (int i = 0; i < 50; ++i)
        copying.measure([&] { QPainter(&surface).drawImage(0, 0, copy); });
    copying.print("limit: painting a copy of the screen's size");
}

void zoomAndPan(Desk& desk, PaintedPictures& pictures, QSize size)
{
    std::printf("100 megapixels in %d x %d\n", size.width(), size.height());
    naive(pictures, size);
    Viewer viewer(desk, pictures, size);
    desk.model.openViewer(0);
    viewer.settle();
    auto const step = [&](Times& times, auto move) {
        times.measure([&] {
            move();
            frame(viewer.window);
        });
        QApplication::processEvents(QEventLoop::AllEvents, 1);
    };
    Times zooming(tail);
    for (int i = 0; i < 240; ++i)
        step(zooming, [&] { viewer.image().pinch(std::pow(10.0, i / 240.0)); });
    for (int i = 240; i > 0; --i)
        step(zooming, [&] { viewer.image().pinch(std::pow(10.0, i / 240.0)); });
    zooming.print("zooming from 1 to 10 and back");
    for (auto const scale : { 1.5, 3.0, 8.0 }) {
        viewer.image().showPixels(scale);
        viewer.settle();
        Times panning(tail);
        for (int i = 0; i < 240; ++i)
            step(panning, [&] { viewer.image().drag({ i * 8.0, i * 3.0 }); });
        viewer.image().endDrag();
        panning.print(scale == 1.5 ? "moving at 1.5" : scale == 3 ? "moving at 3" : "moving at 8");
        viewer.image().showFitted();
        viewer.settle();
    }
    Times sharpening(tail);
    for (int i = 0; i < 5; ++i)
        sharpening.measure([&] {
            viewer.image().showPixels(1.5 + i);
            viewer.settle();
        });
    sharpening.print("a zoom by key until it stands sharp");
    desk.model.closeViewer();
    while (viewer.widget.isVisible())
        events();
}

void crossFade(Desk& desk, PaintedPictures& pictures, QSize size)
{
    std::printf("Cross-fade in %d x %d\n", size.width(), size.height());
    Viewer viewer(desk, pictures, size);
    desk.model.openViewer(0);
    viewer.settle();
    Times fading(tail);
    for (int round = 0; round < 4; ++round) {
        desk.model.openViewer(static_cast<std::size_t>(round + 1) % desk.model.items->size());
        events();
        viewer.widget.picture().photoChanged(crossFadeTime);
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < crossFadeTime.count()) {
            viewer.widget.picture().update();
            fading.measure([&] { frame(viewer.window); });
            QApplication::processEvents(QEventLoop::AllEvents, 1);
        }
    }
    fading.print("a frame of the cross-fade");
    desk.model.closeViewer();
    while (viewer.widget.isVisible())
        events();
}

// From the key to the frame that shows the photo as it stays.
void paging(Desk& desk, QSize size)
{
    std::printf("Paging through %zu photos in %d x %d\n", desk.model.items->size(), size.width(),
        size.height());
    auto const decoder = chosenDecoder({ .width = 5, .first = 2 });
    ThreadQueue thumbQueue(2, 5);
    ThreadQueue displayQueue(3, 2);
    ImageLoader::Limits limits;
    limits.displayPixelSize = std::max(size.width(), size.height());
    ImageLoader loader({ desk.loop, desk.background, *decoder, thumbQueue, displayQueue,
                           [&](ImageRef const& image) { desk.prepared.prepare(image); } },
        limits);
    LoaderPictures pictures(loader);
    Viewer viewer(desk, pictures, size);
    auto const& items = *desk.model.items;
    desk.model.openViewer(0);
    viewer.settle();
    auto const show = [&](std::size_t index) {
        desk.model.openViewer(index);
        do
            events();
        while (viewer.widget.container().image()->item().url != items[index].url
            || !viewer.widget.isComplete());
    };
    Times decoding(tail);
    Times fresh(tail);
    Times prefetched(tail);
    for (std::size_t i = 1; i + 1 < items.size(); i += 2) {
        decoding.measure([&] {
            std::ignore = loader.decodeImage(
                items[i].url, limits.displayPixelSize, EmbeddedPreviews::ignore);
        });
        fresh.measure([&] { show(i); });
        loader.prefetchDisplay(items[i + 1].url);
        prefetched.measure([&] { show(i + 1); });
    }
    decoding.print("bare decode at the size of the screen");
    fresh.print("key to the finished picture, not prefetched");
    prefetched.print("key to the finished picture, prefetched");
    desk.model.closeViewer();
    while (viewer.widget.isVisible())
        events();
    displayQueue.add([] {});
}

void makePhotos(QString const& folder, int count)
{
    for (int i = 1; i <= count; ++i) {
        auto const name = folder + QStringLiteral("/IMG_%1.jpg").arg(i);
        ::close(::open(qPrintable(name), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
    }
}

} // namespace

} // namespace pixelhain

int main(int argc, char** argv)
{
    using namespace pixelhain;
    setvbuf(stdout, nullptr, _IOLBF, 0);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QTemporaryDir folder;
    QTemporaryDir settings;
    auto const settingsFile = settings.filePath(QStringLiteral("settings.ini"));
    std::puts("milliseconds: processor median, p95, longest; wall median, p95, longest");
    makePhotos(folder.path(), 6);
    {
        auto* const desk = new Desk(folder.path(), settingsFile);
        auto* const pictures = new PaintedPictures(desk->loop);
        zoomAndPan(*desk, *pictures, { 3840, 2160 });
        crossFade(*desk, *pictures, { 1920, 1080 });
    }
    if (argc > 1) {
        auto* const desk = new Desk(QString::fromLocal8Bit(argv[1]), settingsFile);
        paging(*desk, { 1920, 1080 });
    }
    std::fflush(nullptr);
    std::_Exit(0);
}
