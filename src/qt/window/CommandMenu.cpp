#include "qt/window/CommandMenu.h"
#include "qt/ports/FileUrlText.h"
#include "qt/window/Menus.h"
#include <QAction>
#include <QActionGroup>
#include <QMenu>
#include <utility>

namespace pixelhain {

namespace {

// The names of folders may be long and hold anything; a tab would begin the column of the keys.
QString menuText(AppCommand const& command, QMenu const& menu)
{
    constexpr int longest = 50; // characters of usual width
    auto text = shownText(command.shownTitle());
    if (command.hint.empty())
        return text;
    for (auto& character : text)
        if (!character.isPrint())
            character = character.isSurrogate() ? character : QLatin1Char(' ');
    auto const metrics = menu.fontMetrics();
    return metrics.elidedText(text, Qt::ElideMiddle, longest * metrics.averageCharWidth());
}

// Marked as text with tags, so that a name which looks like one is not taken for it.
QString hintText(AppCommand const& command)
{
    if (command.hint.empty())
        return {};
    return QStringLiteral("<p style='white-space:pre'>%1</p>")
        .arg(shownText(command.hint).toHtmlEscaped());
}

} // namespace

CommandMenu::CommandMenu(QMenu& menu, std::vector<AppCommand> commands)
    : QObject(&menu)
    , menu_(menu)
    , choices_(new QActionGroup(this))
{
    menu_.setToolTipsVisible(true);
    fill(std::move(commands));
}

void CommandMenu::fill(std::vector<AppCommand> commands)
{
    lines_.clear();
    menu_.clear();
    for (auto& command : commands) {
        lines_.push_back(added(std::move(command)));
        name(lines_.back());
    }
    refresh();
}

CommandMenu::Line CommandMenu::added(AppCommand command)
{
    using Kind = AppCommand::Kind;
    Line line;
    line.command = std::move(command);
    auto const kind = line.command.kind;
    if (kind == Kind::divider) {
        line.action = menu_.addSeparator();
        return line;
    }
    if (kind == Kind::submenu) {
        auto* const submenu = menu_.addMenu(QString());
        line.action = submenu->menuAction();
        line.submenu = new CommandMenu(*submenu, line.command.entries());
        return line;
    }
    line.action = menu_.addAction(QString());
    line.action->setCheckable(kind == Kind::toggle || kind == Kind::choice);
    if (kind == Kind::choice)
        choices_->addAction(line.action);
    giveKeys(*line.action, line.command);
    connect(
        line.action, &QAction::triggered, this, [this, index = lines_.size()] { perform(index); });
    return line;
}

void CommandMenu::giveKeys(QAction& action, AppCommand const& command)
{
    QList<QKeySequence> keys;
    auto const add = [&](std::string const& key) {
        keys += QKeySequence(shownText(key), QKeySequence::PortableText);
    };
    if (!command.key.empty())
        add(command.key);
    for (auto const& habit : command.habits)
        add(habit);
    action.setShortcuts(keys);
    // Shown, but never in the way of whoever acts on it.
    if (command.isKeyOfText)
        action.setShortcutContext(Qt::WidgetShortcut);
    // A key that is held down must not go through the gallery photo by photo.
    action.setAutoRepeat(false);
}

void CommandMenu::name(Line& line)
{
    if (line.command.kind == AppCommand::Kind::divider)
        return;
    line.action->setToolTip(hintText(line.command));
    auto const title = menuText(line.command, menu_);
    if (title == line.title)
        return;
    line.key.clear();
    QString taken;
    for (auto const& other : lines_)
        taken += other.key;
    auto const others = taken.size();
    line.action->setText(withMnemonic(title, taken));
    line.key = taken.mid(others);
    line.title = title;
}

void CommandMenu::refresh()
{
    for (auto& line : lines_) {
        auto const& command = line.command;
        if (command.kind == AppCommand::Kind::divider)
            continue;
        if (command.titleNow)
            name(line);
        line.action->setEnabled(!command.isEnabled || command.isEnabled());
        if (command.isOn)
            line.action->setChecked(command.isOn());
        if (!line.submenu)
            continue;
        auto entries = command.entries();
        if (!line.submenu->replace(entries))
            line.submenu->fill(std::move(entries));
    }
}

// In place as far as that goes: an open menu does not flicker, and nobody loses what the keyboard
// is on. False if these are other lines.
bool CommandMenu::replace(std::vector<AppCommand>& commands)
{
    if (commands.size() != lines_.size())
        return false;
    for (std::size_t i = 0; i < lines_.size(); ++i)
        if (lines_[i].command.kind != commands[i].kind)
            return false;
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        lines_[i].command = std::move(commands[i]);
        name(lines_[i]);
    }
    refresh();
    return true;
}

// A rule that has changed since the last turn of the loop counts, too.
void CommandMenu::perform(std::size_t index)
{
    auto const command = lines_[index].command;
    if (command.canRun())
        command.run();
    if (index < lines_.size() && command.isOn)
        lines_[index].action->setChecked(command.isOn());
}

} // namespace pixelhain
