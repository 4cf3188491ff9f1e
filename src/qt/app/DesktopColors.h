#pragma once
#include <QObject>
#include <QPalette>

class QDBusMessage;

namespace pixelhain {

/// The palette in which the program stands on a dark desktop where the toolkit has none of its own.
[[nodiscard]] QPalette darkPalette();

/// Follows the desktop's wish for dark or light colours, as the settings portal tells it. Does
/// nothing where the toolkit follows the desktop by itself, or where there is no portal.
class DesktopColors final : public QObject {
public:
    /// Asks the portal; the answer is used as soon as it is there. To be made early: an answer that
    /// comes before the first frame spares a flash of the wrong colours.
    DesktopColors();

private:
    void ask();
    void settingChanged(QDBusMessage const& message);
    void use(uint scheme);

    QPalette light_;
    bool isDark_ = false;
};

} // namespace pixelhain
