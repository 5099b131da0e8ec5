#include "linux/x11/X11Compositing.h"
#include "support/EventLoop.h"
#include "support/Test.h"

namespace Quillory {
namespace {

TEST(CompositingOnX11, A_compositor_is_known_from_before_and_followed_when_it_goes_and_comes)
{
    EventLoop loop;
    auto ours = X11Connection::open().value();
    auto its = X11Connection::open().value();
    auto const own = [](X11Connection& connection, xcb_window_t owner) {
        xcb_set_selection_owner(connection.handle(), owner, connection.atom("_NET_WM_CM_S0"), XCB_CURRENT_TIME);
        (void)connection.presentTime(); // the server has done it
    };
    own(*its, its->root());
    X11Compositing compositing(*ours);
    int changes = 0;
    auto const observation = compositing.observeChanges([&] { ++changes; });
    EXPECT_TRUE(compositing.isRunning());
    auto const becomes = [&](bool isRunning) {
        return loop.runUntil([&] { return compositing.isRunning() == isRunning; });
    };
    own(*its, XCB_WINDOW_NONE);
    EXPECT_TRUE(becomes(false));
    own(*its, its->root());
    EXPECT_TRUE(becomes(true));
    EXPECT_EQ(std::exchange(changes, 0), 2);

    auto const frameExtents = its->atom("_GTK_FRAME_EXTENTS");
    xcb_change_property(its->handle(), XCB_PROP_MODE_APPEND, its->root(), its->atom("_NET_SUPPORTED"), XCB_ATOM_ATOM,
        32, 1, &frameExtents);
    (void)its->presentTime();
    EXPECT_TRUE(loop.runUntil([&] { return compositing.leavesShadowsToWindows(); }));
    its.reset();
    EXPECT_TRUE(becomes(false)) << "it ended without a word";
    EXPECT_FALSE(compositing.leavesShadowsToWindows());
    EXPECT_EQ(changes, 2);
}

}
}
