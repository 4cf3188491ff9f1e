#include "app/AppDelegate.h"
#include "model/BrowserModel.h"
#include "ports/MainLoop.h"
#include "ports/Screens.h"
#include <utility>

namespace pixelhain {

AppDelegate::AppDelegate(BrowserModel& model, MainLoop& loop, Screens const& screens,
    std::function<void(std::span<Screen const>)> useScreens)
    : model_(model)
    , loop_(loop)
    , screens_(screens)
    , useScreens_(std::move(useScreens))
{
}

void AppDelegate::applicationDidFinishLaunching()
{
    applicationDidChangeScreenParameters();
}

void AppDelegate::applicationDidChangeScreenParameters()
{
    auto const all = screens_.all();
    useScreens_(all);
}

void AppDelegate::applicationDidBecomeActive()
{
    model_.refreshTree();
}

void AppDelegate::openUrls(std::span<FileUrl const> urls)
{
    if (urls.empty())
        return;
    loop_.post([this, alive = std::weak_ptr(alive_), url = urls.front()] {
        if (!alive.expired())
            model_.open(url);
    });
}

} // namespace pixelhain
