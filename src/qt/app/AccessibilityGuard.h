#pragma once
#include <QAccessible>

namespace pixelhain {

/// Keeps assistive programs from ending this one: the toolkit reads past the end of a call that
/// asks for all properties of an accessible object, which is usual elsewhere, or for one without
/// its name. Such calls are answered here. To be made before the program is shown to anybody. Main
/// thread.
class AccessibilityGuard final : private QAccessible::ActivationObserver {
public:
    AccessibilityGuard();
    ~AccessibilityGuard() override;
    AccessibilityGuard(AccessibilityGuard const&) = delete;
    AccessibilityGuard& operator=(AccessibilityGuard const&) = delete;

private:
    void accessibilityActiveChanged(bool active) override;
};

} // namespace pixelhain
