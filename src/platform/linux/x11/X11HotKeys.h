#pragma once

#include "platform/HotKeys.h"
#include "platform/linux/x11/ModifierMap.h"
#include "platform/linux/x11/X11Clock.h"
#include "platform/linux/x11/X11Connection.h"

#include <QTimer>

#include <memory>
#include <vector>

namespace Quillory {

// Hot keys by grabs on the root window. The grabs follow changes of the keyboard map: a hot key whose modifiers are
// gone, or whose new combination somebody else holds, rests until a later map has them.
// While one hot key is held the server gives its keyboard to us; another one pressed meanwhile does nothing.
class X11HotKeys final : public HotKeys {
public:
    // Notes the time of each press and release in `clock`. Both outlive it.
    X11HotKeys(X11Connection& connection, X11Clock& clock);
    ~X11HotKeys() override;

    // A combination that was registered here already counts as taken.
    std::expected<Registration, Refusal> registerHotKey(
        std::uint16_t keyCode, ModifierFlags modifiers, Handler handler) override;

private:
    struct HotKey {
        std::uint8_t serverKeyCode;
        ModifierFlags modifiers;
        Handler handler;
        std::uint16_t serverMask = 0;
        bool isGrabbed = false;
        bool isDown = false;
    };

    bool startExtension();
    std::expected<void, Refusal> grab(HotKey& hotKey);
    void ungrab(HotKey& hotKey);
    void remove(std::shared_ptr<HotKey> const& hotKey);
    void followKeyboardMap();

    void handle(xcb_generic_event_t const& event);
    bool tellsOfNewKeyboardMap(xcb_generic_event_t const& event) const;
    void press(xcb_key_press_event_t const& event);
    void release(std::uint8_t serverKeyCode);
    std::uint16_t locks() const { return m_modifierMap.lockCombinations().back(); }
    bool isHeld(std::uint8_t serverKeyCode) const;

    X11Connection& m_connection;
    X11Clock& m_clock;
    std::uint8_t m_firstExtensionEvent = 0;
    bool const m_isAvailable;
    ModifierMap m_modifierMap;
    std::vector<std::shared_ptr<HotKey>> m_hotKeys;
    QTimer m_followKeyboardMap;
    Registration m_events;
};

}
