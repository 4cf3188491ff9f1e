#include "qt/sidebar/FolderTreeWidget.h"
#include "qt/ports/FileUrlText.h"
#include "qt/sidebar/FolderRowPainter.h"
#include "qt/window/Menus.h"
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QTimer>
#include <algorithm>
#include <utility>

namespace pixelhain {

namespace {

// Rows are drawn by the view itself; it asks its delegate for their height only.
class RowHeight final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(QStyleOptionViewItem const& option, QModelIndex const&) const override
    {
        return { 0, FolderRowPainter::height(option.font) };
    }
};

// Neighbours become one range: a thousand single ones would cost a thousand searches each time.
QItemSelection selectionOf(FolderTreeModel const& tree, std::vector<FolderNode*> nodes)
{
    std::ranges::sort(nodes);
    QItemSelection selection;
    for (std::size_t from = 0; from < nodes.size();) {
        auto to = from + 1;
        while (to < nodes.size() && nodes[to] == nodes[to - 1] + 1
            && nodes[to]->parent() == nodes[from]->parent())
            ++to;
        selection.append({ tree.indexOf(*nodes[from]), tree.indexOf(*nodes[to - 1]) });
        from = to;
    }
    return selection;
}

} // namespace

FolderTreeWidget::FolderTreeWidget(FolderTreeModel& tree, QWidget* parent)
    : QTreeView(parent)
    , tree_(tree)
{
    setObjectName(QStringLiteral("folderTree"));
    setAccessibleName(shownText(SidebarView::header));
    setItemDelegate(new RowHeight(this));
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
    setTextElideMode(Qt::ElideMiddle);
    setFrameShape(NoFrame);
    setAutoScroll(false); // a tree that is read anew would jump to the row that the keyboard is at
    setIndentation(0); // rows are moved to the right when they are drawn
    setModel(&tree); // rows that are there would be measured anew at some of the above
    viewport()->setBackgroundRole(QPalette::Window);
    connect(&tree, &FolderTreeModel::treeWillBeReplaced, this, [this] { remember(); });
    connect(&tree, &QAbstractItemModel::modelReset, this, [this] { restore(); });
    connect(&tree, &FolderTreeModel::shownFoldersChanged, this, [this] { showShown(); });
    connect(&tree, &FolderTreeModel::childrenAppeared, this, [this](QModelIndex const& index) {
        if (isExpanded(index))
            open(index);
        auto const& listed = *FolderTreeModel::nodeAt(index);
        if (tree_.view().showsBelow(listed))
            showShown();
        viewport()->update();
    });
    connect(this, &QTreeView::expanded, this, [this](QModelIndex const& index) { open(index); });
    restore();
}

// What leads to a folder that is shown opens along with the row.
void FolderTreeWidget::open(QModelIndex const& index)
{
    expand(index);
    for (auto* const child : tree_.view().openedWith(*FolderTreeModel::nodeAt(index)))
        open(tree_.indexOf(*child));
}

void FolderTreeWidget::remember()
{
    auto const urlAt = [](QModelIndex const& index) {
        return index.isValid() ? FolderTreeModel::nodeAt(index)->url() : FileUrl();
    };
    currentFolder_ = urlAt(currentIndex());
    topFolder_ = urlAt(indexAt({ 0, 0 }));
    topOffset_ = visualRect(indexAt({ 0, 0 })).top();
}

void FolderTreeWidget::restore()
{
    auto& view = tree_.view();
    // Without rows there is nothing to be done here with the keyboard.
    setFocusPolicy(view.root() ? Qt::StrongFocus : Qt::NoFocus);
    if (!view.root())
        return;
    open(tree_.indexOf(*view.root()));
    executeDelayedItemsLayout();
    if (auto const* const top = view.find(topFolder_)) {
        scrollTo(tree_.indexOf(*top), PositionAtTop);
        verticalScrollBar()->setValue(verticalScrollBar()->value() - topOffset_);
    }
    showShown();
    if (auto const* const current = view.find(currentFolder_))
        selectionModel()->setCurrentIndex(tree_.indexOf(*current), QItemSelectionModel::NoUpdate);
}

// Folders that come into the tree, above another root for instance, come into sight; later the user
// scrolls.
void FolderTreeWidget::showShown()
{
    auto const nodes = tree_.view().shownNodes();
    auto const wanted = selectionOf(tree_, nodes);
    bool const appears = !std::exchange(showsAny_, !nodes.empty()) && showsAny_;
    isShowing_ = true;
    selectionModel()->select(wanted, QItemSelectionModel::ClearAndSelect);
    if (!currentIndex().isValid() && !nodes.empty())
        selectionModel()->setCurrentIndex(
            tree_.indexOf(*nodes.front()), QItemSelectionModel::NoUpdate);
    isShowing_ = false;
    if (appears)
        scrollTo(tree_.indexOf(*nodes.front()));
    viewport()->update();
}

void FolderTreeWidget::selectionChanged(
    QItemSelection const& selected, QItemSelection const& deselected)
{
    QTreeView::selectionChanged(selected, deselected);
    if (!isShowing_)
        follow();
}

// What the user chose is shown by the model a turn later; when that is nothing new, the rows show
// again what the gallery shows.
void FolderTreeWidget::follow()
{
    std::vector<FolderNode*> nodes;
    for (auto const& index : selectionModel()->selectedIndexes())
        nodes.push_back(FolderTreeModel::nodeAt(index));
    tree_.view().choose(
        nodes, keepsOthers_ ? SidebarView::Others::keep : SidebarView::Others::drop);
    if (nodes.empty())
        QTimer::singleShot(0, this, [this] { showShown(); });
}

QItemSelectionModel::SelectionFlags FolderTreeWidget::selectionCommand(
    QModelIndex const& index, QEvent const* event) const
{
    auto const flags = QTreeView::selectionCommand(index, event);
    if (flags != QItemSelectionModel::NoUpdate)
        keepsOthers_ = !flags.testFlag(QItemSelectionModel::Clear);
    return flags;
}

std::vector<FolderNode*> FolderTreeWidget::visibleNodes() const
{
    std::vector<FolderNode*> nodes;
    auto const bottom = viewport()->height();
    for (auto index = indexAt({ 0, 0 }); index.isValid(); index = indexBelow(index)) {
        if (visualRect(index).top() >= bottom)
            break;
        nodes.push_back(FolderTreeModel::nodeAt(index));
    }
    return nodes;
}

void FolderTreeWidget::paintEvent(QPaintEvent* event)
{
    QTreeView::paintEvent(event);
    tree_.view().rowsDrawn(visibleNodes());
}

void FolderTreeWidget::hideEvent(QHideEvent* event)
{
    QTreeView::hideEvent(event);
    tree_.view().rowsDrawn({});
}

void FolderTreeWidget::drawRow(
    QPainter* painter, QStyleOptionViewItem const& options, QModelIndex const& index) const
{
    auto const& node = *FolderTreeModel::nodeAt(index);
    FolderRowLook look;
    look.rect = options.rect;
    look.level = node.level();
    look.isBranch = tree_.hasChildren(index);
    look.isOpen = isExpanded(index);
    look.isSelected = selectionModel()->isSelected(index);
    look.isMarked = index == currentIndex();
    look.hasMenu = menuFolder_ == node.url();
    look.hasFocus = hasFocus();
    FolderRowPainter const rows(font(), palette(), devicePixelRatioF());
    rows.draw(*painter, tree_.view().row(node), look);
}

bool FolderTreeWidget::isOnTriangle(QModelIndex const& index, QPoint const& at) const
{
    if (!index.isValid() || !tree_.hasChildren(index))
        return false;
    auto row = visualRect(index);
    row.setLeft(0);
    row.setWidth(viewport()->width());
    return FolderRowPainter::triangle(row, FolderTreeModel::nodeAt(index)->level()).contains(at);
}

// A right click asks for the menu and chooses nothing.
void FolderTreeWidget::mousePressEvent(QMouseEvent* event)
{
    auto const at = event->position().toPoint();
    auto const index = indexAt(at);
    if (event->button() == Qt::LeftButton && isOnTriangle(index, at))
        setExpanded(index, !isExpanded(index));
    else if (event->button() == Qt::LeftButton && index.isValid())
        QTreeView::mousePressEvent(event);
}

// Nothing is chosen by dragging: a hand that is not quite still would show several folders.
void FolderTreeWidget::mouseMoveEvent(QMouseEvent* event)
{
    if (event->buttons() == Qt::NoButton)
        QTreeView::mouseMoveEvent(event);
}

void FolderTreeWidget::mouseDoubleClickEvent(QMouseEvent* event)
{
    auto const at = event->position().toPoint();
    if (isOnTriangle(indexAt(at), at))
        mousePressEvent(event);
    else if (event->button() == Qt::LeftButton)
        QTreeView::mouseDoubleClickEvent(event);
}

// All photos are meant to be selected or copied, not all folders.
void FolderTreeWidget::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::SelectAll) || event->matches(QKeySequence::Copy)) {
        event->ignore();
        return;
    }
    QTreeView::keyPressEvent(event);
    if (event->isAccepted())
        scrollTo(currentIndex());
}

void FolderTreeWidget::contextMenuEvent(QContextMenuEvent* event)
{
    bool const byMouse = event->reason() == QContextMenuEvent::Mouse;
    auto const index = byMouse ? indexAt(event->pos()) : currentIndex();
    if (!index.isValid())
        return;
    if (!byMouse)
        scrollTo(index);
    showMenu(
        index, byMouse ? event->globalPos() : viewport()->mapToGlobal(visualRect(index).center()));
}

QMenu* FolderTreeWidget::showMenu(QModelIndex const& index, QPoint const& at)
{
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    auto const& node = *FolderTreeModel::nodeAt(index);
    QString taken;
    for (auto const command : tree_.view().menu(node)) {
        if (command == FolderCommand::divider) {
            menu->addSeparator();
            continue;
        }
        auto* const action = menu->addAction(withMnemonic(shownText(titleOf(command)), taken));
        connect(action, &QAction::triggered, this,
            [this, command, url = node.url()] { tree_.view().perform(command, url); });
    }
    menuFolder_ = node.url();
    connect(menu, &QMenu::aboutToHide, this, [this] {
        menuFolder_.reset();
        viewport()->update();
    });
    viewport()->update();
    menu->popup(at);
    return menu;
}

} // namespace pixelhain
