#include "e2e/Desktop.h"

#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <span>

namespace Quillory {

Desktop::Desktop()
    : m_connection(X11Connection::open().value())
    , m_view(*m_connection)
    , m_keyboard(SyntheticKeyboard::open().value())
    , m_screen(ScreenCapture::open().value())
{
}

std::optional<DesktopView::Reader> Desktop::reader() const
{
    auto reader = m_view.reader();
    return reader && m_view.frontWindow() == reader->window ? reader : std::nullopt;
}

QImage Desktop::picture()
{
    auto const seen = reader();
    return seen ? m_screen->picture(seen->frame.intersected(m_screen->screen())) : QImage();
}

xcb_window_t Desktop::topmostWindow() const
{
    auto const windows = m_connection->property(m_connection->root(), "_NET_CLIENT_LIST_STACKING");
    xcb_window_t topmost = XCB_NONE;
    if (windows.size() >= qsizetype { sizeof topmost })
        std::memcpy(&topmost, windows.last(sizeof topmost).constData(), sizeof topmost);
    return topmost;
}

bool Desktop::hasState(xcb_window_t window, char const* state) const
{
    return lists(window, "_NET_WM_STATE", state);
}

bool Desktop::lists(xcb_window_t window, char const* property, char const* atom) const
{
    return m_connection->lists(window, property, m_connection->atom(atom));
}

std::uint32_t Desktop::userTimeOf(xcb_window_t window) const
{
    auto const bearer = m_connection->number(window, "_NET_WM_USER_TIME_WINDOW").value_or(window);
    return m_connection->number(bearer, "_NET_WM_USER_TIME").value_or(0);
}

void Desktop::minimize(xcb_window_t window)
{
    constexpr std::uint32_t iconic = 3;
    tell(window, "WM_CHANGE_STATE", { iconic });
}

void Desktop::addState(xcb_window_t window, char const* state)
{
    tell(window, "_NET_WM_STATE", { 1, m_connection->atom(state), 0, 1 });
}

std::uint32_t Desktop::workspaceOf(xcb_window_t window) const
{
    return m_connection->number(window, "_NET_WM_DESKTOP").value_or(0);
}

void Desktop::switchToWorkspace(std::uint32_t number)
{
    tell(m_connection->root(), "_NET_CURRENT_DESKTOP", { number });
    eventually(
        [&] { return m_connection->number(m_connection->root(), "_NET_CURRENT_DESKTOP").value_or(0) == number; });
}

void Desktop::tell(xcb_window_t window, char const* message, std::initializer_list<std::uint32_t> data)
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

void Desktop::moveTo(xcb_window_t window, QPoint corner)
{
    std::uint32_t const place[] { static_cast<std::uint32_t>(corner.x()), static_cast<std::uint32_t>(corner.y()) };
    xcb_configure_window(m_connection->handle(), window, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, place);
    xcb_flush(m_connection->handle());
}

void Desktop::click(QPoint point)
{
    m_keyboard->click(static_cast<std::int16_t>(point.x()), static_cast<std::int16_t>(point.y()));
}

void Desktop::bringToFront(xcb_window_t window)
{
    tell(window, "_NET_ACTIVE_WINDOW", { 2 });
}

// The server gives each of its clients a range of numbers for what it makes.
int Desktop::windowsOfOwner(xcb_window_t sample) const
{
    return countWindows(m_connection->root(), sample & ~xcb_get_setup(m_connection->handle())->resource_id_mask);
}

int Desktop::countWindows(xcb_window_t parent, std::uint32_t owner) const
{
    auto* const xcb = m_connection->handle();
    XcbOwned<xcb_query_tree_reply_t> const tree(xcb_query_tree_reply(xcb, xcb_query_tree(xcb, parent), nullptr));
    if (!tree)
        return 0;
    std::span const children(
        xcb_query_tree_children(tree.get()), static_cast<std::size_t>(xcb_query_tree_children_length(tree.get())));
    int count = 0;
    for (auto const child : children) {
        bool const isOwn = (child & ~xcb_get_setup(xcb)->resource_id_mask) == owner;
        count += (isOwn ? 1 : 0) + countWindows(child, owner);
    }
    return count;
}

void Desktop::activate(xcb_window_t window)
{
    auto* connection = m_connection->handle();
    std::uint32_t const above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(connection, window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    XcbOwned<xcb_translate_coordinates_reply_t> const corner(xcb_translate_coordinates_reply(
        connection, xcb_translate_coordinates(connection, window, m_connection->root(), 0, 0), nullptr));
    constexpr std::int16_t inside = 20;
    m_keyboard->click(
        static_cast<std::int16_t>(corner->dst_x + inside), static_cast<std::int16_t>(corner->dst_y + inside));
}

bool Desktop::eventually(std::function<bool()> const& condition)
{
    constexpr std::chrono::milliseconds bound = std::chrono::seconds(20);
    return QTest::qWaitFor(condition, static_cast<int>(bound.count()));
}

}
