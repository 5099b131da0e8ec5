#pragma once

#include "linux/x11/X11Connection.h"
#include "platform/PanelWindow.h"

#include <initializer_list>
#include <vector>

namespace Quillory {

// A window of ours as the window manager has it: one that tilers float, that can't be minimized and is kept off task
// bars and pagers, with level and workspaces switched by messages, so that the window stays the one it is.
class X11PanelWindow final : public PanelWindow {
public:
    // The window is not shown yet. `flushOwnWindows` sends on what our own windows have asked of the server by another connection.
    X11PanelWindow(X11Connection& connection, xcb_window_t window, std::function<void()> flushOwnWindows = {});

    void setLevel(WindowLevel level) override;
    void setCollectionBehavior(CollectionBehavior behavior) override;
    void setShadow(QMargins shadow, QSize window) override;
    bool isMinimized() const override;
    void willShow() override;
    void didShow() override;
    void didHide() override;

private:
    void describe();
    bool isOnAllWorkspaces() const;
    std::vector<xcb_atom_t> states() const;
    bool isActive() const;
    void takeForgottenFocus();
    void tellLevel();
    void tellWorkspaces();
    void tell(char const* message, std::initializer_list<std::uint32_t> data);
    void changeState(bool isOn, char const* state);

    X11Connection& m_connection;
    xcb_window_t m_window;
    std::function<void()> m_flushOwnWindows;
    WindowLevel m_level = WindowLevel::normal;
    CollectionBehavior m_behavior = CollectionBehavior::none;
    bool m_wasActive = false; // while it was hidden
    bool m_isUp = false; // from right before it is shown
    bool m_isShown = false; // and the window manager has been told
};

}
