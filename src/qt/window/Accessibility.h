#pragma once
#include <QAccessible>
#include <functional>

class QWidget;

namespace pixelhain {

/// Says what a widget that we draw ourselves is, to who cannot see it. Its accessible name is its
/// text. To be called once, by the constructor.
void setAccessibleRole(QWidget& widget, QAccessible::Role role);

/// Sets the accessible name of a widget, and nothing if it has that name already: each change is
/// read out.
void setSpokenText(QWidget& widget, QString const& text);

/// Tells screen readers.
void announce(QAccessibleEvent& event);

/// Takes what is announced in place of the toolkit, which drops it where nobody can listen; nothing
/// if empty.
void listenToAnnouncements(std::function<void(QAccessibleEvent&)> listener);

/// Has a text read out that just appeared in `widget`, or appeared there again.
void announceAppearance(QWidget& widget);

} // namespace pixelhain
