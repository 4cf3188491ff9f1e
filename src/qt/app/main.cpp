#include "model/Settings.h"
#include "posix/SilentBus.h"
#include "qt/app/Application.h"
#include "qt/app/ApplicationService.h"
#include "qt/app/CommandLine.h"
#include "qt/app/DesktopColors.h"
#include "qt/app/FontWarmUp.h"
#include "qt/app/OutOfResources.h"
#include "qt/app/Services.h"
#include "qt/app/SingleInstance.h"
#include "qt/app/TerminationSignals.h"
#include "qt/ports/QtPreferences.h"
#include "qt/ports/SessionBus.h"
#include <QApplication>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <vector>

namespace {

using namespace pixelhain;

FileUrl currentFolder()
{
    std::error_code error;
    auto const path = std::filesystem::current_path(error).native();
    return FileUrl(error ? "/" : path);
}

CommandLine parsed(int argc, char** argv)
{
    return CommandLine::parse({ argv + 1, static_cast<std::size_t>(argc - 1) }, currentFolder());
}

bool answersAtOnce(CommandLine const& line)
{
    if (line.wantsHelp)
        std::fputs(CommandLine::helpText().data(), stdout);
    else if (line.wantsVersion)
        std::fputs("pixelhain " PIXELHAIN_VERSION "\n", stdout);
    return line.wantsHelp || line.wantsVersion;
}

// Threads that wait for a disk or for the session bus are not waited for.
[[noreturn]] void end(int code)
{
    std::fflush(nullptr);
    std::_Exit(code);
}

std::optional<FileUrl> firstOf(std::vector<FileUrl> const& files)
{
    return files.empty() ? std::nullopt : std::optional(files.front());
}

// A bus that answers needs a fraction of a millisecond; each caller would wait half a minute for
// one that hangs, the toolkit among them.
void leaveSilentBusAlone()
{
    constexpr std::chrono::seconds patience { 1 };
    if (isSilentBus(sessionBusAddress().toStdString(), patience))
        doWithoutSessionBus();
}

bool standsApart(CommandLine const& line)
{
    return line.startsApart || line.screenshot;
}

// Without a folder there is nothing to decode, and the window comes sooner alone.
bool hasFolder(CommandLine const& line)
{
    return line.hasSureFile
        || !LastFolders::read(QtPreferences(QtPreferences::defaultFile())).folders.empty();
}

int run(CommandLine const& line, OpenRequest request, SingleInstance* instance, Services& services,
    ApplicationService& service)
{
    Application application(services);
    // The last moment at which another window is seen by nobody.
    request.file = firstOf(line.files);
    request.action = line.action;
    if (instance && instance->handOver(request))
        return 0;
    application.start(line, request);
    application.answer(service);
    return QApplication::exec();
}

} // namespace

int main(int argc, char** argv)
{
    sayWhyWhenOutOfResources();
    TerminationSignals::hold();
    QCoreApplication::setApplicationName(QStringLiteral("pixelhain"));
    QCoreApplication::setApplicationVersion(QStringLiteral(PIXELHAIN_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("de.pixelhain.Pixelhain"));
    auto const early = parsed(argc, argv);
    if (answersAtOnce(early))
        return 0;
    auto request = OpenRequest::takeFromEnvironment(firstOf(early.files));
    request.action = early.action;
    leaveSilentBusAlone();
    FontWarmUp fonts; // not sooner: it reads the environment, which the above may change
    ApplicationService service;
    std::optional<SingleInstance> instance;
    if (!standsApart(early))
        instance.emplace(service);
    // With options of the toolkit among them it is not known yet what are files.
    if (instance && !early.error && instance->handOver(request))
        end(0);
    // Beside the toolkit's own start.
    auto decoder = Services::startDecoder(hasFolder(early));
    QApplication application(argc, argv);
    giveSessionBusBack();
    fonts.toolkitIsReady();
    DesktopColors const colors;
    auto const line = parsed(argc, argv); // without the toolkit's own options
    if (line.error) {
        std::fprintf(stderr, "pixelhain: %s\n", line.error->c_str());
        end(2);
    }
    auto* const services = new Services(std::move(decoder));
    end(run(line, request, instance ? &*instance : nullptr, *services, service));
}
