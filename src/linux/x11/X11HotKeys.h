#pragma once

#include "linux/x11/ModifierMap.h"
#include "linux/x11/X11Clock.h"
#include "linux/x11/X11Connection.h"
#include "platform/HotKeys.h"
#include "platform/Lifetime.h"

#include <QTimer>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace Quillory {

// Hot keys by grabs on the root window. The grabs follow changes of the keyboard map: a hot key whose modifiers are
// gone, or whose new combination somebody else holds, rests until a later map has them.
// A release that the server never tells of, as when a keyboard is pulled out, is noticed within `guardInterval`.
class X11HotKeys final : public HotKeys {
public:
    static constexpr std::chrono::milliseconds guardInterval { 50 };

    // Notes the time of each press and release in `clock`. Both outlive it.
    X11HotKeys(X11Connection& connection, X11Clock& clock);
    ~X11HotKeys() override;

    // A combination that was registered here already counts as taken.
    std::expected<Registration, Refusal> registerHotKey(
        std::uint16_t keyCode, ModifierFlags modifiers, Handler handler) override;
    std::expected<void, Refusal> probe(std::uint16_t keyCode, ModifierFlags modifiers) override;

    // A hang from here on holds up the next key, which the server keeps until it is told whose it is.
    void yieldKeyboard() override;

    // Knows a window of this program by its number. While a hot key is down the server gives every key to its holder;
    // the others are passed on to the window that has the focus, if it is one of these.
    std::function<bool(xcb_window_t)> isOwnWindow = [](auto) { return false; };

    // Asks for every grab again, those that were refused among them: for when the computer comes out of sleep.
    void grabAgain();

private:
    struct HotKey {
        std::uint8_t serverKeyCode;
        ModifierFlags modifiers;
        Handler handler;
        std::uint16_t serverMask = 0;
        std::vector<std::uint16_t> grabbed; // the mask with each set of locks; empty while it rests
        std::uint64_t press = 0; // which press holds it down; 0 while it is up
    };

    // How the keyboard is held while a hot key is down: by the server's own grab, which ends with the key that began it,
    // until all are up, or only until the first other key goes down.
    enum class Hold { byKey, untilAllAreUp, untilAnotherKey };

    bool startExtension();
    std::expected<std::shared_ptr<HotKey>, Refusal> make(std::uint16_t keyCode, ModifierFlags modifiers) const;
    std::expected<void, Refusal> grab(HotKey& hotKey);
    std::expected<void, Refusal> request(HotKey& hotKey, std::vector<std::uint16_t> const& masks);
    void letGo(HotKey& hotKey, std::vector<std::uint16_t> const& masks);
    void remove(std::shared_ptr<HotKey> const& hotKey);
    void followKeyboardMap();

    void handle(xcb_generic_event_t const& event);
    bool tellsOfNewKeyboardMap(xcb_generic_event_t const& event) const;
    void press(xcb_key_press_event_t const& event);
    bool release(std::uint8_t serverKeyCode, X11Clock::Time time);
    void releaseAll();
    void releaseWhatWasLost();
    void passOn(xcb_key_press_event_t const& event);
    void takeKeyboard(X11Clock::Time time, std::uint8_t mode);
    void answer(std::uint8_t type, std::uint8_t serverKeyCode);
    bool endsRepeat(std::uint8_t serverKeyCode) const;
    void letKeyboardGo(X11Clock::Time time);
    std::uint16_t locks() const { return m_modifierMap.lockCombinations().back(); }
    bool isAnyDown() const;

    X11Connection& m_connection;
    X11Clock& m_clock;
    std::uint8_t m_firstExtensionEvent = 0;
    bool const m_isAvailable;
    ModifierMap m_modifierMap;
    std::vector<std::shared_ptr<HotKey>> m_hotKeys;
    std::uint64_t m_lastPress = 0;
    Hold m_hold = Hold::byKey;
    X11Clock::Time m_heldSince = 0; // when the keyboard was last taken
    QTimer m_followKeyboardMap;
    QTimer m_guard;
    Registration m_events;
    Lifetime m_lifetime;
};

}
