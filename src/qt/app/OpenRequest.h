#pragma once
#include "base/FileUrl.h"
#include "qt/app/ServiceAction.h"
#include <QString>
#include <QVariantMap>
#include <optional>
#include <string>

namespace pixelhain {

/// What a start of the program, or the desktop, asks of the program that runs already: to come to
/// the front and, where a file or an action is named, to open or do it.
struct OpenRequest {
    std::optional<FileUrl> file;
    /// By which an X11 window manager, or a Wayland compositor, knows that a person wants this;
    /// empty if unknown. At most `longestToken` printable ASCII characters.
    std::string startupId;
    std::string activationToken;
    std::optional<ServiceAction> action {}; ///< none beside a file

    static constexpr std::size_t longestToken = 512;

    /// The tokens that the launcher gave this process in its environment. The one for Wayland is
    /// taken out of it; the other is left there for the toolkit. To be called before the toolkit
    /// starts and before there is a second thread.
    static OpenRequest takeFromEnvironment(std::optional<FileUrl> file);

    /// As they travel beside every call of org.freedesktop.Application. What is of no use is left
    /// out, whoever sent it.
    static OpenRequest fromPlatformData(
        std::optional<FileUrl> file, QVariantMap const& platformData);
    QVariantMap platformData() const;
};

} // namespace pixelhain
