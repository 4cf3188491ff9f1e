#pragma once
#include "contactsheet/ContactSheetOptions.h"
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace pixelhain {

class BrowserModel;
class ContactSheetExport;

/// What the dialog for one contact sheet shows and does. Each opening of the dialog is a new one of
/// these, with the usual options.
class ContactSheetDialog {
public:
    static constexpr double width = 380; ///< points
    static constexpr double spacing = 14; ///< between its parts
    static constexpr double padding = 20; ///< on every side
    static constexpr std::string_view heading = "Kontaktabzug erstellen";
    static constexpr std::string_view titleLabel = "Titel";
    static constexpr std::string_view columnsName = "Spalten"; ///< for who hears the control
    static constexpr std::string_view paperLabel = "Papier";
    static constexpr std::string_view landscapeTitle = "Querformat";
    static constexpr std::string_view namesTitle = "Dateinamen anzeigen";
    static constexpr std::string_view cancelTitle = "Abbrechen"; ///< also by Escape
    static constexpr std::string_view createTitle = "Erstellen …"; ///< also by Return

    /// Both must outlive it.
    ContactSheetDialog(BrowserModel& model, ContactSheetExport& sheets);

    [[nodiscard]] ContactSheetOptions const& options() const { return options_; }

    /// "Alle 40 Fotos", "3 ausgewählte Fotos": what the export takes, as of the opening.
    [[nodiscard]] std::string countText() const;
    /// "Spalten: 5"
    [[nodiscard]] std::string columnsText() const;

    void setTitle(std::string title) { options_.title = std::move(title); }
    /// Brought into the range that the dialog offers.
    void setColumns(int columns);
    void setPaper(PaperSize paper) { options_.paper = paper; }
    void setLandscape(bool landscape) { options_.landscape = landscape; }
    void setShowNames(bool shows) { options_.showNames = shows; }

    /// Both close the dialog. The export begins once it is closed.
    void cancel();
    void create();

private:
    BrowserModel& model_;
    ContactSheetExport& sheets_;
    ContactSheetOptions options_;
    std::size_t count_;
};

} // namespace pixelhain
