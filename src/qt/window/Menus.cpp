#include "qt/window/Menus.h"
#include "qt/ports/FileUrlText.h"
#include <QActionGroup>
#include <QMenu>

namespace pixelhain {

namespace {

constexpr char const* headingProperty = "isHeading";

// What the toolkit has for headings is drawn beside the column of the other titles, or as a mere
// line.
void addHeading(QMenu& menu, QString const& title)
{
    auto* const heading = menu.addAction(title);
    heading->setEnabled(false);
    heading->setProperty(headingProperty, true);
}

QAction* addCheckable(QMenu& menu, QString const& title, MenuEntry const& entry)
{
    auto* const action = menu.addAction(title);
    action->setCheckable(true);
    action->setChecked(entry.isChecked);
    QObject::connect(action, &QAction::triggered, &menu, entry.run);
    return action;
}

void addSubmenu(
    QMenu& menu, QString const& title, std::function<std::vector<MenuEntry>()> const& entries)
{
    auto* const submenu = menu.addMenu(title);
    QObject::connect(submenu, &QMenu::aboutToShow, submenu, [submenu, entries] {
        submenu->clear();
        qDeleteAll(submenu->findChildren<QMenu*>(Qt::FindDirectChildrenOnly));
        fillMenu(*submenu, entries());
    });
}

} // namespace

void fillMenu(QMenu& menu, std::vector<MenuEntry> const& entries)
{
    QString taken;
    QActionGroup* choices = nullptr;
    auto const title
        = [&](MenuEntry const& entry) { return withMnemonic(shownText(entry.title), taken); };
    for (auto const& entry : entries) {
        if (entry.kind != MenuEntry::Kind::choice)
            choices = nullptr;
        switch (entry.kind) {
        case MenuEntry::Kind::divider:
            menu.addSeparator();
            break;
        case MenuEntry::Kind::heading:
            addHeading(menu, shownText(entry.title));
            break;
        case MenuEntry::Kind::action:
            QObject::connect(menu.addAction(title(entry)), &QAction::triggered, &menu, entry.run);
            break;
        case MenuEntry::Kind::choice: {
            auto* const action = addCheckable(menu, title(entry), entry);
            if (!choices)
                choices = new QActionGroup(action); // goes when the menu is emptied
            choices->addAction(action);
            break;
        }
        case MenuEntry::Kind::toggle:
            addCheckable(menu, title(entry), entry);
            break;
        case MenuEntry::Kind::submenu:
            addSubmenu(menu, title(entry), entry.entries);
            break;
        }
    }
}

bool isMenuHeading(QAction const& entry)
{
    return entry.property(headingProperty).toBool();
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
