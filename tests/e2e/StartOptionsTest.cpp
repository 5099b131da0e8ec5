#include "e2e/Program.h"

namespace Quillory {
namespace {

class StartOptionsTest : public Test {
protected:
    QString madeFolder(QString const& name) const
    {
        QDir().mkpath(program.path(name));
        return program.path(name);
    }

    QString connectedFolder() const
    {
        auto const bookmark = program.storedSettings()[u"libraryBookmark"_s].toObject()[u"data"_s].toString();
        return QJsonDocument::fromJson(QByteArray::fromBase64(bookmark.toLatin1())).object()[u"path"_s].toString();
    }

    Program program;
};

TEST_F(StartOptionsTest, A_shortcut_is_stored_only_where_none_ever_was)
{
    auto const key = u"KeyboardShortcuts_toggleQuillory"_s;
    auto const ours = u"{\"carbonKeyCode\":40,\"carbonModifiers\":6144}"_s;
    auto const theirs = u"{\"carbonKeyCode\":49,\"carbonModifiers\":512}"_s;
    struct Case {
        QJsonObject before;
        QJsonValue after;
        std::string sentence;
    };
    for (auto const& [before, after, sentence] : std::initializer_list<Case> {
             { {}, ours, "Press Ctrl+Alt+K to call" },
             { { { key, theirs } }, theirs, "Press Shift+Space to call" },
             { { { key, false } }, false, "No shortcut calls" },
         }) {
        SCOPED_TRACE(sentence);
        program.store(before);
        EXPECT_EQ(program.startAgain({ u"--initial-shortcuts"_s }), 0);
        EXPECT_EQ(program.storedSettings()[key], after);
        EXPECT_THAT(program.said(), AllOf(HasSubstr(sentence), HasSubstr("Hold Ctrl+Alt+J to peek")));
    }
}

TEST_F(StartOptionsTest, A_named_folder_replaces_the_connected_one_and_a_spare_one_does_not)
{
    auto const mine = madeFolder(u"mine"_s);
    auto const spare = madeFolder(u"spare"_s);
    program.store({ { u"textSize"_s, 20 } });
    for (auto const& [option, folder, connected] : std::initializer_list<std::array<QString, 3>> {
             { u"--connect-if-none"_s, spare, spare },
             { u"--connect"_s, mine, mine },
             { u"--connect-if-none"_s, spare, mine },
         }) {
        EXPECT_EQ(program.startAgain({ option, folder, u"--gesture"_s, u"shift"_s }), 0) << program.said();
        EXPECT_EQ(connectedFolder(), connected);
    }
    EXPECT_EQ(program.storedSettings()[u"textSize"_s], 20);
    EXPECT_EQ(program.storedSettings()[u"modifierGesture"_s], u"shift"_s);
}

TEST_F(StartOptionsTest, What_cant_be_followed_is_said_and_stores_nothing)
{
    auto const file = madeFolder(u"folder"_s) + u"/file.md"_s;
    ASSERT_TRUE(QFile(file).open(QIODevice::WriteOnly));
    auto const run = QStringLiteral(QUILLORY_SOURCE "/run");
    struct Case {
        QString program;
        QStringList arguments;
        int exitCode;
        QString named;
    };
    for (auto const& [started, arguments, exitCode, named] : std::initializer_list<Case> {
             { Program::path(), { u"--gesture"_s, u"Shift"_s }, 2, u"Shift"_s },
             { Program::path(), { u"--colour"_s }, 2, u"colour"_s },
             { Program::path(), { u"sheets"_s }, 2, u"--connect \"sheets\""_s },
             { Program::path(), { u"--connect"_s, file, u"--initial-shortcuts"_s }, 1, file },
             { Program::path(), { u"--connect"_s, file + u".gone"_s, u"--gesture"_s, u"shift"_s }, 1,
                 file + u".gone"_s },
             { run, { file }, 1, file },
             { run, { file + u".gone"_s }, 1, file + u".gone"_s },
         }) {
        EXPECT_EQ(program.startAgain(arguments, started), exitCode) << named.toStdString();
        EXPECT_THAT(program.said(), HasSubstr(named.toStdString()));
    }
    EXPECT_EQ(program.storedSettings(), QJsonObject());
}

}
}
