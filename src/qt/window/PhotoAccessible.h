#pragma once
#include "base/FileUrl.h"
#include <QAccessible>

namespace pixelhain {

class GalleryAccessible;

/// One photo of the gallery for screen readers: its name and size, whether it is marked, and what
/// can be done with it.
class PhotoAccessible final : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    PhotoAccessible(GalleryAccessible& list, std::size_t index);

    /// Where its photo is in the gallery. It may stand there later than it was made.
    std::size_t index() const { return index_; }
    void moveTo(std::size_t index) { index_ = index; }
    FileUrl const& photo() const { return photo_; }

    bool isValid() const override;
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* parent() const override;
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(QAccessibleInterface const*) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QAccessible::State state() const override;
    QRect rect() const override;
    QString text(QAccessible::Text which) const override;
    void setText(QAccessible::Text, QString const&) override { }
    void* interface_cast(QAccessible::InterfaceType type) override;

    QStringList actionNames() const override;
    void doAction(QString const& name) override;
    QStringList keyBindingsForAction(QString const& name) const override;

private:
    GalleryAccessible& list_;
    std::size_t index_;
    FileUrl photo_;
};

} // namespace pixelhain
