#pragma once

#include "platform/linux/x11/X11Connection.h"
#include "support/ScreenCapture.h"
#include "support/SyntheticKeyboard.h"
#include "tools/summon/DesktopView.h"

#include <functional>
#include <memory>
#include <optional>

namespace Quillory {

// The desktop that DISPLAY names as its user has it: windows to look at, keys to press, pixels.
class Desktop {
public:
    Desktop();

    // The program's window, when it is on the screen and has the keyboard.
    std::optional<DesktopView::Reader> reader() const;
    bool isReaderOnScreen() const { return m_view.reader().has_value(); }

    // Of the whole window. Null when the reader is away.
    QImage picture();

    xcb_window_t frontWindow() const { return m_view.frontWindow(); }
    xcb_window_t topmostWindow() const;

    bool isGrabbed(Shortcut const& shortcut) const { return m_view.isGrabbed(shortcut).value(); }
    void pressAndRelease(Shortcut const& shortcut);

    // Brings a window of another program to the front, by a click into it.
    void activate(xcb_window_t window);

    // Runs the event loop until `condition` holds; false after a bound that only a fault reaches.
    static bool eventually(std::function<bool()> const& condition);

private:
    std::unique_ptr<X11Connection> m_connection;
    DesktopView m_view;
    std::unique_ptr<SyntheticKeyboard> m_keyboard;
    std::unique_ptr<ScreenCapture> m_screen;
};

}
