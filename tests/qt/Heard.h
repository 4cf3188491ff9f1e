#pragma once
#include "qt/window/Accessibility.h"
#include <QStringList>
#include <algorithm>
#include <vector>

namespace pixelhain {

/// Hears what is announced while it lives. One at a time.
struct Heard {
    struct Event {
        QAccessible::Event type;
        QString name; ///< of what it is about
        QAccessible::Role role;
    };

    std::vector<Event> events;

    Heard()
    {
        listenToAnnouncements([this](QAccessibleEvent& event) {
            if (auto* const about = event.accessibleInterface())
                events.push_back({ event.type(), about->text(QAccessible::Name), about->role() });
        });
    }
    Heard(Heard const&) = delete;
    ~Heard() { listenToAnnouncements({}); }

    long count(QAccessible::Event type) const
    {
        return std::ranges::count(events, type, &Event::type);
    }

    QStringList namesOf(QAccessible::Event type) const
    {
        QStringList all;
        for (auto const& event : events)
            if (event.type == type)
                all += event.name;
        return all;
    }
};

} // namespace pixelhain
