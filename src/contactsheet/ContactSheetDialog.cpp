#include "contactsheet/ContactSheetDialog.h"
#include "contactsheet/ContactSheetExport.h"
#include "model/BrowserModel.h"
#include <algorithm>

namespace pixelhain {

ContactSheetDialog::ContactSheetDialog(BrowserModel& model, ContactSheetExport& sheets)
    : model_(model)
    , sheets_(sheets)
    , options_(usualContactSheetOptions(model))
    , count_(contactSheetPhotoCount(model))
{
}

std::string ContactSheetDialog::countText() const
{
    auto const count = std::to_string(count_);
    return count_ == model_.items->size() ? "Alle " + count + " Fotos"
                                          : count + " ausgewählte Fotos";
}

std::string ContactSheetDialog::columnsText() const
{
    return std::string(columnsName) + ": " + std::to_string(options_.columns);
}

void ContactSheetDialog::setColumns(int columns)
{
    options_.columns
        = std::clamp(columns, ContactSheetOptions::leastColumns, ContactSheetOptions::mostColumns);
}

void ContactSheetDialog::cancel()
{
    model_.setShowContactSheetDialog(false);
}

void ContactSheetDialog::create()
{
    model_.setShowContactSheetDialog(false);
    sheets_.beginLater(options_);
}

} // namespace pixelhain
