#include "linux/x11/XkbKeyboardLayout.h"

#include "linux/x11/VirtualKeys.h"
#include "linux/x11/XcbXkb.h"
#include "linux/x11/XkbSymbols.h"

#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon-x11.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

namespace Quillory {

namespace {

constexpr std::chrono::milliseconds storm { 30 };
constexpr std::uint16_t highestVirtualKeyCode = 127;

// Whether one can type the letters from a to z.
bool isAsciiCapable(xkb_keymap* keymap, xkb_layout_index_t layout)
{
    std::array<bool, 26> has {};
    for (auto key = xkb_keymap_min_keycode(keymap); key <= xkb_keymap_max_keycode(keymap); ++key) {
        auto const given = XkbSymbols::ofKey(keymap, key, layout);
        if (given && *given >= XKB_KEY_a && *given <= XKB_KEY_z)
            has.at(*given - XKB_KEY_a) = true;
    }
    return std::ranges::find(has, false) == has.end();
}

xkb_layout_index_t asciiCapableLayout(xkb_keymap* keymap, xkb_layout_index_t inUse)
{
    if (isAsciiCapable(keymap, inUse))
        return inUse;
    for (xkb_layout_index_t layout = 0; layout < xkb_keymap_num_layouts(keymap); ++layout) {
        if (isAsciiCapable(keymap, layout))
            return layout;
    }
    return inUse;
}

// A dead key is shown by its mark.
char32_t shownAs(xkb_keysym_t keySymbol)
{
    static constexpr auto deadKeys = std::to_array<std::pair<xkb_keysym_t, char32_t>>({
        { XKB_KEY_dead_grave, U'`' },
        { XKB_KEY_dead_acute, U'\u00b4' },
        { XKB_KEY_dead_circumflex, U'^' },
        { XKB_KEY_dead_tilde, U'~' },
        { XKB_KEY_dead_macron, U'\u00af' },
        { XKB_KEY_dead_breve, U'\u02d8' },
        { XKB_KEY_dead_abovedot, U'\u02d9' },
        { XKB_KEY_dead_diaeresis, U'\u00a8' },
        { XKB_KEY_dead_abovering, U'\u02da' },
        { XKB_KEY_dead_doubleacute, U'\u02dd' },
        { XKB_KEY_dead_caron, U'\u02c7' },
        { XKB_KEY_dead_cedilla, U'\u00b8' },
        { XKB_KEY_dead_ogonek, U'\u02db' },
    });
    for (auto const& [dead, mark] : deadKeys) {
        if (dead == keySymbol)
            return mark;
    }
    return xkb_keysym_to_utf32(keySymbol);
}

}

XkbKeyboardLayout::XkbKeyboardLayout(X11Connection& connection)
    : m_connection(connection)
{
    m_tell.setSingleShot(true);
    m_tell.setInterval(storm);
    m_tell.callOnTimeout([this] { m_changes.tell(); });
    m_events = m_connection.observeEvents([this](auto const& event) { handle(event); });
}

XkbKeyboardLayout::~XkbKeyboardLayout() = default;

std::optional<QString> XkbKeyboardLayout::character(std::uint16_t keyCode) const
{
    auto const key = VirtualKeys::serverKeyCode(keyCode);
    if (!key || !map().keymap)
        return std::nullopt;
    auto const given = XkbSymbols::ofKey(map().keymap.get(), *key, map().layout);
    char32_t const shown = given ? shownAs(*given) : 0;
    constexpr char32_t firstPrintable = 0x20, deleteCharacter = 0x7f;
    if (shown < firstPrintable || shown == deleteCharacter)
        return std::nullopt;
    return QString::fromUcs4(&shown, 1);
}

std::optional<std::uint16_t> XkbKeyboardLayout::keyCode(QString const& symbolName) const
{
    auto const name = symbolName.toUtf8();
    auto wanted = xkb_keysym_from_name(name.constData(), XKB_KEYSYM_NO_FLAGS);
    if (wanted == XKB_KEY_NoSymbol)
        wanted = xkb_keysym_from_name(name.constData(), XKB_KEYSYM_CASE_INSENSITIVE);
    wanted = xkb_keysym_to_lower(wanted);
    if (wanted == XKB_KEY_NoSymbol || !map().keymap)
        return std::nullopt;
    for (std::uint16_t code = 0; code <= highestVirtualKeyCode; ++code) {
        auto const key = VirtualKeys::serverKeyCode(code);
        if (key && XkbSymbols::ofKey(map().keymap.get(), *key, map().layout) == wanted)
            return code;
    }
    return std::nullopt;
}

std::optional<QString> XkbKeyboardLayout::symbolName(std::uint16_t keyCode) const
{
    return XkbSymbols::nameOfKey(map().keymap.get(), keyCode, map().layout);
}

Registration XkbKeyboardLayout::observeChanges(std::function<void()> changed)
{
    listen();
    return m_changes.add(std::move(changed));
}

// Only the switch from one layout to another is asked for, not each modifier that goes down.
void XkbKeyboardLayout::listen() const
{
    if (m_firstEvent != 0)
        return;
    auto* const xcb = m_connection.handle();
    if (!xkb_x11_setup_xkb_extension(xcb, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
            XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &m_firstEvent, nullptr))
        return;
    constexpr std::uint16_t whole = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    constexpr std::uint16_t events = whole | XCB_XKB_EVENT_TYPE_STATE_NOTIFY;
    constexpr std::uint16_t parts = XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_KEY_TYPES
        | XCB_XKB_MAP_PART_MODIFIER_MAP;
    xcb_xkb_select_events_details_t details {};
    details.affectState = XCB_XKB_STATE_PART_GROUP_STATE;
    details.stateDetails = XCB_XKB_STATE_PART_GROUP_STATE;
    xcb_xkb_select_events_aux(xcb, XCB_XKB_ID_USE_CORE_KBD, events, 0, whole, parts, parts, &details);
    xcb_flush(xcb);
}

void XkbKeyboardLayout::handle(xcb_generic_event_t const& event)
{
    constexpr std::uint8_t sentEventBit = 0x80;
    auto const type = event.response_type & ~sentEventBit;
    auto const isNewMap = type == XCB_MAPPING_NOTIFY
        && reinterpret_cast<xcb_mapping_notify_event_t const&>(event).request != XCB_MAPPING_POINTER;
    auto const extensionType = event.pad0;
    auto const isOfExtension = m_firstEvent != 0 && type == m_firstEvent
        && (extensionType == XCB_XKB_NEW_KEYBOARD_NOTIFY || extensionType == XCB_XKB_MAP_NOTIFY
            || extensionType == XCB_XKB_STATE_NOTIFY);
    if (!isNewMap && !isOfExtension)
        return;
    m_map.reset();
    if (!m_tell.isActive())
        m_tell.start();
}

XkbKeyboardLayout::Map const& XkbKeyboardLayout::map() const
{
    // News that are here already must not wait for the event loop.
    m_connection.drain();
    if (!m_map)
        m_map = read();
    return *m_map;
}

XkbKeyboardLayout::Map XkbKeyboardLayout::read() const
{
    listen();
    auto* const xcb = m_connection.handle();
    auto const device = m_firstEvent == 0 ? -1 : xkb_x11_get_core_keyboard_device_id(xcb);
    if (device == -1)
        return {};
    std::unique_ptr<xkb_context, void (*)(xkb_context*)> const context(
        xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES), xkb_context_unref);
    std::shared_ptr<xkb_keymap> const keymap(
        xkb_x11_keymap_new_from_device(context.get(), xcb, device, XKB_KEYMAP_COMPILE_NO_FLAGS), xkb_keymap_unref);
    if (!keymap)
        return {};
    std::unique_ptr<xkb_state, void (*)(xkb_state*)> const state(
        xkb_x11_state_new_from_device(keymap.get(), xcb, device), xkb_state_unref);
    auto const inUse = state ? xkb_state_serialize_layout(state.get(), XKB_STATE_LAYOUT_EFFECTIVE) : 0;
    return { keymap, asciiCapableLayout(keymap.get(), inUse) };
}

}
