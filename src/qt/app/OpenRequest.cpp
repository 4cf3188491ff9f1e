#include "qt/app/OpenRequest.h"
#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <utility>

namespace pixelhain {

namespace {

QString const startupIdKey = QStringLiteral("desktop-startup-id");
QString const tokenKey = QStringLiteral("activation-token");

// They are handed on to the window manager and to the environment.
std::string usableToken(std::string_view text)
{
    auto const isPrintable = [](char letter) { return letter > ' ' && letter <= '~'; };
    if (text.size() > OpenRequest::longestToken || !std::ranges::all_of(text, isPrintable))
        return {};
    return std::string(text);
}

std::string environmentToken(char const* variable)
{
    auto const* const value = std::getenv(variable);
    return value ? usableToken(value) : std::string();
}

std::string platformToken(QVariantMap const& data, QString const& key)
{
    auto const value = data.value(key);
    return value.typeId() == QMetaType::QString ? usableToken(value.toString().toStdString())
                                                : std::string();
}

} // namespace

OpenRequest OpenRequest::takeFromEnvironment(std::optional<FileUrl> file)
{
    constexpr auto tokenVariable = "XDG_ACTIVATION_TOKEN";
    OpenRequest request { std::move(file), environmentToken("DESKTOP_STARTUP_ID"),
        environmentToken(tokenVariable) };
    qunsetenv(tokenVariable);
    return request;
}

OpenRequest OpenRequest::fromPlatformData(
    std::optional<FileUrl> file, QVariantMap const& platformData)
{
    return { std::move(file), platformToken(platformData, startupIdKey),
        platformToken(platformData, tokenKey) };
}

QVariantMap OpenRequest::platformData() const
{
    QVariantMap data;
    if (!startupId.empty())
        data.insert(startupIdKey, QString::fromStdString(startupId));
    if (!activationToken.empty())
        data.insert(tokenKey, QString::fromStdString(activationToken));
    return data;
}

} // namespace pixelhain
