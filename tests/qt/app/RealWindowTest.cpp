#include "codecs/CodecImageTypes.h"
#include "decoder/InProcessDecoder.h"
#include "icu/IcuTextOrder.h"
#include "images/ImageLoader.h"
#include "model/BrowserModel.h"
#include "posix/PosixFileOperations.h"
#include "posix/PosixFileSystem.h"
#include "posix/ThreadPool.h"
#include "posix/ThreadQueue.h"
#include "qt/Wait.h"
#include "qt/ports/QtMainLoop.h"
#include "qt/window/MainWindowWidget.h"
#include "sidebar/SidebarPorts.h"
#include "support/FakeClipboard.h"
#include "support/FakePanels.h"
#include "support/FakePicturePrefetch.h"
#include "support/FakePreferences.h"
#include "support/FakeRandomSource.h"
#include "support/FakeScreenAwake.h"
#include "support/FakeWorkspace.h"
#include "support/TemporaryFolder.h"
#include <QPixmap>
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

void savePicture(FileUrl const& url, QColor const& color, QSize size = { 900, 600 })
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    REQUIRE(image.save(QString::fromUtf8(url.cString())));
}

bool isClose(QColor const& a, QColor const& b)
{
    return std::abs(a.red() - b.red()) < 6 && std::abs(a.green() - b.green()) < 6
        && std::abs(a.blue() - b.blue()) < 6;
}

// The program as it is, but for the settings and the dialogs. Queues end before what they use.
struct Program {
    QtMainLoop loop;
    InProcessDecoder decoder;
    PosixFileSystem files;
    IcuTextOrder textOrder { "de_DE" };
    CodecImageTypes imageTypes;
    FakePreferences preferences;
    FakePanels panels;
    PosixFileOperations operations;
    FakeClipboard clipboard;
    FakeWorkspace workspace;
    FakePicturePrefetch prefetch;
    FakeScreenAwake screenAwake;
    FakeRandomSource random;
    ThreadPool background;
    ThreadQueue thumbQueue { 2, 5 };
    ThreadQueue displayQueue { 3, 2 };
    ImageLoader loader { { loop, background, decoder, thumbQueue, displayQueue } };
    BrowserModel model { { loop, background, files, preferences, textOrder, imageTypes, panels,
        operations, clipboard, workspace, prefetch, screenAwake, random } };
    LoaderThumbnails thumbnails { loader };
    MainWindowWidget window { { model, thumbnails, background, loop },
        { loop, background, files, textOrder, imageTypes } };

    Program() { window.show(); }

    bool shows(FileUrl const& folder)
    {
        model.open(folder);
        return eventually([&] {
            return *model.folder == folder && !model.items->empty() && window.isComplete();
        });
    }

    QColor colorInCell(std::size_t index)
    {
        auto const& grid = window.content().grid();
        auto const area = grid.view().layout().thumbnailArea(index);
        auto const image = window.content().grid().viewport()->grab().toImage();
        auto const scale = image.devicePixelRatio();
        return image.pixelColor(static_cast<int>((area.x + area.width / 2) * scale),
            static_cast<int>((area.y + area.height / 2 - grid.top()) * scale));
    }
};

} // namespace

TEST_CASE("the pictures of a folder on the disk stand in the window")
{
    TemporaryFolder folder;
    savePicture(folder.url().child("2.jpg"), QColor(200, 40, 40));
    savePicture(folder.url().child("10.png"), QColor(40, 200, 40));
    Program program;
    REQUIRE(program.shows(folder.url()));
    REQUIRE(program.model.items->size() == 2);
    CHECK(isClose(program.colorInCell(0), QColor(200, 40, 40)));
    CHECK(isClose(program.colorInCell(1), QColor(40, 200, 40)));
}

TEST_CASE("files that are no pictures show a placeholder and the rest goes on")
{
    TemporaryFolder folder;
    (void)folder.file("1 leer.jpg");
    (void)folder.file("2 kein bild.png", "no picture at all");
    savePicture(folder.url().child("3.jpg"), QColor(40, 40, 200));
    savePicture(folder.url().child("4 \xe4.png.tmp.png"), QColor(40, 200, 40));
    Program program;
    REQUIRE(program.shows(folder.url()));
    auto const& view = program.window.content().grid().view();
    CHECK(view.cell(0).showsFailure());
    CHECK(view.cell(1).showsFailure());
    CHECK(isClose(program.colorInCell(2), QColor(40, 40, 200)));
}

TEST_CASE("a photo that vanishes before it is decoded shows a placeholder")
{
    TemporaryFolder folder;
    savePicture(folder.url().child("a.jpg"), Qt::red);
    savePicture(folder.url().child("b.jpg"), QColor(40, 40, 200));
    Program program;
    program.model.open(folder.url());
    REQUIRE(eventually([&] {
        if (program.model.items->empty())
            return false;
        std::filesystem::remove(std::filesystem::path(folder.url().child("a.jpg").path()));
        return true;
    }));
    REQUIRE(eventually([&] { return program.window.isComplete(); }));
    CHECK(isClose(program.colorInCell(1), QColor(40, 40, 200)));
}

TEST_CASE("the window may close while pictures are still being decoded")
{
    TemporaryFolder folder;
    for (int i = 0; i < 30; ++i)
        savePicture(folder.url().child(std::to_string(i) + ".png"), Qt::red, { 1500, 1500 });
    Program program;
    program.model.open(folder.url());
    REQUIRE(eventually([&] { return !program.model.items->empty(); }));
    program.window.close();
    CHECK_FALSE(program.window.isVisible());
}
