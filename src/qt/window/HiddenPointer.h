#pragma once
#include <QObject>
#include <QPoint>
#include <optional>

namespace pixelhain {

/// Hides the pointer over the program's windows until it is moved.
class HiddenPointer final : public QObject {
public:
    HiddenPointer() = default;
    ~HiddenPointer() override;

    void hideUntilMoved();
    bool isHidden() const { return place_.has_value(); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void reveal();
    bool isElsewhere(QPointF place) const;

    std::optional<QPoint> place_; ///< where it was hidden
};

} // namespace pixelhain
