#include "support/OtherProgram.h"

#include "linux/x11/VirtualKeys.h"
#include "linux/x11/X11Connection.h"
#include "linux/x11/XcbXkb.h"

#include <cstring>
#include <stdexcept>

namespace Quillory {

namespace {

constexpr std::uint8_t sentEventBit = 0x80;

}

OtherProgram::OtherProgram()
    : m_connection(xcb_connect(nullptr, nullptr))
{
    if (xcb_connection_has_error(m_connection)) {
        xcb_disconnect(m_connection);
        throw std::runtime_error("There is no X display for the other program.");
    }
    m_screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
}

OtherProgram::~OtherProgram()
{
    xcb_disconnect(m_connection);
}

xcb_window_t OtherProgram::open(Window const& window)
{
    auto const id = xcb_generate_id(m_connection);
    std::uint32_t const events = XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_VISIBILITY_CHANGE;
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, id, m_screen->root, window.x, window.y, windowWidth,
        windowHeight, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, m_screen->root_visual, XCB_CW_EVENT_MASK, &events);
    QByteArray classProperty = window.windowClass.toLower() + '\0' + window.windowClass + '\0';
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, id, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
        static_cast<std::uint32_t>(classProperty.size()), classProperty.constData());
    // A place that the user chose: flags, then fields that nobody reads any more.
    std::uint32_t const sizeHints[18] = { 1 };
    xcb_change_property(
        m_connection, XCB_PROP_MODE_REPLACE, id, XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, 32, 18, sizeHints);
    if (window.process) {
        constexpr char name[] = "_NET_WM_PID";
        XcbOwned<xcb_intern_atom_reply_t> const atom(
            xcb_intern_atom_reply(m_connection, xcb_intern_atom(m_connection, 0, sizeof name - 1, name), nullptr));
        xcb_change_property(
            m_connection, XCB_PROP_MODE_REPLACE, id, atom->atom, XCB_ATOM_CARDINAL, 32, 1, &*window.process);
    }
    xcb_map_window(m_connection, id);
    xcb_flush(m_connection);
    while (XcbOwned<xcb_generic_event_t> event { xcb_wait_for_event(m_connection) }) {
        if (event->response_type == XCB_VISIBILITY_NOTIFY
            && reinterpret_cast<xcb_visibility_notify_event_t const&>(*event).window == id)
            return id;
    }
    throw std::runtime_error("The X display went away before the window was on it.");
}

void OtherProgram::close(xcb_window_t window)
{
    xcb_destroy_window(m_connection, window);
    sync();
}

std::pair<std::int16_t, std::int16_t> OtherProgram::middle(xcb_window_t window) const
{
    XcbOwned<xcb_translate_coordinates_reply_t> const place(xcb_translate_coordinates_reply(m_connection,
        xcb_translate_coordinates(m_connection, window, m_screen->root, windowWidth / 2, windowHeight / 2), nullptr));
    return { place->dst_x, place->dst_y };
}

void OtherProgram::focus(xcb_window_t window)
{
    xcb_set_input_focus(m_connection, XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
    sync();
}

xcb_window_t OtherProgram::focusedWindow() const
{
    XcbOwned<xcb_get_input_focus_reply_t> const focus(
        xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    return focus->focus;
}

bool OtherProgram::grab(std::uint16_t keyCode, std::uint16_t serverModifiers)
{
    auto const request = xcb_grab_key_checked(m_connection, 0, m_screen->root, serverModifiers,
        VirtualKeys::serverKeyCode(keyCode).value(), XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    return !XcbOwned<xcb_generic_error_t>(xcb_request_check(m_connection, request));
}

void OtherProgram::ungrab(std::uint16_t keyCode, std::uint16_t serverModifiers)
{
    xcb_ungrab_key(m_connection, VirtualKeys::serverKeyCode(keyCode).value(), m_screen->root, serverModifiers);
    sync();
}

bool OtherProgram::canHaveKeyboard()
{
    bool const could = takeKeyboard();
    xcb_ungrab_keyboard(m_connection, XCB_CURRENT_TIME);
    sync();
    return could;
}

bool OtherProgram::takeKeyboard()
{
    auto const cookie = xcb_grab_keyboard(
        m_connection, 0, m_screen->root, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    XcbOwned<xcb_grab_keyboard_reply_t> const reply(xcb_grab_keyboard_reply(m_connection, cookie, nullptr));
    return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
}

void OtherProgram::lock(std::uint8_t serverModifiers, bool isOn)
{
    XcbOwned<xcb_xkb_use_extension_reply_t>(xcb_xkb_use_extension_reply(
        m_connection, xcb_xkb_use_extension(m_connection, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION), nullptr));
    xcb_xkb_latch_lock_state(m_connection, XCB_XKB_ID_USE_CORE_KBD, serverModifiers,
        isOn ? serverModifiers : std::uint8_t { 0 }, 0, 0, 0, 0, 0);
    sync();
}

void OtherProgram::swapKeys(std::uint8_t a, std::uint8_t b)
{
    auto const symbols = [&](std::uint8_t key) {
        return XcbOwned<xcb_get_keyboard_mapping_reply_t>(
            xcb_get_keyboard_mapping_reply(m_connection, xcb_get_keyboard_mapping(m_connection, key, 1), nullptr));
    };
    auto const ofA = symbols(a);
    auto const ofB = symbols(b);
    for (auto const& [key, reply] : { std::pair { a, ofB.get() }, std::pair { b, ofA.get() } }) {
        xcb_change_keyboard_mapping(
            m_connection, 1, key, reply->keysyms_per_keycode, xcb_get_keyboard_mapping_keysyms(reply));
    }
    sync();
}

std::vector<std::uint8_t> OtherProgram::pressedKeys()
{
    sync();
    while (XcbOwned<xcb_generic_event_t> event { xcb_poll_for_event(m_connection) }) {
        if ((event->response_type & ~sentEventBit) == XCB_KEY_PRESS)
            m_pressedKeys.push_back(reinterpret_cast<xcb_key_press_event_t const&>(*event).detail);
    }
    return m_pressedKeys;
}

void OtherProgram::sync() const
{
    (void)focusedWindow(); // any reply means that all before it is done
}

}
