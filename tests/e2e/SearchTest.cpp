#include "e2e/AssistiveClient.h"
#include "e2e/ReaderOnADesktop.h"

#include <QElapsedTimer>

namespace Quillory {
namespace {

class SearchTest : public ReaderOnADesktop {
protected:
    SearchTest() { qputenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1"); }

    void findSidebar()
    {
        ASSERT_TRUE(Desktop::eventually([&] {
            field = client.find(u"Search library"_s);
            list = client.find(u"Sheets"_s);
            return field && list;
        }));
    }
    void typeInField(QString const& keys)
    {
        desktop.click(client.middle(*field));
        // The window manager looks at a click first, and keys would come before it.
        ASSERT_TRUE(Desktop::eventually([&] { return client.hasKeyboard(*field); }));
        desktop.play(keys);
    }
    AssertionResult hears(QStringList const& rows)
    {
        QStringList names;
        bool const isHeard = Desktop::eventually([&] {
            names.clear();
            for (auto const& row : client.children(*list))
                names.append(client.name(row));
            return names == rows;
        });
        return isHeard ? AssertionSuccess() : AssertionFailure() << names.join(u'|').toStdString();
    }

    AssistiveClient client;
    std::optional<AssistiveClient::Object> field, list;
};

TEST_F(SearchTest, Typing_narrows_the_list_as_a_screen_reader_hears_and_Return_goes_on_in_the_text)
{
    for (auto const* name : { "First", "Second", "Third" })
        program.save(QString::fromLatin1(name) + u".md"_s, sheetOf(name) + (name[0] == 'F' ? "" : "\nKAJAK\n"));
    program.save(u"Third.md"_s, "kajak \xFF");
    start();
    ASSERT_TRUE(comesUp());
    findSidebar();
    EXPECT_EQ(client.description(*field), u"Filter sheets by title and content (Ctrl+K)"_s);
    EXPECT_TRUE(hears({ u"First"_s, u"Second"_s, u"Third, with an error"_s }));
    typeInField(u"K A J"_s);
    EXPECT_TRUE(hears({ u"Second"_s }));
    EXPECT_EQ(client.text(*field), u"kaj"_s);
    EXPECT_TRUE(shows(u"First"_s));
    desktop.play(u"Return"_s);
    EXPECT_TRUE(shows(u"Second"_s));
    program.save(u"Third.md"_s, sheetOf("kajak"));
    EXPECT_TRUE(hears({ u"Second"_s, u"kajak"_s }));
    desktop.play(u"Right"_s); // the text's key for the next sheet of the library
    EXPECT_TRUE(shows(u"kajak"_s));
    desktop.play(u"Escape"_s);
    EXPECT_TRUE(isAwayAndFrontIs(terminal.window()));
}

TEST_F(SearchTest, While_the_keys_of_a_peek_are_held_a_rows_menu_stays_and_letters_are_typed)
{
    storePeek({ 38, toggle.carbonModifiers });
    for (auto const* name : { "First", "Acorn" })
        program.save(QString::fromLatin1(name) + u".md"_s, sheetOf(name));
    start();
    desktop.play(u"ctrl+alt+J↓"_s);
    ASSERT_TRUE(isUp());
    findSidebar();
    ASSERT_TRUE(hears({ u"Acorn"_s, u"First"_s }));
    // Before another key goes down, with which the held one would not repeat any more.
    auto const reader = desktop.reader().value().window;
    auto const windows = desktop.windowsOfOwner(reader);
    auto const row = client.middle(client.children(*list).value(0));
    desktop.keyboard().movePointer(row.x(), row.y());
    desktop.keyboard().clickButton(3);
    auto const hasMenu = [&] { return desktop.windowsOfOwner(reader) > windows; };
    ASSERT_TRUE(Desktop::eventually(hasMenu));
    constexpr int untilKeysRepeat = 800; // ms
    QElapsedTimer time;
    time.start();
    Desktop::eventually([&] { return !hasMenu() || time.hasExpired(untilKeysRepeat); });
    EXPECT_TRUE(hasMenu());
    desktop.play(u"Up Return"_s); // its last item
    EXPECT_TRUE(hears({ u"Acorn, pinned"_s, u"First"_s }));
    typeInField(u"A C"_s);
    EXPECT_TRUE(hears({ u"Acorn, pinned"_s }));
    EXPECT_TRUE(desktop.isReaderOnScreen());
    desktop.play(u"ctrl+alt+J↑"_s);
    EXPECT_TRUE(isAwayAndFrontIs(terminal.window()));
}

}
}
