#include "e2e/AssistiveClient.h"
#include "e2e/ReaderOnADesktop.h"

#include <QElapsedTimer>
#include <QJsonArray>

namespace Quillory {
namespace {

// The settings as another program sees and uses them: by real keys, real clicks and the accessibility bus.
class SettingsTest : public ReaderOnADesktop {
protected:
    SettingsTest()
    {
        qputenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
        program.save(u"a.md"_s, sheetOf("Alpha"));
    }

    void openSettings()
    {
        ASSERT_EQ(program.startAgain({ u"--settings"_s }), 0);
        ASSERT_TRUE(Desktop::eventually([&] { return isInFront(); }));
    }
    bool isInFront() const
    {
        auto const window = client.find(u"Quillory Settings"_s);
        return window && client.isActive(*window);
    }

    bool shows(QString const& text) const
    {
        auto const object = client.find(text);
        return object && client.isShowing(*object);
    }
    bool comesToShow(QString const& text)
    {
        return Desktop::eventually([&] { return shows(text); });
    }
    QString recorded(QString const& name) const
    {
        return client.text(client.find(u"Record shortcut: "_s + name).value());
    }
    void record(QString const& name, QString const& keys)
    {
        auto const field = client.find(u"Record shortcut: "_s + name).value();
        desktop.click(client.middle(field));
        EXPECT_TRUE(Desktop::eventually([&] { return client.description(field) == u"Press shortcut…"_s; }));
        desktop.play(keys);
    }

    AssistiveClient client;
};

TEST_F(SettingsTest, A_recorded_shortcut_is_on_disk_within_a_second_and_calls_the_reader_after_a_restart)
{
    start();
    ASSERT_NO_FATAL_FAILURE(openSettings());
    auto const front = desktop.frontWindow();
    EXPECT_EQ(recorded(u"Toggle Quillory"_s), u"Ctrl+Alt+K"_s);
    record(u"Hold to peek"_s, u"ctrl+alt↓ K↓"_s); // the toggle's own, which must not fire
    EXPECT_TRUE(
        comesToShow(u"Choose different shortcuts for toggle and peek. Hold to peek is inactive while they match."_s));
    desktop.play(u"K↑ ctrl+alt↑"_s);
    EXPECT_EQ(desktop.frontWindow(), front);

    record(u"Hold to peek"_s, u"K Escape"_s); // refused, and left alone
    EXPECT_EQ(recorded(u"Hold to peek"_s), u"Ctrl+Alt+K"_s);
    record(u"Hold to peek"_s, u"ctrl+alt+J"_s);
    QElapsedTimer time;
    time.start();
    auto const key = u"KeyboardShortcuts_peekQuillory"_s;
    Shortcut const peek { 38, toggle.carbonModifiers };
    EXPECT_TRUE(Desktop::eventually([&] { return program.storedSettings()[key] == peek.encoded(); }));
    EXPECT_LT(time.elapsed(), 1000);
    desktop.play(u"Escape"_s);
    EXPECT_TRUE(isAwayAndFrontIs(terminal.window()));
    ASSERT_TRUE(program.terminate());

    storePeek(peek);
    start();
    desktop.play(u"ctrl+alt↓ J↓"_s);
    EXPECT_TRUE(isUp());
    desktop.play(u"J↑ ctrl+alt↑"_s);
    EXPECT_TRUE(isAwayAndFrontIs(terminal.window()));
}

TEST_F(SettingsTest, Another_program_reads_what_holds_and_uses_it)
{
    program.setSetting(u"textSize"_s, 1e9);
    program.setSetting(u"modifierGesture"_s, u"nonsense"_s);
    program.setSetting(u"pinnedSheets"_s, QJsonObject { { program.folder(), QJsonArray { u"a.md"_s, u"gone.md"_s } } });
    start();
    ASSERT_NO_FATAL_FAILURE(openSettings());
    for (auto const& text :
        { u"Connected folder: sheets"_s, u"Text size: 32"_s, u"Unpin Alpha"_s, u"Unpin gone.md (unavailable)"_s,
            u"Choose a gesture above to see the steps and set up access. Off keeps modifier gestures disabled."_s })
        EXPECT_TRUE(comesToShow(text)) << text.toStdString();
    for (auto const& text : { u"No folder connected"_s, u"Keyboard monitoring is allowed"_s, u"How to use it"_s })
        EXPECT_FALSE(shows(text)) << text.toStdString();
    client.press(client.find(u"Unpin gone.md (unavailable)"_s).value());
    EXPECT_TRUE(Desktop::eventually([&] { return !shows(u"Unpin gone.md (unavailable)"_s); }));
    client.press(client.find(u"Learning Mode"_s).value());
    EXPECT_TRUE(Desktop::eventually([&] { return program.storedSettings()[u"learningModeEnabled"_s] == true; }));
    ASSERT_TRUE(comesUp());
    EXPECT_TRUE(comesToShow(
        u"Learning Mode is on. Copying is disabled—type commands in your terminal or editor to practise."_s));
    // The same window once more, from the reader.
    client.press(client.find(u"Settings"_s).value());
    EXPECT_TRUE(Desktop::eventually([&] { return isInFront(); }));
}

}
}
