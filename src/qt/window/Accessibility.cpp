#include "qt/window/Accessibility.h"
#include <QAccessibleWidget>
#include <QVariant>
#include <QWidget>
#include <utility>

namespace pixelhain {

namespace {

constexpr char const* property = "accessibleRole";

QAccessibleInterface* makeWithRole(QString const&, QObject* object)
{
    auto const role = object->property(property);
    if (!role.isValid() || !object->isWidgetType())
        return nullptr;
    return new QAccessibleWidget(
        static_cast<QWidget*>(object), static_cast<QAccessible::Role>(role.toInt()));
}

std::function<void(QAccessibleEvent&)>& listener()
{
    static std::function<void(QAccessibleEvent&)> instance;
    return instance;
}

} // namespace

void setAccessibleRole(QWidget& widget, QAccessible::Role role)
{
    widget.setProperty(property, static_cast<int>(role));
    QAccessible::installFactory(makeWithRole);
}

void setSpokenText(QWidget& widget, QString const& text)
{
    if (widget.accessibleName() != text)
        widget.setAccessibleName(text);
}

void announceAppearance(QWidget& widget)
{
    QAccessibleEvent event(&widget, QAccessible::ObjectShow);
    announce(event);
}

void announce(QAccessibleEvent& event)
{
    if (listener())
        listener()(event);
    else
        QAccessible::updateAccessibility(&event);
}

void listenToAnnouncements(std::function<void(QAccessibleEvent&)> wanted)
{
    listener() = std::move(wanted);
}

} // namespace pixelhain
