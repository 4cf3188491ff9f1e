#include "qt/app/ApplicationService.h"
#include "app/ServiceText.h"
#include "qt/app/OpenRequest.h"
#include "qt/ports/FileUrlText.h"
#include <QDBusError>
#include <utility>

namespace pixelhain {

ApplicationService::ApplicationService() = default;
ApplicationService::~ApplicationService() = default;

void ApplicationService::serve(Asked asked)
{
    asked_ = std::move(asked);
    // Who asked then has been told that it is taken.
    if (auto const request = std::exchange(waiting_, nullptr))
        static_cast<void>(asked_(*request));
}

void ApplicationService::ask(OpenRequest const& request)
{
    if (asked_) {
        if (!asked_(request) && calledFromDBus())
            sendErrorReply(QDBusError::Failed, shownText(service::isEnding));
    } else if (request.file || request.action || !waiting_) { // not forgotten for a mere call
        waiting_ = std::make_unique<OpenRequest const>(request);
    }
}

void ApplicationService::Activate(QVariantMap const& platformData)
{
    ask(OpenRequest::fromPlatformData(std::nullopt, platformData));
}

void ApplicationService::Open(QStringList const& uris, QVariantMap const& platformData)
{
    if (uris.isEmpty())
        return;
    auto const file = fileUrlFromUri(uris.front().toStdString());
    if (file)
        ask(OpenRequest::fromPlatformData(file->standardized(), platformData));
    else if (calledFromDBus())
        sendErrorReply(QDBusError::InvalidArgs, shownText(service::notAFile));
}

void ApplicationService::ActivateAction(
    QString const& action, QVariantList const& parameter, QVariantMap const& platformData)
{
    auto const known = serviceActionNamed(action.toStdString());
    if (known && parameter.isEmpty()) {
        auto request = OpenRequest::fromPlatformData(std::nullopt, platformData);
        request.action = known;
        ask(request);
    } else if (calledFromDBus())
        sendErrorReply(QDBusError::InvalidArgs, shownText(service::noSuchAction));
}

} // namespace pixelhain
