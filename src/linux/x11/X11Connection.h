#pragma once

#include "platform/Observers.h"

#include <QByteArray>
#include <QObject>
#include <QString>

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <deque>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>

class QSocketNotifier;

namespace Quillory {

// Frees what xcb allocates and leaves to its caller.
struct FreeDeleter {
    void operator()(void* memory) const { std::free(memory); }
};
template<typename Type>
using XcbOwned = std::unique_ptr<Type, FreeDeleter>;

// A connection of our own to the X server, whose events arrive through the event loop of the thread that opened it.
// Everything is called on that thread. When the server goes away the connection falls silent: requests do nothing.
class X11Connection {
public:
    using EventHandler = std::function<void(xcb_generic_event_t const&)>;

    // To the display that the environment names. The error is a sentence for the user.
    static std::expected<std::unique_ptr<X11Connection>, QString> open();

    ~X11Connection();
    X11Connection(X11Connection const&) = delete;
    X11Connection& operator=(X11Connection const&) = delete;

    // Calls `handler` for every event, in order, until the registration ends.
    Registration observeEvents(EventHandler handler) { return m_handlers.add(std::move(handler)); }

    // Asks for further events of the root window, beside those that were asked for already.
    void listenOnRoot(std::uint32_t eventMask);

    // Hands out the events that are here. Happens by itself before the event loop waits.
    void drain();

    // The server's time now, by the notice that it sends of a change; 0 when the server is gone. Waits for the server.
    // Events that arrive meanwhile keep their order and are handed out by the next `drain`.
    std::uint32_t presentTime();

    // True when the request that the cookie stands for succeeded. Waits for the server.
    bool succeeded(xcb_void_cookie_t checked) const;

    // A property's bytes as they stand, of any type. Empty when the window or the property is not there.
    QByteArray property(xcb_window_t window, char const* name);

    // The first number of a property of numbers or windows. Absent likewise, and when it is 0.
    std::optional<std::uint32_t> number(xcb_window_t window, char const* name);

    // Whether a property that is a list of numbers, atoms or windows has this one.
    bool lists(xcb_window_t window, char const* name, std::uint32_t number);

    // Called once, from the event loop, when the server is gone.
    std::function<void()> onLost;

    xcb_atom_t atom(char const* name);
    xcb_connection_t* handle() const { return m_connection; }
    xcb_screen_t const& screen() const { return *m_screen; }
    xcb_window_t root() const { return m_screen->root; }

private:
    X11Connection(xcb_connection_t* connection, xcb_screen_t const* screen);
    XcbOwned<xcb_generic_event_t> nextEvent();

    xcb_connection_t* m_connection;
    xcb_screen_t const* m_screen;
    Observers<void(xcb_generic_event_t const&)> m_handlers;
    std::unordered_map<std::string, xcb_atom_t> m_atoms;
    std::deque<XcbOwned<xcb_generic_event_t>> m_waiting;
    std::uint32_t m_rootEventMask = 0;
    xcb_window_t m_timekeeper = XCB_WINDOW_NONE; // never shown; made when it is first needed
    std::unique_ptr<QSocketNotifier> m_notifier;
    QMetaObject::Connection m_beforeWaiting;
};

}
