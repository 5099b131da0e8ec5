#include "platform/linux/x11/X11HotKeys.h"

#include "platform/linux/x11/VirtualKeys.h"
#include "platform/linux/x11/XcbXkb.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace Quillory {

namespace {

// Maps change in storms, such as one event for each key; what follows within this time is taken together.
constexpr std::chrono::milliseconds keyboardMapStorm { 30 };

constexpr std::uint16_t allModifierBits = 0xff;
constexpr std::uint8_t sentEventBit = 0x80;

}

X11HotKeys::X11HotKeys(X11Connection& connection, X11Clock& clock)
    : m_connection(connection)
    , m_clock(clock)
    , m_isAvailable(startExtension())
    , m_modifierMap(ModifierMap::read(connection.handle()))
{
    m_followKeyboardMap.setSingleShot(true);
    m_followKeyboardMap.setTimerType(Qt::PreciseTimer);
    m_followKeyboardMap.setInterval(keyboardMapStorm);
    m_followKeyboardMap.callOnTimeout([this] { followKeyboardMap(); });
    m_events = m_connection.observeEvents([this](auto const& event) { handle(event); });
}

X11HotKeys::~X11HotKeys()
{
    for (auto const& hotKey : m_hotKeys)
        ungrab(*hotKey);
}

// Without detectable auto-repeat a held key would look like a key that is pressed again and again.
bool X11HotKeys::startExtension()
{
    auto* const xcb = m_connection.handle();
    auto const* extension = xcb_get_extension_data(xcb, &xcb_xkb_id);
    if (!extension || !extension->present)
        return false;
    auto const useCookie = xcb_xkb_use_extension(xcb, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION);
    XcbOwned<xcb_xkb_use_extension_reply_t> use(xcb_xkb_use_extension_reply(xcb, useCookie, nullptr));
    if (!use || !use->supported)
        return false;

    constexpr std::uint32_t detectable = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
    auto const flagsCookie = xcb_xkb_per_client_flags(xcb, XCB_XKB_ID_USE_CORE_KBD, detectable, detectable, 0, 0, 0);
    XcbOwned<xcb_xkb_per_client_flags_reply_t> flags(xcb_xkb_per_client_flags_reply(xcb, flagsCookie, nullptr));
    if (!flags || !(flags->value & detectable))
        return false;

    constexpr std::uint16_t events = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    constexpr std::uint16_t parts = XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;
    xcb_xkb_select_events(xcb, XCB_XKB_ID_USE_CORE_KBD, events, 0, events, parts, parts, nullptr);
    m_firstExtensionEvent = extension->first_event;
    return true;
}

std::expected<Registration, HotKeys::Refusal> X11HotKeys::registerHotKey(
    std::uint16_t keyCode, ModifierFlags modifiers, Handler handler)
{
    if (!m_isAvailable)
        return std::unexpected(Refusal { Refusal::Reason::unavailable });
    auto const serverKeyCode = VirtualKeys::serverKeyCode(keyCode);
    if (!serverKeyCode)
        return std::unexpected(Refusal { Refusal::Reason::unknownKey });
    bool const isOurs = std::ranges::any_of(m_hotKeys,
        [&](auto const& each) { return each->serverKeyCode == *serverKeyCode && each->modifiers == modifiers; });
    if (isOurs)
        return std::unexpected(Refusal { Refusal::Reason::taken });

    auto hotKey = std::make_shared<HotKey>(HotKey { *serverKeyCode, modifiers, std::move(handler) });
    if (auto const grabbed = grab(*hotKey); !grabbed)
        return std::unexpected(grabbed.error());
    m_hotKeys.push_back(hotKey);
    return Registration([this, weak = std::weak_ptr(hotKey)] {
        if (auto const living = weak.lock())
            remove(living);
    });
}

std::expected<void, HotKeys::Refusal> X11HotKeys::grab(HotKey& hotKey)
{
    auto const mask = m_modifierMap.serverMask(hotKey.modifiers);
    if (!mask)
        return std::unexpected(Refusal { Refusal::Reason::unknownKey });
    hotKey.serverMask = *mask;
    hotKey.isGrabbed = true;

    auto* const xcb = m_connection.handle();
    std::vector<xcb_void_cookie_t> requests;
    for (auto const lock : m_modifierMap.lockCombinations()) {
        requests.push_back(xcb_grab_key_checked(xcb, 0, m_connection.root(), static_cast<std::uint16_t>(*mask | lock),
            hotKey.serverKeyCode, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    }
    std::expected<void, Refusal> result;
    for (auto const request : requests) {
        XcbOwned<xcb_generic_error_t> const error(xcb_request_check(xcb, request));
        if (!error)
            continue;
        bool const isTaken = error->error_code == XCB_ACCESS;
        result = std::unexpected(Refusal { isTaken ? Refusal::Reason::taken : Refusal::Reason::unknownKey });
    }
    if (xcb_connection_has_error(xcb))
        result = std::unexpected(Refusal { Refusal::Reason::unavailable });
    if (!result)
        ungrab(hotKey);
    return result;
}

// Waits for the server, so that the very next press goes where it belongs. Takes nothing from other programs.
void X11HotKeys::ungrab(HotKey& hotKey)
{
    if (!std::exchange(hotKey.isGrabbed, false))
        return;
    std::vector<xcb_void_cookie_t> requests;
    for (auto const lock : m_modifierMap.lockCombinations()) {
        requests.push_back(xcb_ungrab_key_checked(m_connection.handle(), hotKey.serverKeyCode, m_connection.root(),
            static_cast<std::uint16_t>(hotKey.serverMask | lock)));
    }
    for (auto const request : requests)
        m_connection.succeeded(request);
}

void X11HotKeys::remove(std::shared_ptr<HotKey> const& hotKey)
{
    ungrab(*hotKey);
    std::erase(m_hotKeys, hotKey);
}

void X11HotKeys::followKeyboardMap()
{
    auto map = ModifierMap::read(m_connection.handle());
    if (map == m_modifierMap)
        return;
    for (auto const& hotKey : m_hotKeys)
        ungrab(*hotKey);
    m_modifierMap = std::move(map);
    for (auto const& hotKey : m_hotKeys) {
        // A refusal has nobody to go to; the next map may end it.
        [[maybe_unused]] auto const grabbed = grab(*hotKey);
    }
}

void X11HotKeys::handle(xcb_generic_event_t const& event)
{
    auto const type = event.response_type & ~sentEventBit;
    if (type == XCB_KEY_PRESS) {
        press(reinterpret_cast<xcb_key_press_event_t const&>(event));
    } else if (type == XCB_KEY_RELEASE) {
        auto const& key = reinterpret_cast<xcb_key_release_event_t const&>(event);
        m_clock.note(key.time);
        release(key.detail);
    } else if (tellsOfNewKeyboardMap(event) && !m_followKeyboardMap.isActive()) {
        m_followKeyboardMap.start();
    }
}

bool X11HotKeys::tellsOfNewKeyboardMap(xcb_generic_event_t const& event) const
{
    auto const type = event.response_type & ~sentEventBit;
    if (type == XCB_MAPPING_NOTIFY)
        return reinterpret_cast<xcb_mapping_notify_event_t const&>(event).request != XCB_MAPPING_POINTER;
    if (!m_isAvailable || type != m_firstExtensionEvent)
        return false;
    auto const extensionType = event.pad0;
    return extensionType == XCB_XKB_NEW_KEYBOARD_NOTIFY || extensionType == XCB_XKB_MAP_NOTIFY;
}

void X11HotKeys::press(xcb_key_press_event_t const& event)
{
    if (auto held = std::ranges::find_if(m_hotKeys, &HotKey::isDown, [](auto const& each) -> HotKey& { return *each; });
        held != m_hotKeys.end()) {
        auto const heldKeyCode = (*held)->serverKeyCode;
        if (heldKeyCode == event.detail || isHeld(heldKeyCode))
            return;
        // Its release never came: something took the keyboard away meanwhile.
        release(heldKeyCode);
    }
    m_clock.note(event.time);
    auto const withoutLocks = static_cast<std::uint16_t>(allModifierBits & ~locks());
    auto const pressed = std::ranges::find_if(m_hotKeys, [&](auto const& each) {
        return each->isGrabbed && each->serverKeyCode == event.detail
            && ((each->serverMask ^ event.state) & withoutLocks) == 0;
    });
    if (pressed == m_hotKeys.end())
        return;
    auto const hotKey = *pressed;
    hotKey->isDown = true;
    hotKey->handler(Phase::pressed);
}

// The modifiers may have been let go before the key: the key alone tells which hot key ends.
void X11HotKeys::release(std::uint8_t serverKeyCode)
{
    auto const released = std::ranges::find_if(
        m_hotKeys, [&](auto const& each) { return each->isDown && each->serverKeyCode == serverKeyCode; });
    if (released == m_hotKeys.end())
        return;
    auto const hotKey = *released;
    hotKey->isDown = false;
    hotKey->handler(Phase::released);
}

bool X11HotKeys::isHeld(std::uint8_t serverKeyCode) const
{
    auto* const xcb = m_connection.handle();
    XcbOwned<xcb_query_keymap_reply_t> keys(xcb_query_keymap_reply(xcb, xcb_query_keymap(xcb), nullptr));
    return keys && (keys->keys[serverKeyCode / 8] & (1U << (serverKeyCode % 8)));
}

}
