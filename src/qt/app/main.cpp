#include "qt/app/Application.h"
#include "qt/app/CommandLine.h"
#include "qt/app/DesktopColors.h"
#include "qt/app/Services.h"
#include "qt/app/TerminationSignals.h"
#include <QApplication>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

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

int run(CommandLine const& line, Services& services)
{
    Application application(services);
    application.start(line);
    return QApplication::exec();
}

} // namespace

int main(int argc, char** argv)
{
    TerminationSignals::hold();
    QCoreApplication::setApplicationName(QStringLiteral("pixelhain"));
    QCoreApplication::setApplicationVersion(QStringLiteral(PIXELHAIN_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("de.pixelhain.Pixelhain"));
    if (answersAtOnce(parsed(argc, argv)))
        return 0;
    // Beside the toolkit's own start.
    auto decoder = Services::startDecoder();
    QApplication application(argc, argv);
    DesktopColors const colors;
    auto const line = parsed(argc, argv); // without the toolkit's own options
    if (line.error) {
        std::fprintf(stderr, "pixelhain: %s\n", line.error->c_str());
        return 2;
    }
    auto* const services = new Services(std::move(decoder));
    auto const code = run(line, *services);
    std::fflush(nullptr);
    std::_Exit(code);
}
