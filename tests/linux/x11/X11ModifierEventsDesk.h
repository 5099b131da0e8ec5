#pragma once

#include "ModifierEventsDesk.h"

#include "linux/x11/X11KeyState.h"
#include "linux/x11/X11ModifierEvents.h"
#include "support/EventLoop.h"
#include "support/OtherProgram.h"
#include "tools/x11/SyntheticKeyboard.h"

namespace Quillory {

class X11ModifierEventsDesk final : public ModifierEventsDesk {
public:
    ModifierEvents& events() override { return m_events; }
    KeyState const& keys() override { return m_keys; }
    std::chrono::nanoseconds now() const override;

    void press(std::uint16_t keyCode) override;
    void release(std::uint16_t keyCode) override;
    void holdKeyUntilItRepeats(std::uint16_t keyCode) override;
    void click(ModifierEvent::Type button) override;
    void changeKeyboards() override;

    void clickButton(std::uint8_t button);
    void doubleTap(std::uint16_t keyCode);

    // A keyboard and a mouse of their own beside those that are there. Gives the device on which keys can be pressed.
    std::uint16_t addMaster();
    void removeMaster();
    void pressOn(std::uint16_t device, std::uint16_t keyCode);
    void releaseOn(std::uint16_t device, std::uint16_t keyCode);

    EventLoop& loop() { return m_loop; }
    OtherProgram& other() { return m_other; }
    X11Connection& connection() { return *m_connection; }
    X11Clock const& clock() const { return m_clock; }

private:
    // The server deals with a synthetic key at once; a round trip later all that follows from it is here.
    void settle();
    void fake(std::uint16_t device, std::uint8_t type, std::uint16_t keyCode);

    EventLoop m_loop;
    std::unique_ptr<X11Connection> m_connection = X11Connection::open().value();
    X11Clock m_clock;
    X11ModifierEvents m_events { *m_connection, m_clock, permission };
    X11KeyState m_keys { *m_connection };
    OtherProgram m_other;
    std::unique_ptr<SyntheticKeyboard> m_keyboard = SyntheticKeyboard::open().value();
};

}
