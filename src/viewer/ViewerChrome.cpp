#include "viewer/ViewerChrome.h"
#include "base/Text.h"
#include "model/BrowserModel.h"
#include "ports/MainWindow.h"

namespace pixelhain {

std::string ViewerChrome::position() const
{
    auto const index = model_.viewerIndex->value_or(0);
    return std::to_string(index + 1) + " / " + std::to_string(model_.items->size());
}

std::string ViewerChrome::spokenName() const
{
    auto const place = std::to_string(model_.viewerIndex->value_or(0) + 1) + " von "
        + std::to_string(model_.items->size());
    auto const* const mark = model_.selection->contains(item_.url) ? ", ausgewählt" : "";
    return name() + ", " + place + mark;
}

std::string ViewerChrome::name() const
{
    return displayText(item_.name());
}

ViewerChrome::Button ViewerChrome::button(Action action) const
{
    constexpr Tint primary { ColorRole::primary };
    switch (action) {
    case Action::close:
        return { "xmark", primary, "Zurück zur Übersicht (Esc / Leertaste)",
            "Zurück zur Übersicht" };
    case Action::select: {
        bool const isSelected = model_.selection->contains(item_.url);
        return { isSelected ? "checkmark.circle.fill" : "circle",
            isSelected ? Tint { ColorRole::accent } : primary,
            "Auswählen und weiter zum nächsten Foto (X)", isSelected ? "Ausgewählt" : "Auswählen" };
    }
    case Action::info:
        return { "info.circle", primary, "Infos (I)", "Infos" };
    case Action::slideshow:
        return { "play.fill", primary, "Diashow ab hier (D)", "Diashow ab hier" };
    case Action::trash:
        return { "trash", primary, "In den Papierkorb (⌘⌫)", "In den Papierkorb" };
    case Action::share:
        return { "square.and.arrow.up", primary, "Teilen", "Teilen" };
    case Action::fullScreen:
        break;
    }
    return { "arrow.up.left.and.arrow.down.right", primary, "Vollbild (F)", "Vollbild" };
}

ViewerChrome::Arrow ViewerChrome::arrow(Side side) const
{
    bool const isLeft = side == Side::left;
    bool const isHovered = isLeft ? hoverLeft : hoverRight;
    return { isLeft ? "chevron.left" : "chevron.right",
        { ColorRole::black, isHovered ? 0.35 : 0.001 },
        { ColorRole::white, isHovered ? 0.95 : 0.35 },
        isLeft ? "Vorheriges Foto" : "Nächstes Foto" };
}

bool ViewerChrome::showsArrows() const
{
    return model_.items->size() > 1;
}

void ViewerChrome::perform(Action action)
{
    switch (action) {
    case Action::close:
        model_.closeViewer();
        break;
    case Action::select:
        model_.markInViewer();
        break;
    case Action::info:
        model_.toggleInfo();
        break;
    case Action::trash:
        model_.trash({ item_.url });
        break;
    case Action::slideshow:
        model_.startSlideshow();
        break;
    case Action::share:
        break;
    case Action::fullScreen:
        if (auto* const window = model_.window())
            window->toggleFullScreen();
        break;
    }
}

void ViewerChrome::step(Side side)
{
    model_.stepViewer(side == Side::left ? -1 : +1);
}

} // namespace pixelhain
