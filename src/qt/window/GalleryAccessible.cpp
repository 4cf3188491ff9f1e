#include "qt/window/GalleryAccessible.h"
#include "model/BrowserModel.h"
#include "qt/window/Accessibility.h"
#include "qt/window/GridWidget.h"
#include "qt/window/PhotoAccessible.h"
#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

namespace pixelhain {

namespace {

QAccessibleInterface* makeGallery(QString const&, QObject* object)
{
    auto* const grid = dynamic_cast<GridWidget*>(object);
    return grid ? new GalleryAccessible(*grid) : nullptr;
}

} // namespace

void GalleryAccessible::install()
{
    QAccessible::installFactory(makeGallery);
}

GalleryAccessible::GalleryAccessible(GridWidget& grid)
    : QAccessibleWidget(&grid, QAccessible::List)
    , grid_(grid)
    , marked_(grid.model().selection->size())
{
}

GalleryAccessible::~GalleryAccessible()
{
    for (auto const& [index, kept] : std::exchange(items_, {}))
        QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(kept.item));
}

bool GalleryAccessible::isValid() const
{
    return QAccessibleWidget::isValid();
}

// What lies beneath the viewer is not to be seen.
QAccessible::State GalleryAccessible::state() const
{
    auto state = QAccessibleWidget::state();
    state.multiSelectable = true;
    state.extSelectable = true;
    state.offscreen = state.offscreen || grid_.model().viewerIndex->has_value();
    return state;
}

int GalleryAccessible::childCount() const
{
    constexpr std::size_t most = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(grid_.model().items->size(), most));
}

QAccessibleInterface* GalleryAccessible::child(int index) const
{
    if (index < 0 || index >= childCount())
        return nullptr;
    return kept(static_cast<std::size_t>(index)).item;
}

GalleryAccessible::Kept& GalleryAccessible::kept(std::size_t index) const
{
    auto const& photo = (*grid_.model().items)[index].url;
    if (auto const found = items_.find(index); found != items_.end()) {
        if (found->second.item->photo() == photo)
            return found->second;
        forget(index);
    }
    makeRoom();
    // The registry owns it from now on.
    auto* const item = new PhotoAccessible(const_cast<GalleryAccessible&>(*this), index);
    QAccessible::registerAccessibleInterface(item);
    order_.push_back(index);
    Kept const made { item, grid_.model().selection->contains(photo) };
    return items_.emplace(index, made).first->second;
}

void GalleryAccessible::forget(std::size_t index) const
{
    auto const found = items_.find(index);
    if (found == items_.end())
        return;
    auto* const item = found->second.item;
    items_.erase(found);
    QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(item));
}

// The oldest ones go, but for the one that the keyboard is at.
void GalleryAccessible::makeRoom() const
{
    while (items_.size() >= mostItems && !order_.empty()) {
        auto const oldest = order_.front();
        order_.pop_front();
        auto const found = items_.find(oldest);
        if (found == items_.end())
            continue;
        if (announced_ == found->second.item->photo())
            order_.push_back(oldest);
        else
            forget(oldest);
    }
}

QAccessibleInterface* GalleryAccessible::childAt(int x, int y) const
{
    auto const* const viewport = grid_.viewport();
    auto const at = viewport->mapFromGlobal(QPoint(x, y));
    if (!viewport->rect().contains(at))
        return nullptr;
    auto const index = grid_.view().layout().indexAt({ at.x() + 0.0, at.y() + grid_.top() });
    return index ? child(static_cast<int>(*index)) : nullptr;
}

int GalleryAccessible::indexOfChild(QAccessibleInterface const* child) const
{
    auto const* const item = dynamic_cast<PhotoAccessible const*>(child);
    return item && item->isValid() ? static_cast<int>(item->index()) : -1;
}

std::optional<std::size_t> GalleryAccessible::focusedIndex() const
{
    auto const& model = grid_.model();
    auto const cursor = model.cursor.get();
    if (!grid_.hasFocus() || *model.viewerIndex || !cursor || *cursor >= model.items->size())
        return std::nullopt;
    return cursor;
}

QAccessibleInterface* GalleryAccessible::focusChild() const
{
    auto const index = focusedIndex();
    return index ? child(static_cast<int>(*index)) : nullptr;
}

void GalleryAccessible::modelChanged()
{
    followFocusedPhoto();
    dropReplaced();
    auto const index = focusedIndex();
    if (index && announced_ != (*grid_.model().items)[*index].url)
        announceFocus();
    announceMarks();
}

// A list that is read again may have the photo at another place; it is the same item.
void GalleryAccessible::followFocusedPhoto()
{
    auto const index = focusedIndex();
    auto const known = items_.find(announcedIndex_);
    if (!index || *index == announcedIndex_ || known == items_.end()
        || announced_ != (*grid_.model().items)[*index].url)
        return;
    auto const kept = known->second;
    items_.erase(known);
    forget(*index);
    kept.item->moveTo(*index);
    items_.emplace(*index, kept);
    order_.push_back(*index);
    announcedIndex_ = *index;
}

void GalleryAccessible::dropReplaced()
{
    auto const& items = *grid_.model().items;
    std::vector<std::size_t> gone;
    for (auto const& [index, kept] : items_)
        if (index >= items.size() || items[index].url != kept.item->photo())
            gone.push_back(index);
    for (auto const index : gone)
        forget(index);
}

void GalleryAccessible::announceFocus()
{
    auto const index = focusedIndex();
    if (!index)
        return;
    auto& item = kept(*index);
    announced_ = item.item->photo();
    announcedIndex_ = *index;
    send(item.item, QAccessible::Focus);
}

// However many marks changed, that is one piece of news for the list, and one for the photo that
// the keyboard is at.
void GalleryAccessible::announceMarks()
{
    auto const& selection = *grid_.model().selection;
    bool changed = std::exchange(marked_, selection.size()) != selection.size();
    auto const focused = focusedIndex();
    QAccessibleInterface* turned = nullptr;
    for (auto& [index, kept] : items_) {
        auto const isSelected = selection.contains(kept.item->photo());
        if (std::exchange(kept.isSelected, isSelected) == isSelected)
            continue;
        changed = true;
        if (focused == index)
            turned = kept.item;
    }
    if (turned) { // after the loop: whoever hears of it may ask for further items
        QAccessible::State state;
        state.selected = true;
        state.checked = true;
        QAccessibleStateChangeEvent event(turned, state);
        announce(event);
    }
    if (changed)
        send(this, QAccessible::SelectionWithin);
}

void GalleryAccessible::photoChanged(FileUrl const& url)
{
    for (auto const& [index, kept] : items_)
        if (kept.item->photo() == url)
            return send(kept.item, QAccessible::NameChanged);
}

void GalleryAccessible::send(QAccessibleInterface* of, QAccessible::Event type) const
{
    QAccessibleEvent event(of, type);
    announce(event);
}

} // namespace pixelhain
