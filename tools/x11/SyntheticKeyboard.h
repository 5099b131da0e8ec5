#pragma once

#include "linux/x11/ModifierMap.h"
#include "platform/ModifierFlags.h"

#include <cstdint>
#include <expected>
#include <memory>
#include <vector>

#include <QString>

#include <xcb/xcb.h>

namespace Quillory {

// Presses real keys of the X server that DISPLAY names, as the user would. Every call returns when the server has
// dealt with the key. What it holds down it lets go at its end.
class SyntheticKeyboard {
public:
    static std::expected<std::unique_ptr<SyntheticKeyboard>, QString> open();
    ~SyntheticKeyboard();
    SyntheticKeyboard(SyntheticKeyboard const&) = delete;
    SyntheticKeyboard& operator=(SyntheticKeyboard const&) = delete;

    // By virtual key code. The key must exist.
    void press(std::uint16_t keyCode);
    void release(std::uint16_t keyCode);

    void pressModifiers(ModifierFlags modifiers);
    void releaseModifiers(ModifierFlags modifiers);

    // Presses, lets go and presses again, quicker than any limit: the server gets all of it at once.
    void doubleTap(std::uint16_t keyCode);

    // At the pointer's position.
    void clickButton(std::uint8_t button);

    // Moves the pointer there, in the pixels of the screen, and clicks.
    void click(std::int16_t x, std::int16_t y);

    // The first button.
    void pressButton(int x, int y);
    void movePointer(int x, int y);
    void releaseButton();

private:
    explicit SyntheticKeyboard(xcb_connection_t* connection);
    void send(std::uint8_t type, std::uint8_t detail, std::int16_t x = 0, std::int16_t y = 0);
    std::vector<std::uint8_t> modifierKeys(ModifierFlags modifiers) const;

    xcb_connection_t* m_connection;
    std::vector<std::uint8_t> m_down;
};

}
