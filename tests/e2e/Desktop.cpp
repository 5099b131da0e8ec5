#include "e2e/Desktop.h"

#include <QTest>

#include <chrono>
#include <cstring>

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

void Desktop::pressAndRelease(Shortcut const& shortcut)
{
    auto const key = static_cast<std::uint16_t>(shortcut.carbonKeyCode);
    m_keyboard->pressModifiers(shortcut.modifiers());
    m_keyboard->press(key);
    m_keyboard->release(key);
    m_keyboard->releaseModifiers(shortcut.modifiers());
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
