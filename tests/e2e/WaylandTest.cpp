#include "e2e/Program.h"
#include "e2e/ReaderOnADesktop.h"
#include "e2e/Sway.h"
#include "support/Dice.h"

#include <QElapsedTimer>

namespace Quillory {
namespace {

// The program on a Wayland session, called by keys that the compositor binds, over a terminal that is no X program.
class WaylandTest : public Test {
protected:
    void SetUp() override
    {
        sway.folder.write("sheets/a.md", sheetOf("Sheet"));
        sway.folder.write("sheets/b.md", sheetOf("Second"));
        auto const bookmark = QJsonDocument(QJsonObject { { u"path"_s, sway.folder.path("sheets") } }).toJson();
        QJsonObject const settings { { u"KeyboardShortcuts_toggleQuillory"_s, toggle.encoded() },
            { u"KeyboardShortcuts_peekQuillory"_s, Shortcut { 38, toggle.carbonModifiers }.encoded() },
            { u"libraryBookmark"_s, QJsonObject { { u"data"_s, QString::fromLatin1(bookmark.toBase64()) } } } };
        sway.folder.write(".config/quillory/defaults.json", QJsonDocument(settings).toJson());
        ASSERT_NO_FATAL_FAILURE(sway.start(whatBindsTheKeys()));
        call(u"--background"_s);
    }

    QByteArray whatBindsTheKeys() const
    {
        QProcess program;
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"XDG_CONFIG_HOME"_s, sway.folder.path(".config"));
        program.setProcessEnvironment(environment);
        program.start(Program::path(), { u"--keys"_s, u"sway"_s });
        program.waitForFinished();
        return program.readAllStandardOutput();
    }

    void call(QString const& options) const { sway.execute(Program::path() + u' ' + options); }

    std::optional<Sway::Window> reader() const
    {
        for (auto const& window : sway.windows()) {
            if (window.application == u"quillory" && window.title != u"Quillory Settings")
                return window;
        }
        return std::nullopt;
    }

    // With the keyboard.
    AssertionResult isUp(QString const& title = {}) const
    {
        std::optional<Sway::Window> seen;
        bool const isIt = Desktop::eventually([&] {
            seen = reader();
            return seen && seen->isFocused && seen->title.startsWith(title);
        });
        if (isIt && seen->isFloating)
            return AssertionSuccess();
        return AssertionFailure() << (!seen ? "the reader is away" : isIt ? "it is tiled" : "it has no keyboard");
    }
    // And the keyboard is back with the terminal.
    bool isAway() const
    {
        return Desktop::eventually([&] { return !reader() && sway.focused() == Sway::terminal; });
    }

    // The text has the keyboard in a later turn than the window.
    bool turnsTo(QString const& title, QString const& key)
    {
        return Desktop::eventually([&] {
            desktop.play(key);
            auto const seen = reader();
            return seen && seen->title.startsWith(title);
        });
    }

    // Each verb is a process of its own. They come in order where nobody presses keys quicker than people do.
    void waitAsUsersDo()
    {
        constexpr int quickest = 350; // ms
        QElapsedTimer pause;
        pause.start();
        Desktop::eventually([&] { return pause.hasExpired(quickest); });
    }

    // What was typed arrives there.
    bool typesInto(QByteArray const& line)
    {
        desktop.play(u"A Return"_s);
        return Desktop::eventually([&] { return sway.typedLines().endsWith(line + "a\n"); });
    }

    EventLoop loop;
    Desktop desktop;
    Sway sway;
};

TEST_F(WaylandTest, However_it_goes_the_keyboard_is_back_with_the_native_window)
{
    auto const key = u"ctrl+alt+K"_s;
    auto const close = [&] {
        auto const frame = reader().value().frame;
        sway.click(frame.topRight() + QPoint(-20, 20));
    };
    std::tuple<char const*, std::function<void()>, std::function<void()>> const cases[] {
        { "the key", [&] { desktop.play(key); }, [&] { desktop.play(key); } },
        { "Escape", [&] { call(u"--open"_s); }, [&] { desktop.play(u"Escape"_s); } },
        { "the close button", [&] { call(u"--toggle"_s); }, close },
        { "a verb", [&] { call(u"--show Second"_s); }, [&] { call(u"--toggle"_s); } },
    };
    for (auto const& [story, come, go] : cases) {
        SCOPED_TRACE(story);
        come();
        ASSERT_TRUE(isUp());
        go();
        EXPECT_TRUE(isAway());
        EXPECT_TRUE(typesInto(""));
    }
}

TEST_F(WaylandTest, What_was_copied_is_pasted_natively)
{
    desktop.play(u"ctrl+alt+K"_s);
    ASSERT_TRUE(isUp());
    ASSERT_TRUE(turnsTo(u"Second"_s, u"Right"_s));
    desktop.play(u"ctrl+A ctrl+C"_s);
    ASSERT_TRUE(turnsTo(u"Sheet"_s, u"Left"_s)); // a compositor takes no copies of a program that has lost the keyboard
    desktop.play(u"Escape"_s);
    ASSERT_TRUE(isAway());
    desktop.play(u"ctrl+shift+V"_s);
    EXPECT_TRUE(typesInto("free -m\n")) << sway.typedLines().toStdString();
}

TEST_F(WaylandTest, A_peek_ends_with_its_keys_its_keyboard_or_Escape)
{
    std::pair<char const*, std::function<void()>> const cases[] {
        { "key first", [&] { desktop.play(u"J↑"_s); } },
        { "modifiers first, which the compositor does not tell", [&] { desktop.play(u"ctrl+alt↑"_s); } },
        { "after another key, for which it forgets the release",
            [&] {
                EXPECT_TRUE(turnsTo(u"Second"_s, u"Right"_s));
                desktop.play(u"J↑"_s);
                EXPECT_TRUE(turnsTo(u"Sheet"_s, u"Left"_s)) << "the modifiers are still held";
                desktop.play(u"alt↑"_s);
            } },
        { "a click into the native window", [&] { sway.tell(u"[app_id=foot] focus"_s); } },
        { "Escape",
            [&] {
                EXPECT_TRUE(turnsTo(u"Second"_s, u"Right"_s)); // by when the peek knows what holds it
                desktop.play(u"Escape"_s);
            } },
    };
    call(u"--peek"_s); // by a button: no keys hold it
    ASSERT_TRUE(isUp());
    EXPECT_TRUE(turnsTo(u"Second"_s, u"Right"_s) && turnsTo(u"Sheet"_s, u"Left"_s));
    call(u"--peek-end"_s);
    EXPECT_TRUE(isAway());
    for (auto const& [story, end] : cases) {
        SCOPED_TRACE(story);
        waitAsUsersDo();
        desktop.play(u"ctrl+alt↓ J↓"_s);
        ASSERT_TRUE(isUp());
        end();
        EXPECT_TRUE(isAway());
        desktop.play(u"ctrl+alt+J↑"_s);
        EXPECT_TRUE(typesInto(""));
    }
}

// QUILLORY_PEEKS tells how many of them, for a longer look.
TEST_F(WaylandTest, Peeks_at_random_all_end_and_give_the_keyboard_back)
{
    auto const asked = qEnvironmentVariableIntValue("QUILLORY_PEEKS");
    Dice dice(17);
    QStringList life;
    for (int peek = 0; peek < (asked > 0 ? asked : 12); ++peek) {
        life.clear();
        auto const play = [&](QString const& keys) {
            life.append(keys);
            desktop.play(keys);
        };
        waitAsUsersDo();
        play(u"ctrl+alt↓ J↓"_s);
        if (dice.oneIn(4)) { // a quick tap, whose verbs may come late and in the wrong order
            play(dice.oneIn(2) ? u"ctrl+alt+J↑"_s : u"alt↑ J↑ ctrl↑"_s);
        } else {
            ASSERT_TRUE(isUp()) << peek;
            bool const isRead = dice.oneIn(2);
            ASSERT_TRUE(!isRead || (turnsTo(u"Second"_s, u"Right"_s) && turnsTo(u"Sheet"_s, u"Left"_s))) << peek;
            if (dice.oneIn(3))
                sway.tell(u"[app_id=foot] focus"_s);
            play(
                dice.anyOf(QStringList { u"J↑ ctrl+alt↑"_s, u"ctrl↑ J↑ alt↑"_s, u"ctrl+alt+J↑"_s, u"alt↑ ctrl+J↑"_s }));
        }
        ASSERT_TRUE(isAway()) << peek << ": " << life.join(u", ").toStdString();
        ASSERT_TRUE(typesInto("")) << peek;
    }
}

TEST_F(WaylandTest, It_comes_to_the_display_and_the_workspace_that_the_user_is_on_and_its_settings_over_it)
{
    ASSERT_TRUE(sway.tell(u"focus_follows_mouse no"_s) && sway.tell(u"create_output"_s));
    // The first window goes to the workspace that the program was started on.
    for (int const output : { 1, 2, 1 }) {
        ASSERT_TRUE(sway.tell(u"focus output X11-%1"_s.arg(output)));
        call(u"--open"_s);
        ASSERT_TRUE(isUp());
        EXPECT_EQ(reader()->frame.x() > 1024, output == 2);
        EXPECT_TRUE(Desktop::eventually([&] {
            desktop.play(u"Escape"_s);
            return !reader();
        })) << "it has the keyboard also where there is no other window";
    }
    sway.tell(u"workspace other"_s);
    call(u"--settings"_s);
    EXPECT_TRUE(Desktop::eventually([&] {
        return std::ranges::any_of(sway.windows(), [](auto const& window) {
            return window.title == u"Quillory Settings" && window.isFocused && window.isFloating;
        });
    }));
}

}
}
