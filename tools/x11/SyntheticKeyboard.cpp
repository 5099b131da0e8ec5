#include "tools/x11/SyntheticKeyboard.h"

#include "linux/x11/VirtualKeys.h"
#include "linux/x11/X11Connection.h"

#include <xcb/xtest.h>

#include <algorithm>
#include <ranges>

namespace Quillory {

std::expected<std::unique_ptr<SyntheticKeyboard>, QString> SyntheticKeyboard::open()
{
    auto* connection = xcb_connect(nullptr, nullptr);
    auto const* extension = xcb_connection_has_error(connection) ? nullptr
                                                                 : xcb_get_extension_data(connection, &xcb_test_id);
    if (!extension || !extension->present) {
        xcb_disconnect(connection);
        return std::unexpected(QStringLiteral("No X display takes synthetic keys here."));
    }
    return std::unique_ptr<SyntheticKeyboard>(new SyntheticKeyboard(connection));
}

SyntheticKeyboard::SyntheticKeyboard(xcb_connection_t* connection)
    : m_connection(connection)
{
}

SyntheticKeyboard::~SyntheticKeyboard()
{
    for (auto const key : std::vector(m_down) | std::views::reverse)
        send(XCB_KEY_RELEASE, key);
    xcb_disconnect(m_connection);
}

void SyntheticKeyboard::press(std::uint16_t keyCode)
{
    send(XCB_KEY_PRESS, VirtualKeys::serverKeyCode(keyCode).value());
}

void SyntheticKeyboard::release(std::uint16_t keyCode)
{
    send(XCB_KEY_RELEASE, VirtualKeys::serverKeyCode(keyCode).value());
}

void SyntheticKeyboard::pressModifiers(ModifierFlags modifiers)
{
    for (auto const key : modifierKeys(modifiers))
        send(XCB_KEY_PRESS, key);
}

void SyntheticKeyboard::releaseModifiers(ModifierFlags modifiers)
{
    for (auto const key : modifierKeys(modifiers) | std::views::reverse)
        send(XCB_KEY_RELEASE, key);
}

void SyntheticKeyboard::doubleTap(std::uint16_t keyCode)
{
    auto const key = VirtualKeys::serverKeyCode(keyCode).value();
    for (std::uint8_t const type : { std::uint8_t { XCB_KEY_PRESS }, std::uint8_t { XCB_KEY_RELEASE } })
        xcb_test_fake_input(m_connection, type, key, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
    send(XCB_KEY_PRESS, key);
}

void SyntheticKeyboard::clickButton(std::uint8_t button)
{
    send(XCB_BUTTON_PRESS, button);
    send(XCB_BUTTON_RELEASE, button);
}

void SyntheticKeyboard::click(std::int16_t x, std::int16_t y)
{
    pressButton(x, y);
    releaseButton();
}

void SyntheticKeyboard::movePointer(int x, int y)
{
    send(XCB_MOTION_NOTIFY, 0, static_cast<std::int16_t>(x), static_cast<std::int16_t>(y));
}

void SyntheticKeyboard::pressButton(int x, int y)
{
    movePointer(x, y);
    send(XCB_BUTTON_PRESS, 1);
}

void SyntheticKeyboard::releaseButton()
{
    send(XCB_BUTTON_RELEASE, 1);
}

std::vector<std::uint8_t> SyntheticKeyboard::modifierKeys(ModifierFlags modifiers) const
{
    return ModifierMap::read(m_connection).keyCodes(modifiers).value();
}

void SyntheticKeyboard::send(std::uint8_t type, std::uint8_t detail, std::int16_t x, std::int16_t y)
{
    if (type == XCB_KEY_PRESS)
        m_down.push_back(detail);
    if (type == XCB_KEY_RELEASE)
        std::erase(m_down, detail);
    auto const root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
    auto const request = xcb_test_fake_input_checked(m_connection, type, detail, XCB_CURRENT_TIME, root, x, y, 0);
    XcbOwned<xcb_generic_error_t>(xcb_request_check(m_connection, request));
}

}
