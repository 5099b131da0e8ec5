#pragma once

#include "linux/x11/X11Connection.h"
#include "support/Keys.h"
#include "support/Test.h"
#include "tools/x11/DesktopView.h"
#include "tools/x11/ScreenCapture.h"
#include "tools/x11/SyntheticKeyboard.h"

#include <QTest>

#include <cstring>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <span>

namespace Quillory {

// The desktop that DISPLAY names as its user has it: windows to look at, keys to press, pixels.
class Desktop {
public:
    // Runs the event loop until `condition` holds; false after a bound that only a fault reaches.
    static bool eventually(std::function<bool()> const& condition)
    {
        constexpr std::chrono::milliseconds bound = 20s;
        return QTest::qWaitFor(condition, static_cast<int>(bound.count()));
    }

    // The program's window, when it is on the screen and has the keyboard.
    std::optional<DesktopView::Reader> reader() const
    {
        auto reader = m_view.reader();
        return reader && frontWindow() == reader->window ? reader : std::nullopt;
    }
    bool isReaderOnScreen() const { return m_view.reader().has_value(); }

    // Of the whole window. Null when the reader is away.
    QImage picture()
    {
        auto const seen = reader();
        return seen ? m_screen->picture(seen->frame.intersected(m_screen->screen())) : QImage();
    }

    xcb_window_t frontWindow() const { return m_view.frontWindow(); }
    xcb_window_t topmostWindow() const
    {
        auto const windows = m_connection->property(m_connection->root(), "_NET_CLIENT_LIST_STACKING");
        xcb_window_t topmost = XCB_NONE;
        if (windows.size() >= qsizetype { sizeof topmost })
            std::memcpy(&topmost, windows.last(sizeof topmost).constData(), sizeof topmost);
        return topmost;
    }

    // How many windows the owner of `sample` has at the server, those that are not shown and inner ones too. The server
    // gives each of its clients a range of numbers for what it makes.
    int windowsOfOwner(xcb_window_t sample) const { return countWindows(m_connection->root(), ownerOf(sample)); }

    // Whether the window manager counts the state to the window's, such as "_NET_WM_STATE_ABOVE".
    bool hasState(xcb_window_t window, char const* state) const { return lists(window, "_NET_WM_STATE", state); }
    void addState(xcb_window_t window, char const* state)
    {
        tell(window, "_NET_WM_STATE", { 1, m_connection->atom(state), 0, 1 });
    }

    // The number of the workspace that the window is on; 0xFFFFFFFF for all.
    std::uint32_t workspaceOf(xcb_window_t window) const
    {
        return m_connection->number(window, "_NET_WM_DESKTOP").value_or(0);
    }
    void switchToWorkspace(std::uint32_t number)
    {
        tell(m_connection->root(), "_NET_CURRENT_DESKTOP", { number });
        eventually(
            [&] { return m_connection->number(m_connection->root(), "_NET_CURRENT_DESKTOP").value_or(0) == number; });
    }

    // Whether a list of atoms that the window has as a property names this one.
    bool lists(xcb_window_t window, char const* property, char const* atom) const
    {
        return m_connection->lists(window, property, m_connection->atom(atom));
    }

    // When its program says that the user last acted on it, as a server time.
    std::uint32_t userTimeOf(xcb_window_t window) const
    {
        auto const bearer = m_connection->number(window, "_NET_WM_USER_TIME_WINDOW").value_or(window);
        return m_connection->number(bearer, "_NET_WM_USER_TIME").value_or(0);
    }

    // As a window manager's own key or menu does.
    void minimize(xcb_window_t window)
    {
        constexpr std::uint32_t iconic = 3;
        tell(window, "WM_CHANGE_STATE", { iconic });
    }
    // By its frame, within which the window stands.
    void moveTo(xcb_window_t window, QPoint corner)
    {
        auto* const xcb = m_connection->handle();
        std::uint32_t const place[] { static_cast<std::uint32_t>(corner.x()), static_cast<std::uint32_t>(corner.y()) };
        xcb_configure_window(xcb, window, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, place);
        eventually([&] {
            XcbOwned<xcb_translate_coordinates_reply_t> const moved(xcb_translate_coordinates_reply(
                xcb, xcb_translate_coordinates(xcb, window, m_connection->root(), 0, 0), nullptr));
            return moved && std::abs(moved->dst_x - corner.x()) < 60;
        });
    }
    // As a task bar does on the user's behalf.
    void bringToFront(xcb_window_t window) { tell(window, "_NET_ACTIVE_WINDOW", { 2 }); }

    SyntheticKeyboard& keyboard() { return *m_keyboard; }
    // The window manager has ended a drag.
    bool isPointerFree() const
    {
        auto* const xcb = m_connection->handle();
        XcbOwned<xcb_grab_pointer_reply_t> const grab(xcb_grab_pointer_reply(xcb,
            xcb_grab_pointer(xcb, 0, m_connection->root(), 0, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC, XCB_NONE,
                XCB_NONE, XCB_CURRENT_TIME),
            nullptr));
        m_connection->succeeded(xcb_ungrab_pointer_checked(xcb, XCB_CURRENT_TIME));
        return grab && grab->status == XCB_GRAB_STATUS_SUCCESS;
    }

    void click(QPoint point)
    {
        m_keyboard->click(static_cast<std::int16_t>(point.x()), static_cast<std::int16_t>(point.y()));
    }
    void play(QString const& keys) { Quillory::play(*m_keyboard, keys); }
    bool isGrabbed(Shortcut const& shortcut) const { return m_view.isGrabbed(shortcut).value(); }

private:
    std::uint32_t ownerOf(xcb_window_t window) const
    {
        return window & ~xcb_get_setup(m_connection->handle())->resource_id_mask;
    }
    int countWindows(xcb_window_t parent, std::uint32_t owner) const
    {
        auto* const xcb = m_connection->handle();
        XcbOwned<xcb_query_tree_reply_t> const tree(xcb_query_tree_reply(xcb, xcb_query_tree(xcb, parent), nullptr));
        int count = 0;
        for (auto const child : tree ? std::span(xcb_query_tree_children(tree.get()),
                                           static_cast<std::size_t>(xcb_query_tree_children_length(tree.get())))
                                     : std::span<xcb_window_t>())
            count += (ownerOf(child) == owner ? 1 : 0) + countWindows(child, owner);
        return count;
    }

    void tell(xcb_window_t window, char const* message, std::initializer_list<std::uint32_t> data)
    {
        xcb_client_message_event_t event {};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 32;
        event.window = window;
        event.type = m_connection->atom(message);
        std::ranges::copy(data, event.data.data32);
        auto const request = xcb_send_event_checked(m_connection->handle(), 0, m_connection->root(),
            XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
            reinterpret_cast<char const*>(&event));
        ASSERT_TRUE(m_connection->succeeded(request));
    }

    std::unique_ptr<X11Connection> m_connection = X11Connection::open().value();
    DesktopView m_view { *m_connection };
    std::unique_ptr<SyntheticKeyboard> m_keyboard = SyntheticKeyboard::open().value();
    std::unique_ptr<ScreenCapture> m_screen = ScreenCapture::open().value();
};

}
