#include "qt/window/Menus.h"
#include "qt/ports/FileUrlText.h"
#include <QMenu>

namespace pixelhain {

void fillMenu(QMenu& menu, std::vector<MenuEntry> const& entries)
{
    QString taken;
    for (auto const& entry : entries) {
        auto const title = withMnemonic(shownText(entry.title), taken);
        switch (entry.kind) {
        case MenuEntry::Kind::divider:
            menu.addSeparator();
            break;
        case MenuEntry::Kind::action:
            QObject::connect(menu.addAction(title), &QAction::triggered, &menu, entry.run);
            break;
        case MenuEntry::Kind::submenu: {
            auto* const submenu = menu.addMenu(title);
            QObject::connect(
                submenu, &QMenu::aboutToShow, submenu, [submenu, content = entry.entries] {
                    submenu->clear();
                    fillMenu(*submenu, content());
                });
            break;
        }
        }
    }
}

QString withMnemonic(QString const& title, QString& taken)
{
    auto marked = title;
    marked.replace(QLatin1Char('&'), QStringLiteral("&&"));
    for (qsizetype i = 0; i < marked.size(); ++i) {
        auto const letter = marked[i].toLower();
        if (!letter.isLetter() || taken.contains(letter))
            continue;
        taken += letter;
        return marked.insert(i, QLatin1Char('&'));
    }
    return marked;
}

} // namespace pixelhain
