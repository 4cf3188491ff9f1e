#include "qt/app/X11Startup.h"
#include <QGuiApplication>
#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <xcb/xcb.h>

namespace pixelhain {

namespace {

struct Freed {
    void operator()(void* memory) const { std::free(memory); }
};

class Display {
public:
    explicit Display(xcb_connection_t* connection)
        : connection_(connection)
        , root_(xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root)
    {
    }

    xcb_atom_t atom(std::string_view name) const
    {
        auto const cookie
            = xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data());
        std::unique_ptr<xcb_intern_atom_reply_t, Freed> const reply(
            xcb_intern_atom_reply(connection_, cookie, nullptr));
        return reply ? reply->atom : xcb_atom_t { XCB_ATOM_NONE };
    }

    void sendToRoot(xcb_client_message_event_t const& message, std::uint32_t mask) const
    {
        xcb_send_event(connection_, 0, root_, mask, reinterpret_cast<char const*>(&message));
    }

    void setText(xcb_window_t window, xcb_atom_t property, std::string const& text) const
    {
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, property,
            atom("UTF8_STRING"), 8, static_cast<std::uint32_t>(text.size()), text.data());
    }

    void flush() const { xcb_flush(connection_); }

private:
    xcb_connection_t* connection_;
    xcb_window_t root_;
};

xcb_client_message_event_t messageFor(xcb_window_t window, std::uint8_t format, xcb_atom_t type)
{
    xcb_client_message_event_t message {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = format;
    message.window = window;
    message.type = type;
    return message;
}

void askToActivate(Display const& display, xcb_window_t window, std::uint32_t time)
{
    constexpr std::uint32_t fromApplication = 1;
    auto message = messageFor(window, 32, display.atom("_NET_ACTIVE_WINDOW"));
    message.data.data32[0] = fromApplication;
    message.data.data32[1] = time;
    display.sendToRoot(
        message, XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
}

// A text with its final zero, in messages of twenty bytes, the first of another type.
void sayComplete(Display const& display, xcb_window_t window, std::string const& id)
{
    std::string text = "remove: ID=\"";
    for (char const letter : id) {
        if (letter == '"' || letter == '\\')
            text += '\\';
        text += letter;
    }
    text += '"';
    text += '\0';
    auto message = messageFor(window, 8, display.atom("_NET_STARTUP_INFO_BEGIN"));
    auto const next = display.atom("_NET_STARTUP_INFO");
    constexpr std::size_t room = sizeof message.data.data8;
    for (std::size_t at = 0; at < text.size(); at += room) {
        auto const part = std::string_view(text).substr(at, room);
        std::ranges::fill(message.data.data8, std::uint8_t { 0 });
        std::ranges::copy(part, message.data.data8);
        display.sendToRoot(message, XCB_EVENT_MASK_PROPERTY_CHANGE);
        message.type = next;
    }
}

} // namespace

bool activateByStartupId(std::uintptr_t window, std::string const& id, std::uint32_t time)
{
    auto* const application = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!application || !application->connection())
        return false;
    Display const display(application->connection());
    auto const target = static_cast<xcb_window_t>(window);
    display.setText(target, display.atom("_NET_STARTUP_ID"), id);
    askToActivate(display, target, time);
    sayComplete(display, target, id);
    display.flush();
    return true;
}

} // namespace pixelhain
