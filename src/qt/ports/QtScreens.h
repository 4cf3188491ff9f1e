#pragma once
#include "ports/Screens.h"
#include <QObject>
#include <functional>

class QScreen;

namespace pixelhain {

/// The screens as the toolkit knows them.
class QtScreens final : public QObject, public Screens {
public:
    /// `changed` is called whenever a screen comes, goes or changes.
    explicit QtScreens(std::function<void()> changed);

    [[nodiscard]] std::vector<Screen> all() const override;

private:
    void watch(QScreen* screen);

    std::function<void()> changed_;
};

} // namespace pixelhain
