// Frames of the gallery while it scrolls through very many photos, beside two limits taken in the
// same run: copying the surface once, and painting a bare page of cached pictures. Processor time
// of the main thread, so that other load on the machine does not count; wall time beside it.
//
// pixelhain-bench-grid [PHOTOS]
#include "bench/Times.h"
#include "codecs/CodecImageTypes.h"
#include "icu/IcuTextOrder.h"
#include "model/BrowserModel.h"
#include "ports/Panels.h"
#include "posix/PosixFileOperations.h"
#include "posix/PosixFileSystem.h"
#include "posix/ThreadPool.h"
#include "qt/ports/QtClipboard.h"
#include "qt/ports/QtMainLoop.h"
#include "qt/ports/QtPreferences.h"
#include "qt/ports/QtWorkspace.h"
#include "qt/ports/UserTime.h"
#include "qt/window/DrawnPicture.h"
#include "qt/window/GridWidget.h"
#include "support/FakePanels.h"
#include "support/FakePicturePrefetch.h"
#include "support/FakeRandomSource.h"
#include "support/FakeScreenAwake.h"
#include "window/ThumbnailSource.h"
#include <QApplication>
#include <QPainter>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace pixelhain {

namespace {

constexpr double tail = 0.99; // of the times that are printed

ImageRef noise(int width, int height, unsigned seed)
{
    auto bitmap = Bitmap::allocate({ width, height }, true);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            seed = seed * 1664525 + 1013904223;
            reinterpret_cast<QRgb*>(bitmap.row(y))[x] = 0xff000000 | (seed >> 8);
        }
    return std::make_shared<CGImageBox>(CGImageBox { bitmap, PixelOrigin::scaled });
}

// Every thumbnail is in memory, as after a first look through the folder.
class CachedThumbnails final : public ThumbnailSource {
public:
    CachedThumbnails()
    {
        for (unsigned i = 0; i < 100; ++i)
            pictures_.push_back(i % 3 == 0 ? noise(171, 256, i) : noise(256, 171, i));
    }
    Task loadThumbnail(
        FileUrl const&, int, Turn const&, ImageLoader::LookDone, ImageLoader::ImageDone) override
    {
        return {};
    }
    void turnsChanged() override { }
    Task loadMeta(FileUrl const&, ImageLoader::MetaDone) override { return {}; }
    ImageRef cachedThumbnail(FileUrl const& url, int) const override
    {
        return pictures_[std::hash<FileUrl> {}(url) % pictures_.size()];
    }
    ImageRef cachedThumbnailOfAnySize(FileUrl const& url) const override
    {
        return cachedThumbnail(url, 0);
    }
    std::optional<ImageMeta> knownMeta(FileUrl const&) const override
    {
        return ImageMeta { PixelSize { 6000, 4000 }, false };
    }

private:
    std::vector<ImageRef> pictures_;
};

void makePhotos(QString const& folder, int count)
{
    for (int i = 1; i <= count; ++i) {
        auto const name = folder + QStringLiteral("/IMG_%1.jpg").arg(i);
        ::close(::open(qPrintable(name), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
    }
}

class Bench {
public:
    Bench(QString const& folder, QString const& settings)
        : preferences_(settings)
    {
        model_.open(FileUrl(folder.toStdString()));
        while (model_.isLoading || model_.items->empty())
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
        std::printf("%zu photos; milliseconds: processor and wall: median, p99, longest\n",
            model_.items->size());
    }

    void run(QSize size)
    {
        std::printf("%d x %d\n", size.width(), size.height());
        limits(size);
        GridWidget grid({ model_, thumbnails_, background_, loop_ });
        grid.resize(size);
        grid.show();
        grid.modelChanged();
        settle(grid);
        scroll(grid, "scrolling by the wheel, 40 points a frame", 40, 1500);
        scroll(grid, "scrolling fast, 200 points a frame", 200, 1000);
        scroll(grid, "turning whole pages", size.height(), 300);
        Times whole(tail);
        for (int i = 0; i < 200; ++i)
            whole.measure([&] {
                grid.viewport()->update();
                frame(grid);
            });
        whole.print("painting the whole page again");
    }

private:
    static void frame(QWidget& window)
    {
        QEvent request(QEvent::UpdateRequest);
        QApplication::sendEvent(&window, &request);
    }

    static void settle(GridWidget& grid)
    {
        do
            QApplication::processEvents(QEventLoop::AllEvents, 5);
        while (!grid.isComplete());
    }

    void scroll(GridWidget& grid, char const* name, int step, int frames)
    {
        Times times(tail);
        for (int i = 0; i < frames; ++i) {
            times.measure([&] {
                grid.scrollTo(grid.top() + step);
                frame(grid);
            });
            // What arrives between frames is painted with the next one.
            QApplication::processEvents(QEventLoop::AllEvents, 1);
        }
        times.print(name);
        settle(grid);
    }

    void limits(QSize size)
    {
        QImage surface(size, QImage::Format_RGB32);
        QImage other(size, QImage::Format_RGB32);
        other.fill(Qt::gray);
        auto const bytes = static_cast<std::size_t>(surface.sizeInBytes());
        Times copying(tail);
        for (int i = 0; i < 200; ++i)
            copying.measure([&] { std::memcpy(surface.bits(), other.constBits(), bytes); });
        copying.print("limit: copying the surface");
        auto const picture = noise(160, 160, 1);
        auto const image = imageOf(picture->image);
        Times painting(tail);
        for (int i = 0; i < 200; ++i)
            painting.measure([&] {
                QPainter painter(&surface);
                painter.fillRect(surface.rect(), Qt::white);
                for (int y = 0; y < size.height(); y += 218)
                    for (int x = 0; x < size.width(); x += 180)
                        painter.drawImage(x, y, image);
            });
        painting.print("limit: a bare page of pictures");
    }

    QtMainLoop loop_;
    PosixFileSystem files_;
    IcuTextOrder textOrder_ { "de_DE" };
    CodecImageTypes imageTypes_;
    QtPreferences preferences_;
    FakePanels panels_;
    ThreadPool background_;
    CachedThumbnails thumbnails_;
    PosixFileOperations operations_;
    QtClipboard clipboard_;
    UserTime userTime_;
    QtWorkspace workspace_ { loop_, userTime_ };
    FakePicturePrefetch prefetch_;
    FakeScreenAwake screenAwake_;
    FakeRandomSource random_;
    BrowserModel model_ { { loop_, background_, files_, preferences_, textOrder_, imageTypes_,
        panels_, operations_, clipboard_, workspace_, prefetch_, screenAwake_, random_ } };
};

} // namespace

} // namespace pixelhain

int main(int argc, char** argv)
{
    setvbuf(stdout, nullptr, _IOLBF, 0);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QTemporaryDir folder;
    QTemporaryDir settings;
    pixelhain::makePhotos(folder.path(), argc > 1 ? std::atoi(argv[1]) : 100'000);
    pixelhain::Bench bench(folder.path(), settings.filePath(QStringLiteral("settings.ini")));
    bench.run({ 1920, 1080 });
    bench.run({ 3840, 2160 });
    return 0;
}
