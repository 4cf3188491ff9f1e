#pragma once
#include "app/AppCommand.h"
#include <QObject>
#include <QString>
#include <vector>

class QAction;
class QActionGroup;
class QMenu;

namespace pixelhain {

/// Fills a menu with commands and keeps their titles, check marks and rules as they are now. Ends
/// with the menu.
class CommandMenu final : public QObject {
public:
    CommandMenu(QMenu& menu, std::vector<AppCommand> commands);

    /// To be called whenever something may have changed that a command looks at.
    void refresh();

private:
    struct Line {
        AppCommand command;
        QAction* action = nullptr;
        QString title; ///< as it was last shown, without the mark of its key in the menu
        QString key; ///< that letter
        CommandMenu* submenu = nullptr;
    };

    void fill(std::vector<AppCommand> commands);
    bool replace(std::vector<AppCommand>& commands);
    Line added(AppCommand command);
    void giveKeys(QAction& action, AppCommand const& command);
    void name(Line& line);
    void perform(std::size_t index);

    QMenu& menu_;
    QActionGroup* choices_;
    std::vector<Line> lines_;
};

} // namespace pixelhain
