#include "e2e/AssistiveClient.h"
#include "e2e/ReaderOnADesktop.h"
#include "support/SignalRecorder.h"

#include <QDBusVariant>

using namespace Quillory;
using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

// What a screen reader gets of a sheet, which counts its text in characters and not in UTF-16 units.
class AssistiveReadingTest : public ReaderOnADesktop {
protected:
    AssistiveReadingTest() { qputenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1"); }

    void showSheet()
    {
        program.save(u"a.md"_s, "# Sheet\n\n🙂 Say **bold** and `co🙂de`.\n\n```\nls -l\n```\n");
        start();
        ASSERT_TRUE(comesUp());
        ASSERT_TRUE(Desktop::eventually([&] {
            auto const found = client.find(u"Cheat sheet content"_s);
            text = found.value_or(text);
            return found && client.children(text).size() == 1;
        }));
    }

    int offsetOf(QString const& word) const
    {
        auto const all = client.text(text);
        return static_cast<int>(all.first(all.indexOf(word)).toUcs4().size());
    }
    QVariantList ask(char const* method, QVariantList const& arguments) const
    {
        return client.ask(text, "Text", method, arguments);
    }

    AssistiveClient client;
    AssistiveClient::Object text;
};

TEST_F(AssistiveReadingTest, Offsets_are_those_of_characters_in_words_lines_runs_and_places)
{
    ASSERT_NO_FATAL_FAILURE(showSheet());
    auto const all = u"🙂 Say bold and co🙂de.\n\nls -l\n"_s;
    ASSERT_EQ(client.text(text), all);
    EXPECT_EQ(client.property(text, "Text", "CharacterCount"), all.toUcs4().size());
    auto const bold = offsetOf(u"bold"_s);
    auto const code = offsetOf(u"co"_s);
    EXPECT_EQ(client.text(text, bold, bold + 4), u"bold"_s);
    EXPECT_EQ(client.text(text, code, code + 5), u"co🙂de"_s);

    struct Case {
        uint boundary;
        int offset;
        QVariantList answer;
    };
    enum : uint { character = 0, wordStart = 1, sentenceStart = 3, lineStart = 5 };
    auto const behindLine = code + 7;
    for (auto const& [boundary, offset, answer] :
        { Case { character, code + 2, { u"\U0001F642"_s, code + 2, code + 3 } },
            Case { wordStart, bold + 2, { u"bold "_s, bold, bold + 5 } },
            Case { lineStart, bold, { all.first(all.indexOf(u'\n') + 1), 0, behindLine } },
            Case { lineStart, behindLine, { u"\n"_s, behindLine, behindLine + 1 } },
            Case { sentenceStart, behindLine + 2, { u"ls -l\n"_s, behindLine + 1, behindLine + 7 } } })
        EXPECT_EQ(ask("GetTextAtOffset", { offset, boundary }), answer) << boundary << " at " << offset;

    int start = 0;
    int end = 0;
    auto const boldLook = client.attributes(text, bold + 1, start, end);
    EXPECT_EQ(QPoint(start, end), QPoint(bold, bold + 4));
    EXPECT_EQ(boldLook[u"weight"_s], u"700"_s);
    auto const codeLook = client.attributes(text, code + 3, start, end);
    EXPECT_EQ(QPoint(start, end), QPoint(code, code + 5));
    EXPECT_NE(codeLook[u"family-name"_s], boldLook[u"family-name"_s]);
    EXPECT_TRUE(codeLook.contains(u"bg-color"_s));

    ask("AddSelection", { bold, bold + 4 });
    EXPECT_EQ(ask("GetSelection", { 0 }), (QVariantList { bold, bold + 4 }));
    EXPECT_EQ(client.property(text, "Text", "CaretOffset"), bold + 4);
    ask("SetSelection", { 0, code, code + 5 });
    EXPECT_EQ(ask("GetNSelections", {}).value(0), 1);
    EXPECT_EQ(ask("GetSelection", { 0 }), (QVariantList { code, code + 5 }));
    ask("RemoveSelection", { 0 });
    EXPECT_EQ(ask("GetNSelections", {}).value(0), 0);

    auto const frame = desktop.reader().value().frame;
    for (auto const offset : { bold, code + 2, code + 3 }) {
        auto const place = client.characterExtents(text, offset);
        EXPECT_TRUE(frame.contains(place)) << offset;
        EXPECT_EQ(ask("GetOffsetAtPoint", { place.center().x(), place.center().y(), 0U }).value(0), offset);
    }
    EXPECT_LT(client.characterExtents(text, code + 2).right(), client.characterExtents(text, code + 3).right());
}

TEST_F(AssistiveReadingTest, A_copy_is_told_by_its_button_and_announced)
{
    ASSERT_NO_FATAL_FAILURE(showSheet());
    SignalRecorder announcements;
    ASSERT_TRUE(client.hear("Announcement", &announcements, SLOT(record(QDBusMessage))));
    EXPECT_THAT(client.actions(text), ElementsAre(u"Copy co🙂de"_s, u"Copy ls -l\n"_s));
    auto const button = client.children(text).constFirst();
    EXPECT_EQ(client.name(button), u"Copy ls -l\n"_s);
    EXPECT_EQ(client.description(button), u"Copy command"_s);
    client.doAction(button, 0);
    EXPECT_TRUE(Desktop::eventually([&] { return client.description(button) == u"Copied"_s; }));
    EXPECT_TRUE(Desktop::eventually([&] { return !announcements.heard.isEmpty(); }));
    EXPECT_EQ(announcements.heard.value(0).signature(), u"siiv(so)"_s);
    EXPECT_EQ(announcements.heard.value(0).arguments().value(1), 1) << "a polite one";
    EXPECT_EQ(announcements.heard.value(0).arguments().value(3).value<QDBusVariant>().variant(), u"Copied"_s);
    EXPECT_TRUE(Desktop::eventually([&] { return client.description(button) == u"Copy command"_s; }));
}

}
