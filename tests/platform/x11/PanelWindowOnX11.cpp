#include "PanelWindowContract.h"

#include "platform/linux/x11/X11PanelWindow.h"
#include "support/EventLoop.h"

namespace Quillory {
namespace {

class X11PanelWindowDesk final : public PanelWindowDesk {
public:
    X11PanelWindowDesk()
        : m_window(xcb_generate_id(xcb()))
        , m_panel(*m_connection, m_window)
    {
        xcb_create_window(xcb(), XCB_COPY_FROM_PARENT, m_window, m_connection->root(), 0, 0, 200, 150, 0,
            XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    }
    ~X11PanelWindowDesk() override { hide(); }
    X11PanelWindowDesk(X11PanelWindowDesk const&) = delete;
    X11PanelWindowDesk& operator=(X11PanelWindowDesk const&) = delete;

    PanelWindow& panel() override { return m_panel; }

    void show() override
    {
        m_panel.willShow();
        xcb_map_window(xcb(), m_window);
        m_panel.didShow();
        EXPECT_TRUE(comesTrue([&] { return isManaged(); }));
    }

    // The window manager hears of it by a message too, and then lets the window go.
    void hide() override
    {
        xcb_unmap_window(xcb(), m_window);
        xcb_unmap_notify_event_t event {};
        event.response_type = XCB_UNMAP_NOTIFY;
        event.event = m_connection->root();
        event.window = m_window;
        xcb_send_event(xcb(), 0, m_connection->root(),
            XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
            reinterpret_cast<char const*>(&event));
        xcb_flush(xcb());
        m_panel.didHide();
        EXPECT_TRUE(comesTrue([&] { return !isManaged(); }));
    }

    bool isAbove() override { return hasState("_NET_WM_STATE_ABOVE"); }
    bool isEverywhere() override { return m_connection->number(m_window, "_NET_WM_DESKTOP") == 0xFFFFFFFF; }
    bool isOnTaskBars() override { return !hasState("_NET_WM_STATE_SKIP_TASKBAR"); }

    bool comesTrue(std::function<bool()> const& condition) override
    {
        return m_loop.runUntil(condition, std::chrono::seconds(10));
    }

private:
    xcb_connection_t* xcb() const { return m_connection->handle(); }
    bool isManaged() { return m_connection->lists(m_connection->root(), "_NET_CLIENT_LIST", m_window); }
    bool hasState(char const* state)
    {
        return m_connection->lists(m_window, "_NET_WM_STATE", m_connection->atom(state));
    }

    EventLoop m_loop;
    std::unique_ptr<X11Connection> m_connection = X11Connection::open().value();
    xcb_window_t m_window;
    X11PanelWindow m_panel;
};

INSTANTIATE_TEST_SUITE_P(X11, PanelWindowContract, deskOf<X11PanelWindowDesk>("x11"));

}
}
