#pragma once
#include "window/MenuEntry.h"
#include <QString>

class QAction;
class QMenu;
class QWidget;

namespace pixelhain {

/// Fills the menu; submenus are filled when they open.
void fillMenu(QMenu& menu, std::vector<MenuEntry> const& entries);

/// Whether it is a heading that `fillMenu` has put into a menu: disabled, but no entry.
[[nodiscard]] bool isMenuHeading(QAction const& entry);

/// `title` with the mark that makes one of its letters a key in the menu: the first one that is not
/// in `taken`, which it joins. Signs that the toolkit takes for such marks are kept as they are.
[[nodiscard]] QString withMnemonic(QString const& title, QString& taken);

} // namespace pixelhain
