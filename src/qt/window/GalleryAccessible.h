#pragma once
#include "base/FileUrl.h"
#include <QAccessibleWidget>
#include <deque>
#include <optional>
#include <unordered_map>

namespace pixelhain {

class GridWidget;
class PhotoAccessible;

/// The gallery for screen readers: a list with an item for each photo. Items are made when they are
/// asked for, and only the last `mostItems` of them are kept, however many photos there are.
class GalleryAccessible final : public QAccessibleWidget {
public:
    static constexpr std::size_t mostItems = 256;

    explicit GalleryAccessible(GridWidget& grid);
    ~GalleryAccessible() override;

    /// Lets the toolkit find this for every GridWidget. May be called more than once.
    static void install();

    /// Tells listeners what became of the list, of its marks and of the photo that the keyboard is
    /// at. To be called after every change of the model.
    void modelChanged();

    /// To be called when more is known of a photo.
    void photoChanged(FileUrl const& url);

    /// Tells listeners which photo the keyboard is at, if it is at one.
    void announceFocus();

    bool isValid() const override;
    QAccessible::State state() const override;
    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;
    int indexOfChild(QAccessibleInterface const* child) const override;

    GridWidget& grid() const { return grid_; }
    std::size_t keptItems() const { return items_.size(); }

private:
    struct Kept {
        PhotoAccessible* item;
        bool isSelected;
    };

    std::optional<std::size_t> focusedIndex() const;
    Kept& kept(std::size_t index) const;
    void forget(std::size_t index) const;
    void makeRoom() const;
    void followFocusedPhoto();
    void dropReplaced();
    void announceMarks();
    void send(QAccessibleInterface* of, QAccessible::Event type) const;

    GridWidget& grid_;
    // Asking for a child makes it, and asking changes nothing that anybody sees.
    mutable std::unordered_map<std::size_t, Kept> items_;
    mutable std::deque<std::size_t>
        order_; ///< in which they were made; may name some that are gone
    std::optional<FileUrl> announced_; ///< the photo that the keyboard was last said to be at
    std::size_t announcedIndex_ = 0;
    std::size_t marked_ = 0;
};

} // namespace pixelhain
