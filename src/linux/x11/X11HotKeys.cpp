#include "linux/x11/X11HotKeys.h"

#include "linux/x11/VirtualKeys.h"
#include "linux/x11/XcbXkb.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace Quillory {

namespace {

// Maps change in storms, such as one event for each key; what follows within this time is taken together.
constexpr std::chrono::milliseconds keyboardMapStorm { 30 };

constexpr std::uint16_t allModifierBits = 0xff;
constexpr std::uint8_t sentEventBit = 0x80;

// Those of `masks` that `others` lacks.
std::vector<std::uint16_t> without(std::vector<std::uint16_t> masks, std::vector<std::uint16_t> const& others)
{
    std::erase_if(masks, [&](auto mask) { return std::ranges::find(others, mask) != others.end(); });
    return masks;
}

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
    m_guard.setInterval(guardInterval);
    m_guard.callOnTimeout([this] { releaseWhatWasLost(); });
    m_events = m_connection.observeEvents([this](auto const& event) { handle(event); });
}

X11HotKeys::~X11HotKeys()
{
    for (auto const& hotKey : m_hotKeys)
        letGo(*hotKey, hotKey->grabbed);
    if (isAnyDown())
        letKeyboardGo(XCB_CURRENT_TIME);
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
    auto const made = make(keyCode, modifiers);
    if (!made)
        return std::unexpected(made.error());
    auto const& hotKey = *made;
    hotKey->handler = std::move(handler);
    if (auto const grabbed = grab(*hotKey); !grabbed)
        return std::unexpected(grabbed.error());
    m_hotKeys.push_back(hotKey);
    return Registration(m_lifetime.guarded([this, hotKey] { remove(hotKey); }));
}

std::expected<void, HotKeys::Refusal> X11HotKeys::probe(std::uint16_t keyCode, ModifierFlags modifiers)
{
    auto const made = make(keyCode, modifiers);
    if (!made && made.error().reason == Refusal::Reason::taken)
        return {};
    if (!made)
        return std::unexpected(made.error());
    auto const result = grab(**made);
    letGo(**made, (*made)->grabbed);
    return result;
}

// Refuses what no request to the server is needed for.
auto X11HotKeys::make(std::uint16_t keyCode, ModifierFlags modifiers) const
    -> std::expected<std::shared_ptr<HotKey>, Refusal>
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
    return std::make_shared<HotKey>(HotKey { *serverKeyCode, modifiers, {}, 0, {}, 0 });
}

// Brings the grabs in line with the present map: asks for what is missing, lets go what is no longer meant.
std::expected<void, HotKeys::Refusal> X11HotKeys::grab(HotKey& hotKey)
{
    auto const mask = m_modifierMap.serverMask(hotKey.modifiers);
    if (!mask) {
        letGo(hotKey, hotKey.grabbed);
        return std::unexpected(Refusal { Refusal::Reason::unknownKey });
    }
    hotKey.serverMask = *mask;
    auto wanted = m_modifierMap.lockCombinations();
    for (auto& locks : wanted)
        locks = static_cast<std::uint16_t>(locks | *mask);
    letGo(hotKey, without(hotKey.grabbed, wanted));
    auto const result = request(hotKey, without(wanted, hotKey.grabbed));
    if (!result)
        letGo(hotKey, hotKey.grabbed);
    return result;
}

std::expected<void, HotKeys::Refusal> X11HotKeys::request(HotKey& hotKey, std::vector<std::uint16_t> const& masks)
{
    auto* const xcb = m_connection.handle();
    std::vector<xcb_void_cookie_t> requests;
    requests.reserve(masks.size());
    for (auto const mask : masks) {
        requests.push_back(xcb_grab_key_checked(
            xcb, 0, m_connection.root(), mask, hotKey.serverKeyCode, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
        hotKey.grabbed.push_back(mask);
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
    return result;
}

// Waits for the server, so that the very next press goes where it belongs. Takes nothing from other programs: the
// server lets go only what is ours.
void X11HotKeys::letGo(HotKey& hotKey, std::vector<std::uint16_t> const& masks)
{
    std::vector<xcb_void_cookie_t> requests;
    requests.reserve(masks.size());
    for (auto const mask : masks) {
        requests.push_back(
            xcb_ungrab_key_checked(m_connection.handle(), hotKey.serverKeyCode, m_connection.root(), mask));
    }
    for (auto const request : requests)
        m_connection.succeeded(request);
    hotKey.grabbed = without(hotKey.grabbed, masks);
}

void X11HotKeys::remove(std::shared_ptr<HotKey> const& hotKey)
{
    letGo(*hotKey, hotKey->grabbed);
    bool const wasDown = std::exchange(hotKey->press, 0) != 0;
    std::erase(m_hotKeys, hotKey);
    // The server would keep the keyboard with us until the key is up, and from menus of our own.
    if (wasDown && !isAnyDown())
        letKeyboardGo(XCB_CURRENT_TIME);
}

void X11HotKeys::followKeyboardMap()
{
    auto map = ModifierMap::read(m_connection.handle());
    if (map == m_modifierMap)
        return;
    m_modifierMap = map;
    // Keys that swap their modifiers must not stand in each other's way.
    for (auto const& hotKey : m_hotKeys) {
        if (m_modifierMap.serverMask(hotKey->modifiers) != hotKey->serverMask)
            letGo(*hotKey, hotKey->grabbed);
    }
    for (auto const& hotKey : m_hotKeys) {
        // A refusal has nobody to go to; the next map may end it.
        [[maybe_unused]] auto const grabbed = grab(*hotKey);
    }
}

void X11HotKeys::grabAgain()
{
    for (auto const& hotKey : m_hotKeys) {
        hotKey->grabbed.clear();
        [[maybe_unused]] auto const grabbed = grab(*hotKey);
    }
}

void X11HotKeys::handle(xcb_generic_event_t const& event)
{
    auto const type = event.response_type & ~sentEventBit;
    if (type == XCB_KEY_PRESS) {
        press(reinterpret_cast<xcb_key_press_event_t const&>(event));
        answer(XCB_KEY_PRESS, event.pad0);
    } else if (type == XCB_KEY_RELEASE) {
        auto const& key = reinterpret_cast<xcb_key_release_event_t const&>(event);
        m_clock.note(key.time);
        if (!release(key.detail, key.time))
            passOn(key);
        answer(XCB_KEY_RELEASE, key.detail);
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
    auto const isSameKey = [&](auto const& each) { return each->serverKeyCode == event.detail; };
    bool const isRepeat = std::ranges::any_of(
        m_hotKeys, [&](auto const& each) { return each->press && isSameKey(each); });
    if (isRepeat)
        return;
    m_clock.note(event.time);
    auto const withoutLocks = static_cast<std::uint16_t>(allModifierBits & ~locks());
    auto const pressed = std::ranges::find_if(m_hotKeys, [&](auto const& each) {
        return !each->grabbed.empty() && isSameKey(each) && ((each->serverMask ^ event.state) & withoutLocks) == 0;
    });
    if (pressed == m_hotKeys.end()) {
        passOn(event);
        return;
    }
    // The server's own grab ends with the key that began it, and would leave the release of this one to others.
    if (isAnyDown())
        takeKeyboard(event.time, XCB_GRAB_MODE_ASYNC);
    auto const hotKey = *pressed; // NOLINT(performance-unnecessary-copy-initialization) its handler may end it
    hotKey->press = ++m_lastPress;
    m_guard.start();
    hotKey->handler(Phase::pressed);
}

// The modifiers may have been let go before the key: the key alone tells which hot key ends.
bool X11HotKeys::release(std::uint8_t serverKeyCode, X11Clock::Time time)
{
    auto const released = std::ranges::find_if(
        m_hotKeys, [&](auto const& each) { return each->press && each->serverKeyCode == serverKeyCode; });
    if (released == m_hotKeys.end())
        return false;
    auto const hotKey = *released; // NOLINT(performance-unnecessary-copy-initialization) its handler may end it
    hotKey->press = 0;
    if (!isAnyDown()) {
        m_guard.stop();
        if (m_hold != Hold::byKey)
            letKeyboardGo(time);
    }
    hotKey->handler(Phase::released);
    return true;
}

// Sent to whoever made the window, as it would have come without the grab.
void X11HotKeys::passOn(xcb_key_press_event_t const& event)
{
    if (!isAnyDown() || m_hold == Hold::untilAnotherKey)
        return;
    auto* const xcb = m_connection.handle();
    XcbOwned<xcb_get_input_focus_reply_t> const focus(
        xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
    if (!focus || !isOwnWindow(focus->focus))
        return;
    auto passed = event;
    passed.event = focus->focus;
    passed.child = XCB_WINDOW_NONE;
    xcb_send_event(xcb, 0, focus->focus, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<char const*>(&passed));
}

// Asks the server which keys are down. What it has told of meanwhile comes first, and a press among it is no longer
// the one that was asked about.
void X11HotKeys::releaseWhatWasLost()
{
    auto* const xcb = m_connection.handle();
    XcbOwned<xcb_query_keymap_reply_t> keys(xcb_query_keymap_reply(xcb, xcb_query_keymap(xcb), nullptr));
    std::vector<std::uint64_t> lost;
    for (auto const& hotKey : m_hotKeys) {
        auto const code = hotKey->serverKeyCode;
        bool const isHeld = keys && (keys->keys[code / 8] & (1U << (code % 8)));
        if (hotKey->press && !isHeld)
            lost.push_back(hotKey->press);
    }
    if (lost.empty())
        return;
    m_connection.drain();
    for (auto const press : lost) {
        auto const still = std::ranges::find_if(m_hotKeys, [&](auto const& each) { return each->press == press; });
        if (still != m_hotKeys.end())
            release((*still)->serverKeyCode, XCB_CURRENT_TIME);
    }
}

void X11HotKeys::takeKeyboard(X11Clock::Time time, std::uint8_t mode)
{
    auto* const xcb = m_connection.handle();
    auto const cookie = xcb_grab_keyboard(xcb, 0, m_connection.root(), time, XCB_GRAB_MODE_ASYNC, mode);
    xcb_discard_reply(xcb, cookie.sequence);
    xcb_flush(xcb);
    m_hold = mode == XCB_GRAB_MODE_SYNC ? Hold::untilAnotherKey : Hold::untilAllAreUp;
    m_heldSince = time;
}

// Letting go at once would type the hot key into the front window for as long as the keyboard repeats it. So the server
// stops at each key and asks whose it is, until one goes down that ends the repetition.
void X11HotKeys::yieldKeyboard()
{
    if (!isAnyDown())
        return;
    // The time is known, so that the keyboard can be let go even when the key was released before the server took this.
    takeKeyboard(m_connection.presentTime(), XCB_GRAB_MODE_SYNC);
    xcb_allow_events(m_connection.handle(), XCB_ALLOW_SYNC_KEYBOARD, XCB_CURRENT_TIME);
    xcb_flush(m_connection.handle());
}

void X11HotKeys::answer(std::uint8_t type, std::uint8_t serverKeyCode)
{
    if (m_hold != Hold::untilAnotherKey)
        return;
    bool const isHeldHotKey = std::ranges::any_of(
        m_hotKeys, [&](auto const& each) { return each->press && each->serverKeyCode == serverKeyCode; });
    bool const isOthers = type == XCB_KEY_PRESS && !isHeldHotKey && endsRepeat(serverKeyCode);
    if (isOthers)
        m_hold = Hold::byKey;
    auto const whose = isOthers ? XCB_ALLOW_REPLAY_KEYBOARD : XCB_ALLOW_SYNC_KEYBOARD;
    xcb_allow_events(m_connection.handle(), static_cast<std::uint8_t>(whose), XCB_CURRENT_TIME);
    xcb_flush(m_connection.handle());
    if (isOthers)
        releaseAll();
}

// The keyboard is another program's from now on: it is told of the releases, and a press that comes here is a new one.
void X11HotKeys::releaseAll()
{
    for (auto const& hotKey : std::vector(m_hotKeys)) {
        if (hotKey->press)
            release(hotKey->serverKeyCode, XCB_CURRENT_TIME);
    }
}

// A key that is not repeated itself, as modifiers are not, leaves the repetition of another one running.
bool X11HotKeys::endsRepeat(std::uint8_t serverKeyCode) const
{
    auto* const xcb = m_connection.handle();
    XcbOwned<xcb_get_keyboard_control_reply_t> const control(
        xcb_get_keyboard_control_reply(xcb, xcb_get_keyboard_control(xcb), nullptr));
    return !control || control->global_auto_repeat == XCB_AUTO_REPEAT_MODE_OFF
        || (control->auto_repeats[serverKeyCode / 8] & (1U << (serverKeyCode % 8)));
}

// A grab that began after `time` stays: it belongs to a press that we have yet to see.
void X11HotKeys::letKeyboardGo(X11Clock::Time time)
{
    m_guard.stop();
    m_hold = Hold::byKey;
    // The server ignores a time before the grab: a key let go before its grab was taken would leave it standing.
    bool const isBeforeGrab = time != XCB_CURRENT_TIME && X11Clock::isLater(m_heldSince, time);
    xcb_ungrab_keyboard(m_connection.handle(), isBeforeGrab ? m_heldSince : time);
    xcb_flush(m_connection.handle());
}

bool X11HotKeys::isAnyDown() const
{
    return std::ranges::any_of(m_hotKeys, [](auto const& each) { return each->press != 0; });
}

}
