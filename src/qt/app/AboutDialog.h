#pragma once
#include <QDialog>
#include <string>

namespace pixelhain {

/// Name, version and licence of the program, with what this system lacks for it.
class AboutDialog final : public QDialog {
public:
    /// `missingHolds`: as in MissingHoldsNote.
    AboutDialog(std::string const& missingHolds, QWidget* parent);

    /// Opens it over the window, or brings it to the front there.
    static void open(QWidget& window, std::string const& missingHolds);
};

} // namespace pixelhain
