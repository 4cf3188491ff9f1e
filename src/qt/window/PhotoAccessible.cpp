#include "qt/window/PhotoAccessible.h"
#include "model/BrowserModel.h"
#include "qt/ports/FileUrlText.h"
#include "qt/window/GalleryAccessible.h"
#include "qt/window/GridWidget.h"

namespace pixelhain {

PhotoAccessible::PhotoAccessible(GalleryAccessible& list, std::size_t index)
    : list_(list)
    , index_(index)
    , photo_((*list.grid().model().items)[index].url)
{
}

bool PhotoAccessible::isValid() const
{
    if (!list_.isValid())
        return false;
    auto const& items = *list_.grid().model().items;
    return index_ < items.size() && items[index_].url == photo_;
}

QAccessibleInterface* PhotoAccessible::parent() const
{
    return &list_;
}

QAccessible::State PhotoAccessible::state() const
{
    QAccessible::State state;
    if (!isValid()) {
        state.invalid = true;
        return state;
    }
    auto const& grid = list_.grid();
    auto const& model = grid.model();
    state.selectable = true;
    state.focusable = true;
    state.selected = model.selection->contains(photo_);
    // The toolkit tells screen readers of checks as they happen, not of selections.
    state.checkable = true;
    state.checked = state.selected;
    state.active = *model.cursor == index_;
    state.focused = state.active && grid.hasFocus() && !*model.viewerIndex;
    state.invisible = !grid.isVisible();
    state.offscreen = list_.state().offscreen || !grid.view().inView().contains(index_);
    return state;
}

QRect PhotoAccessible::rect() const
{
    if (!isValid())
        return {};
    auto const& grid = list_.grid();
    auto const cell = grid.view().layout().cell(index_);
    auto const area = QRectF(cell.x, cell.y - grid.top(), cell.width, cell.height).toAlignedRect();
    return area.translated(grid.viewport()->mapToGlobal(QPoint(0, 0)));
}

QString PhotoAccessible::text(QAccessible::Text which) const
{
    if (!isValid())
        return {};
    auto const cell = list_.grid().view().cell(index_);
    if (which == QAccessible::Description)
        return cell.showsBadge() ? shownText(ThumbnailCell::badgeTip) : QString();
    if (which != QAccessible::Name)
        return {};
    auto const name = shownText(cell.nameText());
    auto const size = shownText(cell.resolutionText()).trimmed();
    return size.isEmpty() ? name : name + QStringLiteral(", ") + size;
}

void* PhotoAccessible::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                : nullptr;
}

QStringList PhotoAccessible::actionNames() const
{
    return { pressAction(), toggleAction(), setFocusAction(), showMenuAction() };
}

void PhotoAccessible::doAction(QString const& name)
{
    if (!isValid())
        return;
    auto& grid = list_.grid();
    auto& model = grid.model();
    if (name == pressAction()) {
        model.openViewer(index_);
    } else if (name == toggleAction()) {
        model.toggle(index_);
    } else if (name == setFocusAction()) {
        grid.setFocus();
        grid.moveCursorTo(index_);
    } else if (name == showMenuAction()) {
        grid.openMenu(index_);
    }
}

QStringList PhotoAccessible::keyBindingsForAction(QString const& name) const
{
    if (name == pressAction())
        return { QKeySequence(Qt::Key_Return).toString() };
    if (name == toggleAction())
        return { QKeySequence(Qt::Key_X).toString() };
    return {};
}

} // namespace pixelhain
