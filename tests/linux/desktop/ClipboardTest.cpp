#include "linux/qt/QtClipboard.h"
#include "support/EventLoop.h"
#include "support/Test.h"

#include <QProcess>
#include <QWindow>

namespace Quillory {
namespace {

using Pasteboard = Clipboard::Pasteboard;

// Another process reads and owns.
class QtClipboardTest : public Test {
protected:
    QtClipboardTest()
    {
        window.show();
        EXPECT_TRUE(loop.runUntil([&] { return window.isExposed(); }));
    }
    ~QtClipboardTest() override { endOwner(); }

    static QString nameOf(Pasteboard pasteboard)
    {
        return pasteboard == Pasteboard::selection ? u"selection"_s : u"general"_s;
    }
    void endOwner()
    {
        owner.closeWriteChannel();
        EXPECT_TRUE(loop.runUntil([&] { return owner.state() == QProcess::NotRunning; }));
    }
    QString seenByOthers(Pasteboard pasteboard)
    {
        QProcess reader;
        reader.start(QStringLiteral(CLIPBOARD_PEER), { u"read"_s, nameOf(pasteboard) });
        EXPECT_TRUE(loop.runUntil([&] { return reader.state() == QProcess::NotRunning; }));
        return QString::fromUtf8(reader.readAllStandardOutput());
    }
    void copyElsewhere(Pasteboard pasteboard, QString const& text)
    {
        endOwner();
        owner.start(QStringLiteral(CLIPBOARD_PEER), { u"own"_s, nameOf(pasteboard), text });
        EXPECT_TRUE(loop.runUntil([&] { return owner.canReadLine() || owner.state() == QProcess::NotRunning; }));
        EXPECT_EQ(owner.readLine(), "owns\n");
    }

    EventLoop loop;
    QtClipboard clipboard;
    QProcess owner;
    QWindow window;
};

TEST_F(QtClipboardTest, What_is_set_is_what_others_read_and_the_pasteboards_are_apart)
{
    auto const long_ = QString(2'000'000, u'x'); // more than one transfer can carry
    for (auto const& text : { u"git log --oneline"_s, u"é\n⌘ 🜁\t'\""_s, long_ }) {
        EXPECT_TRUE(clipboard.setText(Pasteboard::general, text));
        EXPECT_TRUE(clipboard.setText(Pasteboard::selection, u"picked"_s));
        EXPECT_TRUE(seenByOthers(Pasteboard::general) == text);
        EXPECT_EQ(seenByOthers(Pasteboard::selection), u"picked"_s);
        EXPECT_TRUE(clipboard.text(Pasteboard::general) == text);
    }
}

TEST_F(QtClipboardTest, What_is_offered_is_made_when_others_ask_for_it)
{
    for (auto const pasteboard : { Pasteboard::general, Pasteboard::selection }) {
        int made = 0;
        EXPECT_TRUE(clipboard.offerText(pasteboard, [&] { return ++made, u"é, made late"_s; }));
        QCoreApplication::processEvents();
        EXPECT_EQ(made, 0);
        EXPECT_EQ(seenByOthers(pasteboard), u"é, made late"_s);
        EXPECT_GT(made, 0);
        EXPECT_TRUE(clipboard.setText(pasteboard, u"after"_s)) << "what it holds ends with this case";
    }
}

TEST_F(QtClipboardTest, What_others_copy_is_read_and_taken_over_again)
{
    for (auto const pasteboard : { Pasteboard::general, Pasteboard::selection }) {
        EXPECT_TRUE(clipboard.setText(pasteboard, u"ours"_s));
        // The second time nobody tells us, so that our latest event is older than their copy.
        copyElsewhere(pasteboard, u"theirs first"_s);
        for (int repeat = 0; repeat < 3; ++repeat) {
            copyElsewhere(pasteboard, u"theirs"_s);
            // The news of another owner may still be under way.
            EXPECT_TRUE(loop.runUntil([&] { return clipboard.text(pasteboard) == u"theirs"_s; }));
            EXPECT_TRUE(clipboard.setText(pasteboard, u"ours again"_s));
            EXPECT_EQ(seenByOthers(pasteboard), u"ours again"_s);
        }
    }
}

}
}
