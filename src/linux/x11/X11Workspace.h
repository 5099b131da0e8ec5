#pragma once

#include "linux/x11/X11Clock.h"
#include "linux/x11/X11Connection.h"
#include "linux/x11/X11Session.h"
#include "platform/Observers.h"
#include "platform/Workspace.h"

#include <QTimer>

#include <chrono>
#include <unordered_set>

namespace Quillory {

// The desktop as the window manager tells it, or, without one, as the input focus does; notices of activation need a
// window manager. An application's bundle identifier is the class of its window.
class X11Workspace final : public Workspace {
public:
    // Both outlive it. `flushOwnWindows` sends on what our own windows have asked of the server by another connection.
    // Whoever else sees the user's keys and clicks for our windows should note their times in `clock`.
    X11Workspace(X11Connection& connection, X11Clock const& clock, std::function<void()> flushOwnWindows = {},
        X11Session session = X11Session::native);

    std::optional<RunningApplication> frontmostApplication() const override;
    std::optional<QRect> frontmostFrame() const override;
    QString mainBundleIdentifier() const override;
    void activate(RunningApplication const& application) override;

    void activateIgnoringOtherApps(std::uint64_t ownWindow) override;
    bool canFetchWindows() const override;
    void prepareToShow(std::uint64_t ownWindow) override;
    Registration observeActivation(std::function<void(RunningApplication const&)> activated) override;

private:
    bool isManaged() const;
    std::optional<xcb_window_t> frontWindow() const;
    std::optional<RunningApplication> describe(xcb_window_t named, xcb_window_t front) const;
    std::optional<RunningApplication> focusedApplication() const;
    std::optional<xcb_window_t> focusedWindow() const;
    std::optional<xcb_window_t> inputFocus() const;
    xcb_window_t pointedAtOr(xcb_window_t focus) const;
    xcb_window_t windowUnderPointer() const;
    std::optional<xcb_window_t> nearestWithClass(xcb_window_t window) const;
    void bringToFront(xcb_window_t window);
    void makeFloating(xcb_window_t window);
    void writeUserTime(xcb_window_t window);
    void noteFront(std::optional<xcb_window_t> front) const;
    void handle(xcb_generic_event_t const& event);
    void tellOfForeignWindow();

    X11Connection& m_connection;
    X11Clock const& m_clock;
    std::function<void()> m_flushOwnWindows;
    X11Session const m_session;
    std::unordered_set<xcb_window_t> m_ownWindows;
    xcb_window_t m_front = XCB_WINDOW_NONE; // the latest, also while there is none
    mutable std::optional<std::chrono::steady_clock::time_point> m_noFrontSince;
    QTimer m_foreignWindow; // on a guest, while no window of it has the front
    X11Clock m_frontChanges;
    Observers<void(RunningApplication const&)> m_observers;
    Registration m_events;
};

}
