#include "e2e/AssistiveClient.h"
#include "e2e/ReaderOnADesktop.h"

namespace Quillory {
namespace {

class SearchTest : public ReaderOnADesktop {
protected:
    SearchTest() { qputenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1"); }
};

TEST_F(SearchTest, Typing_narrows_the_list_as_a_screen_reader_hears_and_Return_goes_on_in_the_text)
{
    for (auto const* name : { "First", "Second", "Third" })
        program.save(QString::fromLatin1(name) + u".md"_s, sheetOf(name) + (name[0] == 'F' ? "" : "\nKAJAK\n"));
    program.save(u"Third.md"_s, "kajak \xFF");
    start();
    ASSERT_TRUE(comesUp());
    AssistiveClient const client;
    std::optional<AssistiveClient::Object> field, list;
    ASSERT_TRUE(Desktop::eventually([&] {
        field = client.find(u"Search library"_s);
        list = client.find(u"Sheets"_s);
        return field && list;
    }));
    EXPECT_EQ(client.description(*field), u"Filter sheets by title and content (⌘K)"_s);
    auto const hears = [&](QStringList const& rows) {
        QStringList names;
        bool const isHeard = Desktop::eventually([&] {
            names.clear();
            for (auto const& row : client.children(*list))
                names.append(client.name(row));
            return names == rows;
        });
        return isHeard ? AssertionSuccess() : AssertionFailure() << names.join(u'|').toStdString();
    };
    EXPECT_TRUE(hears({ u"First"_s, u"Second"_s, u"Third, with an error"_s }));
    desktop.click(client.middle(*field));
    // The window manager looks at a click first, and keys would come before it.
    ASSERT_TRUE(Desktop::eventually([&] { return client.hasKeyboard(*field); }));
    desktop.play(u"K A J"_s);
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

}
}
