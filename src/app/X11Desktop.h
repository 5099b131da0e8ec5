#pragma once

#include "UserTimes.h"

#include "linux/qt/QtLocalKeyEvents.h"
#include "linux/qt/QtScreens.h"
#include "linux/qt/WindowSizeFilter.h"
#include "linux/x11/X11Clock.h"
#include "linux/x11/X11Compositing.h"
#include "linux/x11/X11Connection.h"
#include "linux/x11/X11HotKeys.h"
#include "linux/x11/X11InputPermission.h"
#include "linux/x11/X11KeyState.h"
#include "linux/x11/X11KeyStrokes.h"
#include "linux/x11/X11ModifierEvents.h"
#include "linux/x11/X11PeekKeys.h"
#include "linux/x11/X11SelectionOwner.h"
#include "linux/x11/X11Session.h"
#include "linux/x11/X11Workspace.h"
#include "linux/x11/XkbKeyboardLayout.h"
#include "platform/PanelWindow.h"

#include <QApplication>
#include <QString>

#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <optional>

namespace Quillory {

// The window system's share of the seams, on an X server: its connections, its clock and its adapters. Another window
// system is one more class of this shape. Main thread only.
class X11Desktop {
public:
    // Makes the toolkit talk to the X server, on Wayland to the one that stands in for it. To be made before the
    // application and forgotten right after it: programs that are started from here must not inherit the choice.
    class ToolkitChoice {
    public:
        ToolkitChoice();
        void forget() const;

    private:
        bool m_isOurs;
    };

    // Whether there is a server: asked before the toolkit, which aborts where there is none. The error is a sentence.
    static std::expected<void, QString> probe();

    // The error is a sentence for the user. The application outlives the desktop, which it belongs to.
    static std::expected<std::unique_ptr<X11Desktop>, QString> open(QApplication const& application);

    X11Desktop(X11Desktop const&) = delete;
    X11Desktop& operator=(X11Desktop const&) = delete;

    HotKeys& hotKeys() { return m_hotKeys; }
    LocalKeyEvents& localKeyEvents() { return m_localKeyEvents; }
    Workspace& workspace() { return m_workspace; }
    ModifierEvents& modifierEvents() { return m_modifierEvents; }
    InputPermission& permission() { return m_permission; }
    KeyState const& keys() const { return m_keys; }
    PeekKeys const& peekKeys() const { return m_peekKeys; }
    X11Session session() const { return m_session; }
    KeyboardLayout& keyboardLayout() { return m_keyboardLayout; }
    KeyStrokes& keyStrokes() { return m_keyStrokes; }
    Screens& screens() { return m_screens; }
    Compositing& compositing() { return m_compositing; }
    X11SelectionOwner& embeddingTray() { return m_embeddingTray; }

    std::unique_ptr<PanelWindow> panelWindow(std::uint64_t window);

    // When the user asked for what another process passed on, as a server time; absent for now.
    void noteUserTime(std::optional<std::uint32_t> time);

    // Takes the hot keys again that other programs have had while the machine slept.
    void didWake() { m_hotKeys.grabAgain(); }

private:
    X11Desktop(QApplication const& application, std::unique_ptr<X11Connection> connection,
        std::unique_ptr<X11Connection> listening);

    std::function<void()> m_flushOwnWindows;
    std::unique_ptr<X11Connection> m_connection;
    std::unique_ptr<X11Connection> m_listening; // raw events pause on a connection that grabs keys
    X11Session const m_session;
    X11Clock m_clock;
    X11Compositing m_compositing;
    X11SelectionOwner m_embeddingTray;
    UserTimes m_userTimes;
    X11HotKeys m_hotKeys;
    X11KeyState m_keys;
    X11PeekKeys m_peekKeys;
    QtLocalKeyEvents m_localKeyEvents;
    X11Workspace m_workspace;
    X11InputPermission m_permission;
    X11ModifierEvents m_modifierEvents;
    XkbKeyboardLayout m_keyboardLayout;
    X11KeyStrokes m_keyStrokes;
    QtScreens m_screens;
    WindowSizeFilter m_sizes;
};

}
