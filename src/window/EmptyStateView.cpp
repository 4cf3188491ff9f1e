#include "window/EmptyStateView.h"
#include "model/BrowserModel.h"

namespace pixelhain {

EmptyStateView EmptyStateView::noFolder()
{
    EmptyStateView view;
    view.symbol = "photo.stack";
    view.symbolSize = 56;
    view.spacing = 16;
    view.text = "Ordner wählen oder hierher ziehen";
    view.button = "Ordner öffnen …";
    return view;
}

EmptyStateView EmptyStateView::noPhotos(BrowserModel const& model)
{
    EmptyStateView view;
    view.symbol = "photo.on.rectangle.angled";
    view.symbolSize = 44;
    view.spacing = 10;
    view.isTextSecondary = true;
    // What is typed may still be looked for.
    bool const isSearched = !model.shownChoice().searchText.empty();
    view.text = isSearched ? "Keine Treffer" : "Keine Fotos in diesem Ordner";
    if (!isSearched && !model.includeSubfolders)
        view.hint = "Unterordner findest du links in der Seitenleiste.";
    return view;
}

} // namespace pixelhain
