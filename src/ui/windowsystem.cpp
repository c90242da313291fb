#include "ui/windowsystem.h"

#include <QCursor>
#include <QGuiApplication>
#include <QWindow>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <xcb/xcb.h>

namespace {

constexpr uint32_t sourceIsUser = 2;
const char* const managerStateName = "WM_STATE";
constexpr uint32_t withdrawnState = 0;

bool isX()
{
    return QGuiApplication::platformName() == QLatin1String("xcb");
}

/// A connection of its own, where nobody listens to errors; Qt does not give its one away.
xcb_connection_t* server()
{
    static xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
    return connection;
}

xcb_window_t idOf(const QWindow& window)
{
    return static_cast<xcb_window_t>(window.winId());
}

/// Of an event, whoever sent it.
int typeOf(const void* event)
{
    constexpr uint8_t sentByProgram = 0x80;
    return static_cast<const xcb_generic_event_t*>(event)->response_type & ~sentByProgram;
}

template <typename Reply> using Answer = std::unique_ptr<Reply, decltype(&std::free)>;

xcb_atom_t atom(const char* name)
{
    const auto length = static_cast<uint16_t>(std::strlen(name));
    const Answer<xcb_intern_atom_reply_t> answer {
        xcb_intern_atom_reply(server(), xcb_intern_atom(server(), false, length, name), nullptr),
        &std::free};
    return answer ? answer->atom : xcb_atom_t {XCB_ATOM_NONE};
}

} // namespace

void bringUpForUser(QWindow& window)
{
    if (!isX() || xcb_connection_has_error(server()) != 0) {
        window.requestActivate();
        return;
    }
    // An answer on Qt's own connection: that the window is shown has come to the server before.
    QCursor::pos();
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(server())).data->root;
    xcb_client_message_event_t message {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = idOf(window);
    message.type = atom("_NET_ACTIVE_WINDOW");
    message.data.data32[0] = sourceIsUser;
    message.data.data32[1] = XCB_CURRENT_TIME;
    xcb_send_event(server(), false, root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(server());
}

void handKeyboardOn(const QWindow& from, QWindow& to)
{
    if (!isX()) {
        if (QGuiApplication::focusWindow() == &from)
            to.requestActivate();
        return;
    }
    const Answer<xcb_get_input_focus_reply_t> answer {
        xcb_get_input_focus_reply(server(), xcb_get_input_focus(server()), nullptr), &std::free};
    if (!answer || answer->focus != idOf(from))
        return;
    const xcb_void_cookie_t request =
        xcb_set_input_focus_checked(server(), XCB_INPUT_FOCUS_PARENT, idOf(to), XCB_CURRENT_TIME);
    xcb_discard_reply(server(), request.sequence);
    xcb_flush(server());
}

bool tellsOfManager(const void* event, const QWindow& window)
{
    const auto* change = static_cast<const xcb_property_notify_event_t*>(event);
    if (typeOf(event) != XCB_PROPERTY_NOTIFY || change->window != idOf(window))
        return false;
    static const xcb_atom_t managerState = atom(managerStateName);
    return change->atom == managerState;
}

bool tellsOfPastShowing(const void* event, const QWindow& window)
{
    const auto* showing = static_cast<const xcb_map_notify_event_t*>(event);
    if (typeOf(event) != XCB_MAP_NOTIFY || showing->window != idOf(window))
        return false;
    const xcb_get_window_attributes_cookie_t question =
        xcb_get_window_attributes(server(), idOf(window));
    const Answer<xcb_get_window_attributes_reply_t> answer {
        xcb_get_window_attributes_reply(server(), question, nullptr), &std::free};
    return answer && answer->map_state == XCB_MAP_STATE_UNMAPPED;
}

bool isWithdrawn(const QWindow& window)
{
    if (!isX())
        return false;
    const xcb_atom_t name = atom(managerStateName);
    const xcb_get_property_cookie_t question =
        xcb_get_property(server(), false, idOf(window), name, name, 0, 1);
    const Answer<xcb_get_property_reply_t> answer {
        xcb_get_property_reply(server(), question, nullptr), &std::free};
    if (!answer)
        return false;
    return xcb_get_property_value_length(answer.get()) == 0
        || *static_cast<uint32_t*>(xcb_get_property_value(answer.get())) == withdrawnState;
}
