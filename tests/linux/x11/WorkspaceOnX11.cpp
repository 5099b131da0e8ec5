#include "WorkspaceContract.h"
#include "X11Desk.h"

#include "linux/x11/X11Workspace.h"

#include <QElapsedTimer>

#include <unistd.h>

namespace Quillory {
namespace {

class WorkspaceOnX11 : public X11Desk {
public:
    xcb_window_t open(QString const& windowClass, std::optional<std::uint32_t> process = {})
    {
        // Side by side, so that the user can point at each of them.
        constexpr int places = 5;
        auto const place = m_opened++ % places;
        auto const x = static_cast<std::int16_t>(10 + place * (OtherProgram::windowWidth + 30));
        return other.open({ windowClass.toLatin1(), process, x, 100 });
    }
    xcb_window_t openOwn() { return open(u"Anything"_s, static_cast<std::uint32_t>(getpid())); }
    void close(std::uint64_t window) { other.close(static_cast<xcb_window_t>(window)); }

    // A click that follows another at once can get lost at the window manager; a user clicks again then.
    void choose(std::uint64_t window)
    {
        QElapsedTimer sinceClick;
        comesTrue([&] {
            if (!sinceClick.isValid() || sinceClick.hasExpired(300)) {
                point(window);
                sinceClick.start();
            }
            return connection->number(connection->root(), "_NET_ACTIVE_WINDOW") == window;
        });
    }
    void point(std::uint64_t window)
    {
        auto const [x, y] = other.middle(static_cast<xcb_window_t>(window));
        keyboard->click(x, y);
    }
    bool comesTrue(std::function<bool()> const& condition) { return loop.runUntil(condition, 10s); }
    // As a compositor says it.
    void frontIs(xcb_window_t window)
    {
        if (connection->number(connection->root(), "_NET_ACTIVE_WINDOW").value_or(XCB_NONE) == window)
            return;
        xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, connection->root(), connection->atom("_NET_ACTIVE_WINDOW"),
            XCB_ATOM_WINDOW, 32, 1, &window);
        xcb_flush(xcb);
    }

protected:
    X11Workspace workspace { *connection, clock };

private:
    int m_opened = 0;
};

TEST_F(WorkspaceOnX11, It_tells_what_is_in_front_and_hands_it_over)
{
    tellsWhatIsInFrontAndHandsItOver(*this, workspace);
}

TEST_F(WorkspaceOnX11, A_window_is_prepared_to_float_with_the_time_of_the_users_key)
{
    auto const own = openOwn();
    auto const userTime = [&] { return connection->number(own, "_NET_WM_USER_TIME"); };
    workspace.prepareToShow(own);
    EXPECT_EQ(userTime(), std::nullopt);
    clock.note(4711);
    workspace.prepareToShow(own);
    EXPECT_EQ(userTime(), 4711U);
    EXPECT_TRUE(connection->lists(own, "_NET_WM_WINDOW_TYPE", connection->atom("_NET_WM_WINDOW_TYPE_UTILITY")));
}

TEST_F(WorkspaceOnX11, On_a_guest_that_no_window_has_the_front_any_more_is_news_of_a_foreign_one)
{
    frontIs(XCB_NONE); // it may still be a window of an earlier desk
    X11Workspace guest { *connection, clock, {}, X11Session::guest };
    std::vector<RunningApplication> noticed;
    auto const observing = guest.observeActivation([&](auto const& application) { noticed.push_back(application); });
    auto const isNoticed = [&](RunningApplication const& application) {
        EXPECT_TRUE(comesTrue([&] {
            frontIs(static_cast<xcb_window_t>(application.window)); // the window manager may write it, too
            return !noticed.empty();
        }));
        EXPECT_THAT(std::exchange(noticed, {}), ElementsAre(application));
    };
    auto const window = open(u"Editor"_s);
    isNoticed({ u"Editor"_s, window });
    isNoticed({});
    EXPECT_EQ(guest.frontmostApplication(), std::nullopt);
    isNoticed({ u"Editor"_s, window });
}

TEST_F(WorkspaceOnX11, What_arrives_while_the_time_is_asked_for_is_handed_out_afterwards)
{
    auto const window = open(u"Editor"_s);
    connection->drain();
    std::vector<std::uint8_t> types;
    auto const observing = connection->observeEvents([&](auto const& event) { types.push_back(event.response_type); });
    other.close(window);
    EXPECT_NE(connection->presentTime(), 0U);
    EXPECT_THAT(types, IsEmpty());
    EXPECT_TRUE(comesTrue([&] { return !types.empty(); })) << "the front has gone";
    EXPECT_EQ(types.front(), XCB_PROPERTY_NOTIFY);
}

class WithoutAWindowManager : public WorkspaceOnX11 { };

TEST_F(WithoutAWindowManager, The_focus_goes_to_our_window_and_back_to_the_one_that_had_it_or_to_the_pointers)
{
    auto const first = open(u"Editor"_s);
    open(u"Editor"_s);
    auto const own = openOwn();
    point(first);
    for (xcb_window_t const focus : { first, xcb_window_t { XCB_INPUT_FOCUS_POINTER_ROOT } }) {
        other.focus(focus);
        auto const previous = workspace.frontmostApplication();
        EXPECT_EQ(previous, (RunningApplication { u"Editor"_s, focus }));
        workspace.prepareToShow(own);
        workspace.activateIgnoringOtherApps(own);
        EXPECT_EQ(other.focusedWindow(), own);
        EXPECT_EQ(workspace.frontmostApplication()->bundleIdentifier, workspace.mainBundleIdentifier());
        workspace.activate(*previous);
        EXPECT_EQ(other.focusedWindow(), focus);
    }
}

}
}
