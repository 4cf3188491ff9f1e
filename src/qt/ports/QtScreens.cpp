#include "qt/ports/QtScreens.h"
#include <QGuiApplication>
#include <QScreen>

namespace pixelhain {

QtScreens::QtScreens(std::function<void()> changed)
    : changed_(std::move(changed))
{
    for (auto* screen : QGuiApplication::screens())
        watch(screen);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, [this](QScreen* screen) {
        watch(screen);
        changed_();
    });
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, [this] { changed_(); });
}

void QtScreens::watch(QScreen* screen)
{
    connect(screen, &QScreen::geometryChanged, this, [this] { changed_(); });
    connect(screen, &QScreen::physicalDotsPerInchChanged, this, [this] { changed_(); });
}

std::vector<Screen> QtScreens::all() const
{
    std::vector<Screen> screens;
    for (auto const* screen : QGuiApplication::screens()) {
        auto const size = screen->size();
        screens.push_back({ static_cast<double>(size.width()), static_cast<double>(size.height()),
            screen->devicePixelRatio() });
    }
    return screens;
}

} // namespace pixelhain
