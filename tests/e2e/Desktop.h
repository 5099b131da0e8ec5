#pragma once

#include "linux/x11/X11Connection.h"
#include "support/Keys.h"
#include "tools/x11/DesktopView.h"
#include "tools/x11/ScreenCapture.h"
#include "tools/x11/SyntheticKeyboard.h"

#include <functional>
#include <initializer_list>
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

    // How many windows the owner of `sample` has at the server, those that are not shown and inner ones too.
    int windowsOfOwner(xcb_window_t sample) const;

    // Whether the window manager counts the state to the window's, such as "_NET_WM_STATE_ABOVE".
    bool hasState(xcb_window_t window, char const* state) const;
    void addState(xcb_window_t window, char const* state);

    // The number of the workspace that the window is on; 0xFFFFFFFF for all.
    std::uint32_t workspaceOf(xcb_window_t window) const;
    void switchToWorkspace(std::uint32_t number);

    // Whether a list of atoms that the window has as a property names this one.
    bool lists(xcb_window_t window, char const* property, char const* atom) const;

    // When its program says that the user last acted on it, as a server time.
    std::uint32_t userTimeOf(xcb_window_t window) const;

    // As a window manager's own key or menu does.
    void minimize(xcb_window_t window);
    void moveTo(xcb_window_t window, QPoint corner);
    void click(QPoint point);
    // As a task bar does on the user's behalf.
    void bringToFront(xcb_window_t window);
    SyntheticKeyboard& keyboard() { return *m_keyboard; }

    bool isGrabbed(Shortcut const& shortcut) const { return m_view.isGrabbed(shortcut).value(); }
    void play(QString const& keys) { Quillory::play(*m_keyboard, keys); }

    // Brings a window of another program to the front, by a click into it.
    void activate(xcb_window_t window);

    // Runs the event loop until `condition` holds; false after a bound that only a fault reaches.
    static bool eventually(std::function<bool()> const& condition);

private:
    int countWindows(xcb_window_t parent, std::uint32_t owner) const;
    void tell(xcb_window_t window, char const* message, std::initializer_list<std::uint32_t> data);

    std::unique_ptr<X11Connection> m_connection;
    DesktopView m_view;
    std::unique_ptr<SyntheticKeyboard> m_keyboard;
    std::unique_ptr<ScreenCapture> m_screen;
};

}
