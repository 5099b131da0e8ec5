#include "linux/x11/X11PanelWindow.h"
#include "support/EventLoop.h"
#include "support/Test.h"

namespace Quillory {
namespace {

// A window as the panel's owner shows and hides it, seen with the window manager's eyes.
class PanelWindowOnX11 : public Test {
protected:
    PanelWindowOnX11()
    {
        xcb_create_window(xcb, XCB_COPY_FROM_PARENT, window, connection->root(), 0, 0, 200, 150, 0,
            XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    }
    ~PanelWindowOnX11() override { hide(); }

    void show()
    {
        panel.willShow();
        xcb_map_window(xcb, window);
        panel.didShow();
        EXPECT_TRUE(loop.runUntil([&] { return isManaged(); }));
    }

    // The window manager hears of it by a message too, and then lets the window go.
    void hide()
    {
        xcb_unmap_window(xcb, window);
        xcb_unmap_notify_event_t event {};
        event.response_type = XCB_UNMAP_NOTIFY;
        event.event = connection->root();
        event.window = window;
        xcb_send_event(xcb, 0, connection->root(),
            XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
            reinterpret_cast<char const*>(&event));
        xcb_flush(xcb);
        panel.didHide();
        EXPECT_TRUE(loop.runUntil([&] { return !isManaged(); }));
    }

    bool isManaged() { return connection->lists(connection->root(), "_NET_CLIENT_LIST", window); }
    bool hasState(char const* state) { return connection->lists(window, "_NET_WM_STATE", connection->atom(state)); }

    EventLoop loop;
    std::unique_ptr<X11Connection> connection = X11Connection::open().value();
    xcb_connection_t* const xcb = connection->handle();
    xcb_window_t const window = xcb_generate_id(xcb);
    X11PanelWindow panel { *connection, window };
};

TEST_F(PanelWindowOnX11, Level_and_place_are_switched_on_the_living_window_and_outlast_hiding)
{
    // Switched while hidden, while shown, and left alone over a hide.
    struct Step {
        char const* story;
        bool isPeek;
        bool isHiddenMeanwhile;
    };
    for (auto const& [story, isPeek, isHiddenMeanwhile] : std::initializer_list<Step> { { "first show", true, true },
             { "peek ends", false, false }, { "peek begins", true, false }, { "hidden and shown", true, true },
             { "resident at the next show", false, true }, { "and again", false, true } }) {
        SCOPED_TRACE(story);
        if (isHiddenMeanwhile)
            hide();
        panel.setLevel(isPeek ? WindowLevel::floating : WindowLevel::normal);
        panel.setCollectionBehavior(isPeek ? CollectionBehavior::everywhere : CollectionBehavior::none);
        if (isHiddenMeanwhile)
            show();
        EXPECT_TRUE(loop.runUntil([&] {
            bool const isEverywhere = connection->number(window, "_NET_WM_DESKTOP") == 0xFFFFFFFF;
            return hasState("_NET_WM_STATE_ABOVE") == isPeek && isEverywhere == isPeek;
        }));
        EXPECT_TRUE(hasState("_NET_WM_STATE_SKIP_TASKBAR"));
    }
}

}
}
