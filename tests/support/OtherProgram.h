#pragma once

#include "platform/ModifierFlags.h"

#include <QByteArray>
#include <QString>

#include <xcb/xcb.h>

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace Quillory {

// Another program on the X server that DISPLAY names, with windows and grabs of its own, on a connection of its own.
// Throws when there is no such server.
class OtherProgram {
public:
    // What the window manager is told about a window beside its class.
    struct Window {
        QByteArray windowClass;
        std::optional<std::uint32_t> process;
        std::int16_t x = 0;
        std::int16_t y = 0;
    };
    static constexpr std::uint16_t windowWidth = 200;
    static constexpr std::uint16_t windowHeight = 150;

    OtherProgram();
    ~OtherProgram();
    OtherProgram(OtherProgram const&) = delete;
    OtherProgram& operator=(OtherProgram const&) = delete;

    // Returns when the window is on the screen.
    xcb_window_t open(Window const& window);
    void close(xcb_window_t window);

    // Where the middle of the window is on the screen.
    std::pair<std::int16_t, std::int16_t> middle(xcb_window_t window) const;

    void focus(xcb_window_t window);
    xcb_window_t focusedWindow() const;

    // By virtual key code. False when somebody else holds that very combination.
    bool grab(std::uint16_t keyCode, std::uint16_t serverModifiers);
    void ungrab(std::uint16_t keyCode, std::uint16_t serverModifiers);

    // Whether it could take the whole keyboard, as a menu does. Lets it go at once.
    bool canHaveKeyboard();

    // Holds the whole keyboard, as an open menu does, until this program ends.
    bool takeKeyboard();

    // Locks or unlocks the server's modifier bits.
    void lock(std::uint8_t serverModifiers, bool isOn);

    // Exchanges what two keys give, by server key code.
    void swapKeys(std::uint8_t a, std::uint8_t b);

    // The server key codes that went down in its windows up to now.
    std::vector<std::uint8_t> pressedKeys();

    xcb_connection_t* connection() const { return m_connection; }

private:
    void sync() const;

    xcb_connection_t* m_connection;
    xcb_screen_t const* m_screen;
    std::vector<std::uint8_t> m_pressedKeys;
};

}
