#include "support/Desk.h"
#include <algorithm>
#include <utility>

namespace pixelhain {

Desk::Desk()
{
    start();
}

Desk::~Desk() = default;

void Desk::start()
{
    browser.reset();
    browser.emplace(
        Ports { loop, background, files, preferences, textOrder, imageTypes, panels, operations,
            clipboard, workspace, prefetch, screenAwake, random, &folderEvents, scanPatience });
    browser->setWindow(&window);
    loop.settle();
}

BrowserModel& Desk::model()
{
    return *browser;
}

SidebarPorts Desk::sidebarPorts()
{
    return { loop, background, files, textOrder, imageTypes, &folderEvents, &workspace };
}

void Desk::settle()
{
    do {
        background.finishAll();
        loop.settle();
    } while (background.pending() > 0);
}

void Desk::finish(std::size_t index)
{
    background.finish(index);
    loop.settle();
}

FileUrl Desk::folder(std::string const& path, std::vector<std::string> const& names)
{
    FileUrl const url(path);
    files.addFolder(path);
    for (auto const& name : names)
        files.addFile(url.child(name));
    return url;
}

FileUrl Desk::open(std::string const& path, std::vector<std::string> const& names)
{
    auto const url = folder(path, names);
    model().open(url);
    settle();
    return url;
}

bool Desk::press(KeyEvent event)
{
    event.window = &window;
    return model().handleKey(event);
}

bool Desk::press(int keyCode, bool shift)
{
    return press(KeyEvent { .keyCode = keyCode, .shift = shift });
}

bool Desk::type(std::string characters)
{
    return press(KeyEvent { .characters = std::move(characters) });
}

std::vector<std::string> Desk::marked()
{
    std::vector<std::string> names;
    for (auto const& url : *model().selection)
        names.emplace_back(url.name());
    std::ranges::sort(names);
    return names;
}

std::string Desk::status()
{
    return model().status->value_or("");
}

std::vector<std::string> Desk::names()
{
    std::vector<std::string> shown;
    for (auto const& item : *model().items)
        shown.emplace_back(item.name());
    return shown;
}

} // namespace pixelhain
