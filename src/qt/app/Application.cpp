#include "qt/app/Application.h"
#include "images/InfoLines.h"
#include "qt/app/AboutDialog.h"
#include "qt/app/ApplicationService.h"
#include "qt/app/OpenRequest.h"
#include "qt/app/Services.h"
#include "qt/app/WindowActivation.h"
#include "qt/window/ProgramIcon.h"
#include "sidebar/SidebarPorts.h"
#include "viewer/AnimatedImageView.h"
#include <QApplication>
#include <QFile>
#include <QLibraryInfo>
#include <QTranslator>
#include <chrono>

namespace pixelhain {

namespace {

// So that the first menu knows what is installed; nobody opens one sooner.
constexpr std::chrono::seconds untilFirstMenu { 2 };
constexpr std::chrono::seconds iconDelay { 1 };

void speakGerman()
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    auto* translator = new QTranslator(qApp);
    if (translator->load(
            QStringLiteral("qtbase_de"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(translator);
}

ImageLoader::Services loaderServices(Services& services)
{
    return { services.loop, services.background, *services.decoder, services.thumbQueue,
        services.displayQueue,
        [&prepared = services.prepared](ImageRef const& image) { prepared.prepare(image); } };
}

Ports ports(Services& services, Preferences& preferences, PicturePrefetch& prefetch)
{
    return { services.loop, services.background, services.files, preferences, services.textOrder,
        services.imageTypes, services.panels, services.operations, services.clipboard,
        services.workspace, prefetch, services.screenAwake, services.random,
        &services.folderEvents };
}

SidebarPorts sidebarPorts(Services& services)
{
    return { services.loop, services.background, services.files, services.textOrder,
        services.imageTypes, &services.folderEvents, &services.workspace };
}

ContactSheetExport::Services sheetServices(
    Services& services, BrowserModel& model, ImageLoader& loader)
{
    return { model, services.loop, services.panels, services.workspace,
        { loader, services.sheetQueue, Services::thumbWidth(), services.pdf },
        [&formats = services.formats] { return formats.date(std::chrono::system_clock::now()); },
        services.background, services.replacements };
}

} // namespace

Application::Application(Services& services)
    : services_(services)
    , preferences_(QtPreferences::defaultFile())
    , loader_(loaderServices(services), Services::loaderLimits())
    , prefetch_(loader_)
    , model_(ports(services, preferences_, prefetch_))
    , thumbnails_(loader_)
    , menu_({ model_, services.workspace, services.sharing, services.clipboard })
    , window_({ model_, thumbnails_, services.background, services.loop, &menu_ },
          sidebarPorts(services))
    , keeper_(window_, preferences_, services.loop)
    , pictures_(loader_)
    , share_(model_, services.sharing, services.clipboard)
    , sheets_(sheetServices(services, model_, loader_))
    , sheetPresenter_(model_, sheets_, window_)
    // The same way out as by the window's own button: files are finished, settings are written.
    , endings_([this] { end(); })
    , screens_([this] { delegate_.applicationDidChangeScreenParameters(); })
    , delegate_(model_, services.loop, screens_,
          [this](std::span<Screen const> all) { loader_.updateDisplayPixelSize(all); })
    , milestones_(trace_, model_, window_)
{
    addViewer();
    watchMilestones();
    services_.panels.setParent(&window_);
    // The toolkit ends the program after this, whatever is shown until then.
    QObject::connect(
        qApp, &QGuiApplication::lastWindowClosed, &window_, [this] { isEnding_ = true; });
    window_.activated = [this] { delegate_.applicationDidBecomeActive(); };
    window_.closed = [this] { mainWindowClosed(); };
    window_.quit = [this] { end(); };
    window_.openHelp = [this] { help().bringForward(); };
    window_.openAbout = [this] { AboutDialog::open(window_, services_.missingHolds->text()); };
}

void Application::addViewer()
{
    window_.content().addViewer({ model_, pictures_, services_.background, services_.loop,
        services_.prepared,
        [this](PhotoItem const& item) {
            return infoLines(item, *services_.decoder, services_.formats);
        },
        &share_,
        [this](std::function<void()> changed) {
            return std::make_unique<AnimatedImageView>(
                AnimatedImageView::House { *services_.decoder, services_.background, services_.loop,
                    [] { return std::chrono::steady_clock::now().time_since_epoch(); } },
                loader_.displayPixelSize(), std::move(changed));
        } });
}

void Application::watchMilestones()
{
    window_.shown = [this] {
        milestones_.windowShown();
        // Finding it in the desktop's theme takes as long as the first pictures.
        icon_ = services_.loop.after(iconDelay, [] { QApplication::setWindowIcon(programIcon()); });
    };
    window_.content().grid().painted = [this] { milestones_.painted(); };
    window_.content().viewer()->picture().painted = [this] { milestones_.painted(); };
}

HelpWindow& Application::help()
{
    if (!help_) {
        help_ = std::make_unique<HelpWindow>(services_.textOrder);
        help_->quit = [this] { end(); };
    }
    return *help_;
}

// Where a token proves that a person asked, it is for the window that they asked for.
void Application::perform(ServiceAction action, OpenRequest const& request)
{
    switch (action) {
    case ServiceAction::chooseFolder:
        bringForward(window_, request);
        return model_.chooseFolder();
    case ServiceAction::showHelp:
        return bringForward(help(), request);
    }
}

void Application::start(CommandLine const& line, OpenRequest const& request)
{
    delegate_.openUrls(line.files);
    showFirst(window_, request);
    speakGerman();
    delegate_.applicationDidFinishLaunching();
    looking_ = services_.loop.after(untilFirstMenu, [this] { services_.sharing.refresh(); });
    if (line.screenshot)
        screenshot_ = std::make_unique<Screenshot>(
            QFile::decodeName(line.screenshot->c_str()), model_, window_, !line.files.empty());
    else if (line.action)
        perform(*line.action, {});
}

void Application::end()
{
    isEnding_ = true;
    QApplication::closeAllWindows();
}

// The program may live on with the help window, and the main window may come back.
void Application::mainWindowClosed()
{
    model_.stopSlideshow();
    // A window that refused, while a file was under way, had kept the others open.
    if (isEnding_)
        QMetaObject::invokeMethod(
            qApp, [] { QApplication::closeAllWindows(); }, Qt::QueuedConnection);
}

void Application::answer(ApplicationService& service)
{
    service.serve([this](OpenRequest const& request) { return take(request); });
}

// The main window may have been closed while the help was open. One that is about to close, as soon
// as no file is under way, would take with it what is opened in it now.
bool Application::take(OpenRequest const& request)
{
    if (isEnding_ || window_.isClosing())
        return false;
    if (request.action) {
        perform(*request.action, request);
        return true;
    }
    if (request.file)
        delegate_.openUrls({ &*request.file, 1 });
    bringForward(window_, request);
    return true;
}

} // namespace pixelhain
