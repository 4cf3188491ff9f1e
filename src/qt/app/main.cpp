#include "app/AppDelegate.h"
#include "codecs/ImageCodecs.h"
#include "contactsheet/ContactSheetExport.h"
#include "decoder/ChosenDecoder.h"
#include "icu/IcuTextFormats.h"
#include "icu/IcuTextOrder.h"
#include "images/ImageLoader.h"
#include "images/InfoLines.h"
#include "images/LoaderPrefetch.h"
#include "model/BrowserModel.h"
#include "model/FolderNames.h"
#include "pdf/CairoPdf.h"
#include "posix/InotifyFolderEvents.h"
#include "posix/PosixFileOperations.h"
#include "posix/PosixFileReplacement.h"
#include "posix/PosixFileSystem.h"
#include "posix/SystemRandom.h"
#include "posix/ThreadPool.h"
#include "posix/ThreadQueue.h"
#include "qt/app/CommandLine.h"
#include "qt/app/DesktopColors.h"
#include "qt/app/HelpWindow.h"
#include "qt/app/Milestones.h"
#include "qt/app/Screenshot.h"
#include "qt/app/TerminationSignals.h"
#include "qt/app/Trace.h"
#include "qt/contactsheet/ContactSheetDialogWidget.h"
#include "qt/ports/QtClipboard.h"
#include "qt/ports/QtMainLoop.h"
#include "qt/ports/QtPanels.h"
#include "qt/ports/QtPreferences.h"
#include "qt/ports/QtScreenAwake.h"
#include "qt/ports/QtScreens.h"
#include "qt/ports/QtSharing.h"
#include "qt/ports/QtWorkspace.h"
#include "qt/ports/UserTime.h"
#include "qt/viewer/PreparedPictures.h"
#include "qt/viewer/ViewerImageWidget.h"
#include "qt/window/MainWindowWidget.h"
#include "sidebar/SidebarPorts.h"
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLibraryInfo>
#include <QTranslator>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <thread>

namespace {

using namespace pixelhain;

// Decoding takes what the window leaves over: a frame is never late because of it.
constexpr int thumbNiceness = 5;
constexpr int displayNiceness = 2;
constexpr int sheetNiceness = 10; // whoever waits for a document looks at photos meanwhile
constexpr std::size_t displayWidth = 3;

std::size_t thumbWidth()
{
    return std::max<std::size_t>(2, std::thread::hardware_concurrency());
}

// What people may look at next leaves a processor to what they look at now.
ImageLoader::Limits loaderLimits()
{
    constexpr unsigned fewProcessors = 2;
    ImageLoader::Limits limits;
    if (std::thread::hardware_concurrency() <= fewProcessors)
        limits.prefetchWidth = 1;
    return limits;
}

// The first screen keeps two processors busy while the rest of the program starts; what else the
// queues may want is started when they do.
std::unique_ptr<ImageDecoder> startDecoder()
{
    constexpr std::size_t first = 2;
    constexpr std::size_t viewer = 2; // what is known of the photo, and its animation
    return chosenDecoder({ 2 * thumbWidth() + displayWidth + viewer, first, displayNiceness });
}

FileUrl currentFolder()
{
    std::error_code error;
    auto const path = std::filesystem::current_path(error).native();
    return FileUrl(error ? "/" : path);
}

bool isTreeName(std::string_view name)
{
    return !isHiddenName(name) && !isPackageName(name);
}

// What the whole program needs besides its window. Threads that decode are never waited for: they
// only read, and end with the process.
struct Services {
    explicit Services(std::unique_ptr<ImageDecoder> chosen)
        : decoder(std::move(chosen))
    {
    }

    QtMainLoop loop;
    std::unique_ptr<ImageDecoder> decoder;
    PosixFileSystem files;
    IcuTextOrder textOrder { orderingLocale(::getenv) };
    CodecImageTypes imageTypes;
    QtPanels panels;
    PosixFileOperations operations;
    QtClipboard clipboard;
    UserTime userTime;
    QtWorkspace workspace { loop, userTime };
    QtSharing sharing { loop, userTime };
    QtScreenAwake screenAwake;
    SystemRandom random;
    ThreadPool background;
    InotifyFolderEvents folderEvents { loop, { isTreeName } };
    ThreadQueue thumbQueue { thumbWidth(), thumbNiceness };
    ThreadQueue displayQueue { displayWidth, displayNiceness };
    ThreadQueue sheetQueue { thumbWidth(), sheetNiceness };
    PosixFileReplacements replacements;
    CairoPdfWriter pdf { replacements };
    IcuTextFormats formats { formatLocales(::getenv) };
    PreparedPictures prepared;
};

void speakGerman(QApplication& application)
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    auto* translator = new QTranslator(&application);
    if (translator->load(
            QStringLiteral("qtbase_de"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(translator);
}

int run(QApplication& application, CommandLine const& line, Services& services)
{
    Trace const trace;
    QtPreferences preferences(QtPreferences::defaultFile());
    ImageLoader loader(
        { services.loop, services.background, *services.decoder, services.thumbQueue,
            services.displayQueue,
            [&prepared = services.prepared](ImageRef const& image) { prepared.prepare(image); } },
        loaderLimits());
    LoaderPrefetch prefetch(loader);
    BrowserModel model({ services.loop, services.background, services.files, preferences,
        services.textOrder, services.imageTypes, services.panels, services.operations,
        services.clipboard, services.workspace, prefetch, services.screenAwake, services.random,
        &services.folderEvents });
    LoaderThumbnails thumbnails(loader);
    ThumbnailMenu menu({ model, services.workspace, services.sharing, services.clipboard });
    MainWindowWidget window({ model, thumbnails, services.background, services.loop, &menu },
        { services.loop, services.background, services.files, services.textOrder,
            services.imageTypes, &services.folderEvents, &services.workspace });
    LoaderPictures pictures(loader, services.background, services.loop);
    ShareMenu share(model, services.sharing, services.clipboard);
    window.content().addViewer({ model, pictures, services.background, services.loop,
        services.prepared,
        [&services](
            PhotoItem const& item) { return infoLines(item, *services.decoder, services.formats); },
        &share,
        [&](std::function<void()> changed) {
            return std::make_unique<AnimatedImageView>(
                AnimatedImageView::House { *services.decoder, services.background, services.loop,
                    [] { return std::chrono::steady_clock::now().time_since_epoch(); } },
                loader.displayPixelSize(), std::move(changed));
        } });
    ContactSheetExport sheets({ model, services.loop, services.panels, services.workspace,
        { loader, services.sheetQueue, thumbWidth(), services.pdf },
        [&] { return services.formats.date(std::chrono::system_clock::now()); } });
    ContactSheetPresenter const sheetPresenter(model, sheets, window);
    // The same way out as by the window's own button: files are finished, settings are written.
    TerminationSignals const endings([] { QApplication::closeAllWindows(); });
    services.panels.setParent(&window);

    std::unique_ptr<AppDelegate> delegate;
    QtScreens const screens([&] { delegate->applicationDidChangeScreenParameters(); });
    delegate = std::make_unique<AppDelegate>(model, services.loop, screens,
        [&](std::span<Screen const> all) { loader.updateDisplayPixelSize(all); });
    window.activated = [&] { delegate->applicationDidBecomeActive(); };

    std::unique_ptr<HelpWindow> help;
    window.openHelp = [&] {
        if (!help)
            help = std::make_unique<HelpWindow>(services.textOrder);
        help->bringForward();
    };

    Milestones milestones(trace, model, window);
    window.shown = [&] { milestones.windowShown(); };
    window.content().grid().painted = [&] { milestones.painted(); };
    window.content().viewer()->picture().painted = [&] { milestones.painted(); };

    // So that the first menu knows what is installed; nobody opens one sooner.
    auto const looking
        = services.loop.after(std::chrono::seconds(2), [&] { services.sharing.refresh(); });

    delegate->openUrls(line.files);
    window.show();
    speakGerman(application);
    delegate->applicationDidFinishLaunching();

    std::unique_ptr<Screenshot> screenshot;
    if (line.screenshot)
        screenshot = std::make_unique<Screenshot>(
            QFile::decodeName(line.screenshot->c_str()), model, window, !line.files.empty());
    return QApplication::exec();
}

} // namespace

int main(int argc, char** argv)
{
    TerminationSignals::hold();
    QCoreApplication::setApplicationName(QStringLiteral("pixelhain"));
    QCoreApplication::setApplicationVersion(QStringLiteral(PIXELHAIN_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("de.pixelhain.Pixelhain"));
    auto const parsed = [&] {
        return CommandLine::parse(
            { argv + 1, static_cast<std::size_t>(argc - 1) }, currentFolder());
    };
    if (auto const line = parsed(); line.wantsHelp || line.wantsVersion) {
        std::fputs(
            line.wantsHelp ? CommandLine::helpText().data() : "pixelhain " PIXELHAIN_VERSION "\n",
            stdout);
        return 0;
    }
    // Beside the toolkit's own start.
    auto decoder = startDecoder();
    QApplication application(argc, argv);
    DesktopColors const colors;
    auto const line = parsed();
    if (line.error) {
        std::fprintf(stderr, "pixelhain: %s\n", line.error->c_str());
        return 2;
    }
    auto* const services = new Services(std::move(decoder));
    auto const code = run(application, line, *services);
    std::fflush(nullptr);
    std::_Exit(code);
}
