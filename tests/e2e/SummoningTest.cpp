#include "e2e/ReaderOnADesktop.h"
#include "linux/x11/X11Clock.h"

#include <QElapsedTimer>

namespace Quillory {
namespace {

Shortcut const peek { 38, toggle.carbonModifiers };
auto const holdPeek = u"ctrl+alt+J↓"_s, releasePeek = u"ctrl+alt+J↑"_s;
constexpr std::uint32_t allWorkspaces = 0xFFFFFFFF;
constexpr int longerThanAHold = 600; // ms

class SummoningTest : public ReaderOnADesktop {
protected:
    SummoningTest()
    {
        storePeek(peek);
        program.save(u"a.md"_s, sheetOf("Sheet"));
    }

    // Drags with the mouse until the panel's frame is `frame`, but for the first steps of the way, which the window
    // manager needs to take the pointer over.
    bool drag(QPoint from, QPoint way, QRect const& frame)
    {
        constexpr int firstSteps = 13;
        auto const before = desktop.reader().value().frame;
        auto& mouse = desktop.keyboard();
        mouse.pressButton(from.x(), from.y());
        int step = firstSteps;
        bool const isTaken = Desktop::eventually([&] {
            step = step == firstSteps ? firstSteps - 1 : firstSteps;
            mouse.movePointer(from.x() + (way.x() > 0 ? step : -step), from.y());
            return desktop.reader() && desktop.reader()->frame != before;
        });
        mouse.movePointer(from.x() + way.x(), from.y() + way.y());
        auto const isThere = [&] {
            auto const reader = desktop.reader();
            auto const isNear = [](int a, int b) { return std::abs(a - b) <= firstSteps; };
            return reader && isNear(reader->frame.left(), frame.left()) && isNear(reader->frame.right(), frame.right())
                && reader->frame.top() == frame.top() && reader->frame.bottom() == frame.bottom();
        };
        bool const isMoved = Desktop::eventually(isThere);
        mouse.releaseButton();
        return isTaken && isMoved && Desktop::eventually([&] { return desktop.isPointerFree(); });
    }

    bool isPeekWindow(xcb_window_t window)
    {
        return Desktop::eventually([&] {
            return desktop.hasState(window, "_NET_WM_STATE_ABOVE") && desktop.workspaceOf(window) == allWorkspaces;
        });
    }
    bool isOrdinaryWindow(xcb_window_t window)
    {
        return Desktop::eventually([&] {
            return !desktop.hasState(window, "_NET_WM_STATE_ABOVE") && desktop.workspaceOf(window) != allWorkspaces;
        });
    }
};

TEST_F(SummoningTest, A_peek_lasts_as_long_as_its_keys_are_held_and_can_be_read_by_others)
{
    program.save(u"b.md"_s, sheetOf("Second"));
    start();
    struct Case {
        char const* story;
        bool isOverPanel;
        std::function<void()> letGo;
    };
    Case const cases[] {
        { "key first", false, [&] { desktop.play(u"J↑"_s); } },
        { "modifiers first", false,
            [&] {
                desktop.play(u"ctrl+alt↑"_s);
                EXPECT_TRUE(isAwayAndFrontIs(terminal.window()));
                desktop.play(u"A"_s); // the key of the peek is still down
            } },
        { "while the program does not run", true,
            [&] {
                program.freeze();
                desktop.play(releasePeek);
                EXPECT_TRUE(desktop.isReaderOnScreen());
                program.thaw();
            } },
    };
    for (auto const& [story, isOverPanel, letGo] : cases) {
        SCOPED_TRACE(story);
        ASSERT_TRUE(!isOverPanel || comesUp());
        desktop.play(holdPeek);
        ASSERT_TRUE(shows(u"Sheet"_s));
        auto const window = desktop.reader().value().window;
        EXPECT_TRUE(isPeekWindow(window));
        EXPECT_TRUE(desktop.hasState(window, "_NET_WM_STATE_SKIP_TASKBAR"));
        EXPECT_TRUE(desktop.lists(window, "_NET_WM_WINDOW_TYPE", "_NET_WM_WINDOW_TYPE_UTILITY")) << "tilers float it";
        EXPECT_EQ(desktop.topmostWindow(), window);
        for (auto const& [key, title] : { std::pair { u"Right"_s, u"Second"_s }, { u"Left"_s, u"Sheet"_s } }) {
            // The text gets the keyboard in a later turn; beyond the last sheet is none.
            EXPECT_TRUE(Desktop::eventually([&] {
                desktop.play(key);
                return desktop.reader() && desktop.reader()->title.startsWith(title);
            }));
        }
        letGo();
        EXPECT_TRUE(isAwayAndFrontIs(terminal.window()));
        desktop.play(releasePeek);
    }
    desktop.play(u"Return"_s);
    EXPECT_TRUE(Desktop::eventually([&] { return terminal.typedLines() == "a\n"; }));
    ASSERT_TRUE(comesUp());
    EXPECT_TRUE(isOrdinaryWindow(desktop.reader().value().window));
}

TEST_F(SummoningTest, A_double_tap_and_hold_peeks_and_typing_in_between_does_not)
{
    for (auto const& [gesture, key] : { std::pair { u"shift"_s, u"shift"_s }, { u"option"_s, u"rightAlt"_s } }) {
        SCOPED_TRACE(gesture.toStdString());
        program.setSetting(u"modifierGesture"_s, gesture);
        start();
        // A program that answers is one that has done all that belongs to its start, and not only taken its keys.
        ASSERT_TRUE(comesUp());
        ASSERT_TRUE(goesAwayTo(terminal.window()));
        desktop.play(key + u' ' + key + u'↓');
        ASSERT_TRUE(isUp());
        EXPECT_TRUE(isPeekWindow(desktop.reader().value().window));
        desktop.play(key + u'↑');
        EXPECT_TRUE(isAwayAndFrontIs(terminal.window()));

        desktop.play(key + u" A "_s + key + u'↓');
        QElapsedTimer time;
        time.start();
        Desktop::eventually([&] { return desktop.isReaderOnScreen() || time.hasExpired(longerThanAHold); });
        EXPECT_FALSE(desktop.isReaderOnScreen());
        desktop.play(key + u'↑');
        ASSERT_TRUE(program.terminate());
    }
}

TEST_F(SummoningTest, A_peek_shows_over_a_full_screen_window_and_on_every_workspace)
{
    start();
    desktop.addState(terminal.window(), "_NET_WM_STATE_FULLSCREEN");
    ASSERT_TRUE(Desktop::eventually([&] { return desktop.hasState(terminal.window(), "_NET_WM_STATE_FULLSCREEN"); }));
    desktop.play(holdPeek);
    ASSERT_TRUE(isUp());
    auto const window = desktop.reader().value().window;
    EXPECT_TRUE(Desktop::eventually([&] { return desktop.topmostWindow() == window; }));
    desktop.play(releasePeek);
    EXPECT_TRUE(isAwayAndFrontIs(terminal.window()));

    // A resident panel stays behind on its workspace, and a peek fetches it.
    ASSERT_TRUE(comesUp());
    desktop.switchToWorkspace(1);
    ASSERT_TRUE(Desktop::eventually([&] { return !desktop.isReaderOnScreen(); }));
    desktop.play(holdPeek);
    ASSERT_TRUE(isUp());
    EXPECT_EQ(desktop.reader().value().window, window);
    desktop.play(releasePeek);
    EXPECT_TRUE(Desktop::eventually([&] { return !desktop.isReaderOnScreen(); }));
}

TEST_F(SummoningTest, The_frame_is_stored_when_the_user_moves_it_and_not_by_showing)
{
    auto const key = u"persistentPanelFrame"_s;
    start();
    ASSERT_TRUE(comesUp());
    auto const first = desktop.reader().value().frame;
    EXPECT_EQ(first.size(), QSize(880, 640));
    EXPECT_TRUE(drag(first.topLeft() + QPoint(300, 15), { 30, 40 }, first.translated(30, 40))) << "by its bar";
    auto const moved = desktop.reader().value().frame;
    EXPECT_TRUE(drag(moved.bottomRight() - QPoint(2, 2), { -100, -50 }, moved.adjusted(0, 0, -100, -50)))
        << "by its corner";
    auto const resized = desktop.reader().value().frame;
    ASSERT_TRUE(goesAwayTo(terminal.window()));
    ASSERT_TRUE(comesUp());
    EXPECT_EQ(desktop.reader().value().frame, resized);
    ASSERT_TRUE(program.terminate());
    EXPECT_EQ(program.storedSettings()[key].toString(),
        u"{{%1, %2}, {%3, %4}}"_s.arg(resized.x()).arg(resized.y()).arg(resized.width()).arg(resized.height()));
}

TEST_F(SummoningTest, With_two_displays_it_comes_to_the_one_that_the_user_is_on)
{
    for (auto const& monitor : { QStringList { u"left"_s, u"640/170x900/240+0+0"_s, u"screen"_s },
             { u"right"_s, u"640/170x900/240+640+0"_s, u"none"_s } })
        EXPECT_EQ(QProcess::execute(u"xrandr"_s, QStringList { u"--setmonitor"_s } + monitor), 0);
    program.setSetting(u"persistentPanelFrame"_s, u"{{100, 200}, {500, 400}}"_s);
    start();
    for (int const left : { 0, 640 }) {
        desktop.moveTo(terminal.window(), { left + 60, 100 });
        ASSERT_TRUE(comesUp());
        EXPECT_EQ(desktop.reader().value().frame, QRect(left + 100, 200, 500, 400));
        ASSERT_TRUE(goesAwayTo(terminal.window()));
    }
}

TEST_F(SummoningTest, A_hundred_peeks_leave_nothing_behind)
{
    start();
    xcb_window_t window = XCB_NONE;
    auto const peekOften = [&](int times) {
        for (int call = 0; call < times; ++call) {
            desktop.play(holdPeek);
            ASSERT_TRUE(isUp()) << "call " << call;
            window = desktop.reader().value().window;
            desktop.play(releasePeek);
            ASSERT_TRUE(isAwayAndFrontIs(terminal.window())) << "call " << call;
        }
    };
    peekOften(10);
    auto const files = program.openFiles().size();
    auto const windows = desktop.windowsOfOwner(window);
    auto const memory = program.memory();
    peekOften(100);
    // A load that runs has some open, and a bus may be connected late.
    constexpr int passing = 5;
    EXPECT_LE(program.openFiles().size(), files + passing);
    EXPECT_EQ(desktop.windowsOfOwner(window), windows);
    // A window's pixels alone are 2 MiB, and a rendered sheet some dozen KiB.
    constexpr int breathing = isSanitized ? 256 * 1024 : 1024; // KiB
    EXPECT_LE(program.memory(), memory + breathing);

    EXPECT_TRUE(program.terminate());
    EXPECT_FALSE(desktop.isGrabbed(toggle));
    desktop.play(u"A Return"_s);
    EXPECT_TRUE(Desktop::eventually([&] { return terminal.typedLines() == "a\n"; }))
        << terminal.typedLines().toStdString();
}

TEST_F(SummoningTest, A_file_dialog_during_a_peek_keeps_the_panel_after_the_keys_are_let_go)
{
    program.setHasFolder(false);
    start();
    ASSERT_TRUE(isUp()) << "without a folder it comes up by itself";
    auto const panel = desktop.reader().value();
    desktop.play(holdPeek);
    ASSERT_TRUE(isPeekWindow(panel.window));
    ASSERT_TRUE(opensFileDialog(panel)) << "no dialog came to the front";
    EXPECT_TRUE(isOrdinaryWindow(panel.window));
    desktop.play(releasePeek);
    desktop.play(u"Escape"_s);
    EXPECT_TRUE(Desktop::eventually([&] { return desktop.frontWindow() == panel.window; })) << "it outlasts the dialog";
    EXPECT_TRUE(goesAwayTo(terminal.window()));
}

TEST_F(SummoningTest, A_second_start_calls_up_the_one_that_runs)
{
    start();
    EXPECT_EQ(program.startAgain(), 0);
    ASSERT_TRUE(isUp());
    auto const panel = desktop.reader().value().window;
    auto const userTime = desktop.userTimeOf(panel);
    std::pair<char const*, std::function<bool()>> const scenes[] {
        { "in front", [] { return true; } },
        { "covered",
            [&] {
                desktop.bringToFront(terminal.window());
                return desktop.frontWindow() == terminal.window();
            } },
        { "minimized",
            [&] {
                desktop.minimize(panel);
                return desktop.hasState(panel, "_NET_WM_STATE_HIDDEN") && desktop.frontWindow() == terminal.window();
            } },
        { "on another workspace",
            [&] {
                desktop.switchToWorkspace(1);
                return !desktop.isReaderOnScreen();
            } },
    };
    for (auto const& [scene, comesAbout] : scenes) {
        SCOPED_TRACE(scene);
        ASSERT_TRUE(Desktop::eventually(comesAbout));
        EXPECT_EQ(program.startAgain(), 0);
        EXPECT_TRUE(isUp() && Desktop::eventually([&] { return desktop.topmostWindow() == panel; }));
        EXPECT_TRUE(X11Clock::isLater(desktop.userTimeOf(panel), userTime)) << "a start that brings no time is now";
    }
    auto const toCome = desktop.userTimeOf(panel) + 1'000'000'000;
    qputenv("DESKTOP_STARTUP_ID", QByteArray("forged_TIME") + QByteArray::number(toCome));
    EXPECT_EQ(program.startAgain(), 0);
    qunsetenv("DESKTOP_STARTUP_ID");
    EXPECT_EQ(program.startAgain({ u"--toggle"_s }), 0);
    EXPECT_TRUE(Desktop::eventually([&] { return !desktop.isReaderOnScreen(); }));
    EXPECT_TRUE(comesUp()) << "a time that is still to come does not outweigh that of the key";
    EXPECT_FALSE(X11Clock::isLater(desktop.userTimeOf(panel), toCome - 1));
    desktop.minimize(panel);
    ASSERT_TRUE(Desktop::eventually([&] { return desktop.hasState(panel, "_NET_WM_STATE_HIDDEN"); }));
    EXPECT_TRUE(comesUp()) << "a minimized panel is none";
    EXPECT_EQ(program.startAgain({ u"--toggle"_s }), 0);
    EXPECT_TRUE(Desktop::eventually([&] { return !desktop.isReaderOnScreen(); }));
    EXPECT_EQ(program.startAgain({ u"--background"_s }), 0);
    EXPECT_EQ(program.startAgain({ u"--toggle"_s }), 0);
    EXPECT_TRUE(isUp()) << "a start in the background has opened nothing";
}

TEST_F(SummoningTest, Keys_of_the_desktop_show_one_sheet_and_peek)
{
    program.save(u"one.md"_s, sheetOf("One"));
    program.save(u"two.md"_s, sheetOf("Second"));
    start();
    EXPECT_EQ(program.startAgain({ u"--show"_s, u"TWO"_s }), 0) << program.said();
    EXPECT_TRUE(shows(u"Second"_s));
    EXPECT_EQ(program.startAgain({ u"--show"_s, u"three"_s }), 1);
    EXPECT_THAT(program.said(), HasSubstr("three"));
    EXPECT_TRUE(goesAwayTo(terminal.window()));
    EXPECT_EQ(program.startAgain({ u"--peek"_s }), 0);
    EXPECT_TRUE(isUp());
    EXPECT_EQ(program.startAgain({ u"--peek-end"_s }), 0);
    EXPECT_TRUE(isAwayAndFrontIs(terminal.window()));
    desktop.play(u"ctrl↓ alt↓"_s);
    EXPECT_EQ(program.startAgain({ u"--peek"_s, u"--held"_s, u"ctrl+alt"_s }), 0);
    EXPECT_TRUE(isUp());
    desktop.play(u"alt↑ ctrl↑"_s);
    EXPECT_TRUE(isAwayAndFrontIs(terminal.window())) << "without an end that is told";
}

}
}
