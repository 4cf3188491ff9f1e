// The folder tree over very many folders, in the process that shows it.
//
// pixelhain-bench-tree open ROOT     milliseconds until the tree is painted, the longest time that
//                                    the main thread was busy in one piece, watches and memory
// pixelhain-bench-tree count ROOT    counts the photos directly in each subfolder of ROOT
#include "bench/Times.h"
#include "codecs/CodecImageTypes.h"
#include "icu/IcuTextOrder.h"
#include "model/BrowserModel.h"
#include "model/FolderNames.h"
#include "model/PhotoTest.h"
#include "ports/Panels.h"
#include "posix/InotifyFolderEvents.h"
#include "posix/PosixFileSystem.h"
#include "posix/ThreadPool.h"
#include "qt/ports/QtMainLoop.h"
#include "qt/ports/QtPreferences.h"
#include "qt/sidebar/FolderTreeWidget.h"
#include "qt/sidebar/SidebarWidget.h"
#include "sidebar/FolderListing.h"
#include "support/FakeClipboard.h"
#include "support/FakeFileOperations.h"
#include "support/FakePanels.h"
#include "support/FakePicturePrefetch.h"
#include "support/FakeRandomSource.h"
#include "support/FakeScreenAwake.h"
#include "support/FakeWorkspace.h"
#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QThread>
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <numeric>
#include <string>

namespace pixelhain {

namespace {

// Measures how long each event keeps the main thread busy, what it brings about included.
class WatchedApplication final : public QApplication {
public:
    using QApplication::QApplication;

    bool notify(QObject* receiver, QEvent* event) override
    {
        if (depth_ > 0)
            return QApplication::notify(receiver, event);
        ++depth_;
        QElapsedTimer wall;
        wall.start();
        auto const before = Moment::now().processor;
        bool const result = QApplication::notify(receiver, event);
        longestWall = std::max(longestWall, static_cast<double>(wall.nsecsElapsed()) / 1e6);
        longest = std::max(longest, Moment::now().processor - before);
        --depth_;
        return result;
    }

    double longest = 0;
    double longestWall = 0;

private:
    int depth_ = 0;
};

std::size_t watchCount()
{
    std::size_t count = 0;
    for (auto const& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code error;
        if (std::filesystem::read_symlink(entry, error) != "anon_inode:inotify")
            continue;
        std::ifstream info("/proc/self/fdinfo" / entry.path().filename());
        for (std::string line; std::getline(info, line);)
            count += line.starts_with("inotify wd:") ? 1U : 0U;
    }
    return count;
}

double residentMegabytes()
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmRSS:"))
            return std::stod(line.substr(6)) / 1024;
    return 0;
}

bool isTreeName(std::string_view name)
{
    return !isHiddenName(name) && !isPackageName(name);
}

struct Services {
    QtMainLoop loop;
    ThreadPool background;
    PosixFileSystem files;
    IcuTextOrder textOrder { "de_DE" };
    CodecImageTypes imageTypes;
    FakePanels panels;
    FakeFileSystem noFiles;
    FakeFileOperations operations { noFiles };
    FakeClipboard clipboard;
    FakeWorkspace workspace;
    FakePicturePrefetch prefetch;
    FakeScreenAwake screenAwake;
    FakeRandomSource random;
    InotifyFolderEvents folderEvents { loop, { isTreeName } };
};

template <typename Condition> double until(QElapsedTimer const& clock, Condition condition)
{
    while (!condition())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    return static_cast<double>(clock.nsecsElapsed()) / 1e6;
}

void measureOpening(WatchedApplication& application, FileUrl const& root)
{
    auto& services = *new Services;
    QTemporaryDir const folder;
    QtPreferences preferences(folder.filePath(QStringLiteral("settings.ini")));
    BrowserModel model({ services.loop, services.background, services.files, preferences,
        services.textOrder, services.imageTypes, services.panels, services.operations,
        services.clipboard, services.workspace, services.prefetch, services.screenAwake,
        services.random, &services.folderEvents });
    SidebarWidget sidebar(model,
        { services.loop, services.background, services.files, services.textOrder,
            services.imageTypes, &services.folderEvents });
    auto const observation = model.observe([&] { sidebar.modelChanged(); });
    sidebar.resize(230, 1000);
    sidebar.show();
    QCoreApplication::processEvents();
    auto const memory = residentMegabytes();
    application.longest = application.longestWall = 0;

    QElapsedTimer clock;
    clock.start();
    auto const rows = [&] { return sidebar.tree().visibleNodes().size(); };
    model.open(root);
    auto const painted = until(clock, [&] { return rows() > 0; });
    auto const listed = until(clock, [&] { return rows() > 1; });
    auto const complete = until(clock, [&] { return sidebar.view().isComplete(); });
    std::printf(
        "first-paint %.1f\nrows-painted %.1f\nrows-counted %.1f\n", painted, listed, complete);
    std::printf("longest-busy %.1f\nlongest-busy-wall %.1f\n", application.longest,
        application.longestWall);

    application.longest = application.longestWall = 0;
    model.refreshTree();
    int const version = model.treeVersion;
    clock.restart();
    until(clock, [&] { return clock.elapsed() > 50 && sidebar.view().isComplete(); });
    std::printf("refresh-longest-busy %.1f\nrefresh %.1f\n", application.longest,
        static_cast<double>(clock.nsecsElapsed()) / 1e6);
    std::size_t watches = 0;
    std::size_t before = 1;
    while (watches != before) {
        before = std::exchange(watches, watchCount());
        QThread::msleep(300);
    }
    std::printf("watches %zu\nmegabytes %.1f\nchanges %d\n", watches, residentMegabytes() - memory,
        model.treeVersion - version);
}

void measureCounting(FileUrl const& root)
{
    Services const services;
    CodecImageTypes imageTypes;
    PhotoTest photoTest(imageTypes);
    FolderTools const tools { services.files, services.textOrder, photoTest };
    auto const folders = subfolderURLs(tools, root);
    std::size_t photos = 0;
    for (auto const& folder : folders)
        photos += directPhotoCount(tools, folder);
    std::printf("folders %zu\nphotos %zu\n", folders.size(), photos);
}

} // namespace

} // namespace pixelhain

int main(int argc, char** argv)
{
    pixelhain::WatchedApplication application(argc, argv);
    if (argc != 3)
        return 2;
    pixelhain::FileUrl const root(argv[2]);
    if (std::string_view(argv[1]) == "open")
        pixelhain::measureOpening(application, root);
    else
        pixelhain::measureCounting(root);
    std::fflush(nullptr);
    std::_Exit(0);
}
