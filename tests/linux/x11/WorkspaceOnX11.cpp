#include "WorkspaceContract.h"

#include "linux/x11/X11HotKeys.h"
#include "linux/x11/X11Workspace.h"
#include "support/EventLoop.h"
#include "support/OtherProgram.h"
#include "tools/x11/SyntheticKeyboard.h"

#include <QElapsedTimer>
#include <QTimer>

#include <unistd.h>

namespace Quillory {
namespace {

class X11Desk final : public WorkspaceDesk {
public:
    Workspace& workspace() override { return m_workspace; }

    std::uint64_t open(QString const& windowClass) override { return open(windowClass.toLatin1(), {}); }
    std::uint64_t openOwn() override { return open("Anything", static_cast<std::uint32_t>(getpid())); }
    void close(std::uint64_t window) override { m_programs.close(static_cast<xcb_window_t>(window)); }

    // A click that follows another at once can get lost at the window manager; a user clicks again then.
    void choose(std::uint64_t window) override
    {
        constexpr std::chrono::milliseconds patience { 300 };
        QElapsedTimer sinceClick;
        comesTrue([&] {
            if (!sinceClick.isValid() || sinceClick.hasExpired(patience.count())) {
                point(window);
                sinceClick.start();
            }
            return m_connection->number(m_connection->root(), "_NET_ACTIVE_WINDOW") == window;
        });
    }

    void point(std::uint64_t window)
    {
        auto const [x, y] = m_programs.middle(static_cast<xcb_window_t>(window));
        m_keyboard->click(x, y);
    }

    // What happens at the window manager wakes nobody here.
    bool comesTrue(std::function<bool()> const& condition) override
    {
        QTimer waking;
        waking.start(std::chrono::milliseconds(5));
        return m_loop.runUntil(condition, std::chrono::seconds(10));
    }

    OtherProgram& programs() { return m_programs; }
    X11Connection& connection() { return *m_connection; }
    X11Clock& clock() { return m_clock; }

private:
    std::uint64_t open(QByteArray const& windowClass, std::optional<std::uint32_t> process)
    {
        // Side by side, so that the user can point at each of them.
        constexpr int places = 5;
        auto const place = m_opened++ % places;
        auto const x = static_cast<std::int16_t>(10 + place * (OtherProgram::windowWidth + 30));
        return m_programs.open({ windowClass, process, x, 100 });
    }

    EventLoop m_loop;
    std::unique_ptr<X11Connection> m_connection = X11Connection::open().value();
    X11Clock m_clock;
    X11Workspace m_workspace { *m_connection, m_clock };
    OtherProgram m_programs;
    std::unique_ptr<SyntheticKeyboard> m_keyboard = SyntheticKeyboard::open().value();
    int m_opened = 0;
};

INSTANTIATE_TEST_SUITE_P(X11, WorkspaceContract, deskOf<X11Desk>("x11"));

TEST(WorkspaceOnX11, A_window_is_prepared_with_the_time_of_the_users_key)
{
    X11Desk desk;
    auto const own = desk.openOwn();
    auto const userTime = [&] { return desk.connection().number(static_cast<xcb_window_t>(own), "_NET_WM_USER_TIME"); };
    desk.workspace().prepareToShow(own);
    EXPECT_EQ(userTime(), std::nullopt);
    desk.clock().note(4711);
    desk.workspace().prepareToShow(own);
    EXPECT_EQ(userTime(), 4711U);
}

TEST(X11Connection, What_arrives_while_the_time_is_asked_for_is_handed_out_afterwards)
{
    X11Desk desk;
    auto const own = desk.open(QStringLiteral("Editor"));
    desk.connection().drain();
    std::vector<std::uint8_t> types;
    auto const observing = desk.connection().observeEvents([&](auto const& e) { types.push_back(e.response_type); });
    desk.programs().close(static_cast<xcb_window_t>(own));
    EXPECT_NE(desk.connection().presentTime(), 0U);
    EXPECT_TRUE(types.empty());
    EXPECT_TRUE(desk.comesTrue([&] { return !types.empty(); })) << "the front has gone";
    EXPECT_EQ(types.front(), XCB_PROPERTY_NOTIFY);
}

TEST(WithoutAWindowManager, The_focus_goes_to_our_window_and_back_to_the_one_that_had_it)
{
    X11Desk desk;
    auto& workspace = desk.workspace();
    auto const first = static_cast<xcb_window_t>(desk.open(QStringLiteral("Editor")));
    desk.open(QStringLiteral("Editor"));
    auto const own = desk.openOwn();
    desk.programs().focus(first);
    auto const previous = workspace.frontmostApplication();
    EXPECT_EQ(previous, (RunningApplication { QStringLiteral("Editor"), first }));
    workspace.prepareToShow(own);
    workspace.activateIgnoringOtherApps(own);
    EXPECT_EQ(desk.programs().focusedWindow(), own);
    EXPECT_EQ(workspace.frontmostApplication()->bundleIdentifier, workspace.mainBundleIdentifier());
    workspace.activate(*previous);
    EXPECT_EQ(desk.programs().focusedWindow(), first);
}

TEST(WithoutAWindowManager, A_focus_that_follows_the_pointer_is_given_back_as_such)
{
    X11Desk desk;
    auto& workspace = desk.workspace();
    auto const pointedAt = desk.open(QStringLiteral("Editor"));
    auto const own = desk.openOwn();
    desk.point(pointedAt);
    desk.programs().focus(XCB_INPUT_FOCUS_POINTER_ROOT);
    auto const previous = workspace.frontmostApplication();
    ASSERT_TRUE(previous.has_value());
    EXPECT_EQ(previous->bundleIdentifier, QStringLiteral("Editor"));
    workspace.activateIgnoringOtherApps(own);
    EXPECT_EQ(desk.programs().focusedWindow(), own);
    workspace.activate(*previous);
    EXPECT_EQ(desk.programs().focusedWindow(), xcb_window_t { XCB_INPUT_FOCUS_POINTER_ROOT });
}

}
}
