#include "X11ModifierEventsDesk.h"

#include "linux/x11/VirtualKeys.h"
#include "linux/x11/XInput.h"

#include <gmock/gmock.h>

#include <xcb/xtest.h>

#include <algorithm>
#include <cstring>

namespace Quillory {

namespace {

constexpr std::string_view masterName = "Second";

// Every device of the server with a name that begins so.
std::vector<std::uint16_t> devices(xcb_connection_t* xcb, std::string_view begin)
{
    std::vector<std::uint16_t> found;
    XcbOwned<xcb_input_xi_query_device_reply_t> const reply(
        xcb_input_xi_query_device_reply(xcb, xcb_input_xi_query_device(xcb, XCB_INPUT_DEVICE_ALL), nullptr));
    for (auto device = xcb_input_xi_query_device_infos_iterator(reply.get()); device.rem > 0;
        xcb_input_xi_device_info_next(&device)) {
        std::string_view const name(xcb_input_xi_device_info_name(device.data),
            static_cast<std::size_t>(xcb_input_xi_device_info_name_length(device.data)));
        if (name.starts_with(begin))
            found.push_back(device.data->deviceid);
    }
    return found;
}

}

std::chrono::nanoseconds X11ModifierEventsDesk::now() const
{
    return std::chrono::steady_clock::now().time_since_epoch();
}

void X11ModifierEventsDesk::press(std::uint16_t keyCode)
{
    m_keyboard->press(keyCode);
    settle();
}

void X11ModifierEventsDesk::release(std::uint16_t keyCode)
{
    m_keyboard->release(keyCode);
    settle();
}

void X11ModifierEventsDesk::doubleTap(std::uint16_t keyCode)
{
    m_keyboard->doubleTap(keyCode);
    settle();
}

void X11ModifierEventsDesk::holdKeyUntilItRepeats(std::uint16_t keyCode)
{
    auto const window = m_other.open({ .windowClass = "Editor", .process = {} });
    m_other.focus(window);
    press(keyCode);
    EXPECT_TRUE(m_loop.runUntil([&] { return m_other.pressedKeys().size() >= 4; }));
    m_other.close(window);
}

void X11ModifierEventsDesk::click(ModifierEvent::Type button)
{
    using enum ModifierEvent::Type;
    clickButton(button == leftMouseDown ? 1 : button == rightMouseDown ? 3 : 2);
}

void X11ModifierEventsDesk::clickButton(std::uint8_t button)
{
    m_keyboard->clickButton(button);
    settle();
}

void X11ModifierEventsDesk::changeKeyboards()
{
    addMaster();
    removeMaster();
}

std::uint16_t X11ModifierEventsDesk::addMaster()
{
    auto* const xcb = m_other.connection();
    EXPECT_TRUE(startXInput(xcb));
    struct {
        xcb_input_add_master_t head { XCB_INPUT_HIERARCHY_CHANGE_TYPE_ADD_MASTER, 4, masterName.size(), 1, 1 };
        char name[8] = {};
    } request;
    std::ranges::copy(masterName, request.name);
    xcb_input_xi_change_hierarchy(xcb, 1, reinterpret_cast<xcb_input_hierarchy_change_t const*>(&request));
    settle();
    auto const added = devices(xcb, "Second XTEST keyboard");
    EXPECT_EQ(added.size(), 1U);
    return added.empty() ? std::uint16_t { 0 } : added.front();
}

void X11ModifierEventsDesk::removeMaster()
{
    auto* const xcb = m_other.connection();
    for (auto const master : devices(xcb, "Second keyboard")) {
        xcb_input_remove_master_t const request { XCB_INPUT_HIERARCHY_CHANGE_TYPE_REMOVE_MASTER, 3, master,
            XCB_INPUT_CHANGE_MODE_FLOAT, {}, 0, 0 };
        xcb_input_xi_change_hierarchy(xcb, 1, reinterpret_cast<xcb_input_hierarchy_change_t const*>(&request));
    }
    settle();
    EXPECT_TRUE(devices(xcb, masterName).empty());
}

void X11ModifierEventsDesk::pressOn(std::uint16_t device, std::uint16_t keyCode)
{
    fake(device, XCB_INPUT_DEVICE_KEY_PRESS, keyCode);
}

void X11ModifierEventsDesk::releaseOn(std::uint16_t device, std::uint16_t keyCode)
{
    fake(device, XCB_INPUT_DEVICE_KEY_RELEASE, keyCode);
}

void X11ModifierEventsDesk::fake(std::uint16_t device, std::uint8_t type, std::uint16_t keyCode)
{
    auto* const xcb = m_other.connection();
    auto const first = xcb_get_extension_data(xcb, &xcb_input_id)->first_event;
    auto const request = xcb_test_fake_input_checked(xcb, static_cast<std::uint8_t>(first + type),
        VirtualKeys::serverKeyCode(keyCode).value(), XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0,
        static_cast<std::uint8_t>(device));
    EXPECT_FALSE(XcbOwned<xcb_generic_error_t>(xcb_request_check(xcb, request)));
    settle();
}

void X11ModifierEventsDesk::settle()
{
    m_other.pressedKeys();
    XcbOwned<xcb_get_input_focus_reply_t>(
        xcb_get_input_focus_reply(m_connection->handle(), xcb_get_input_focus(m_connection->handle()), nullptr));
    m_connection->drain();
}

}
