#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

using testing::HasSubstr;

class StartOptionsTest : public testing::Test {
protected:
    StartOptionsTest() { QDir(path()).mkpath(u"config/quillory"_s); }

    QString path(QString const& name = {}) const
    {
        return QFileInfo(m_folder.path()).canonicalFilePath() + u'/' + name;
    }

    QString madeFolder(QString const& name) const
    {
        QDir().mkpath(path(name));
        return path(name);
    }

    void store(QJsonObject const& settings) const
    {
        QFile file(settingsFile());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QJsonDocument(settings).toJson());
    }

    QJsonObject stored() const
    {
        QFile file(settingsFile());
        return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
    }

    QString connectedFolder() const
    {
        auto const bookmark = stored()[u"libraryBookmark"_s].toObject()[u"data"_s].toString().toLatin1();
        return QJsonDocument::fromJson(QByteArray::fromBase64(bookmark)).object()[u"path"_s].toString();
    }

    // Starts a program and returns when it has ended or has said how it is called.
    void start(QProcess& process, QStringList const& arguments,
        QString const& program = QStringLiteral(QUILLORY_PROGRAMS "/quillory"))
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"XDG_CONFIG_HOME"_s, path(u"config"_s));
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(program, arguments);
        said.clear();
        while (!said.contains("peek") && process.waitForReadyRead())
            said += process.readAll().toStdString();
        if (process.state() != QProcess::NotRunning && !said.contains("peek"))
            process.waitForFinished();
    }

    // Its exit code once it was asked to end.
    int run(QStringList const& arguments)
    {
        QProcess process;
        start(process, arguments);
        return exitCodeOf(process);
    }

    static int exitCodeOf(QProcess& process)
    {
        process.terminate();
        EXPECT_TRUE(process.state() == QProcess::NotRunning || process.waitForFinished());
        return process.exitCode();
    }

    std::string said;

private:
    QString settingsFile() const { return path(u"config/quillory/defaults.json"_s); }

    QTemporaryDir m_folder;
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
        store(before);
        EXPECT_EQ(run({ u"--initial-shortcuts"_s }), 0) << said;
        EXPECT_EQ(stored()[key], after);
        EXPECT_THAT(said, HasSubstr(sentence));
        EXPECT_THAT(said, HasSubstr("Hold Ctrl+Alt+J to peek"));
    }
}

TEST_F(StartOptionsTest,
    A_named_folder_replaces_the_connected_one_a_spare_one_does_not_and_nothing_beside_a_running_program)
{
    auto const mine = madeFolder(u"mine"_s);
    auto const spare = madeFolder(u"spare"_s);
    store({ { u"textSize"_s, 20 } });
    for (auto const& [option, folder, connected] : std::initializer_list<std::array<QString, 3>> {
             { u"--connect-if-none"_s, spare, spare },
             { u"--connect"_s, mine, mine },
             { u"--connect-if-none"_s, spare, mine },
         }) {
        EXPECT_EQ(run({ option, folder, u"--gesture"_s, u"shift"_s }), 0) << said;
        EXPECT_EQ(connectedFolder(), connected);
    }
    QProcess running;
    start(running, { u"--initial-shortcuts"_s });
    EXPECT_EQ(run({ u"--connect"_s, spare }), 1);
    EXPECT_THAT(said, HasSubstr("already runs"));
    EXPECT_EQ(exitCodeOf(running), 0);
    EXPECT_EQ(connectedFolder(), mine);
    EXPECT_EQ(stored()[u"textSize"_s], 20);
    EXPECT_EQ(stored()[u"modifierGesture"_s], u"shift"_s);
}

TEST_F(StartOptionsTest, What_cant_be_followed_is_said_and_stores_nothing)
{
    auto const file = madeFolder(u"folder"_s) + u"/file.md"_s;
    ASSERT_TRUE(QFile(file).open(QIODevice::WriteOnly));
    struct Case {
        QStringList arguments;
        int exitCode;
        QString named;
    };
    for (auto const& [arguments, exitCode, named] : std::initializer_list<Case> {
             { { u"--gesture"_s, u"Shift"_s }, 2, u"Shift"_s },
             { { u"--colour"_s }, 2, u"colour"_s },
             { { u"sheets"_s }, 2, u"--connect \"sheets\""_s },
             { { u"--connect"_s, file, u"--initial-shortcuts"_s }, 1, file },
             { { u"--connect"_s, file + u".gone"_s, u"--gesture"_s, u"shift"_s }, 1, file + u".gone"_s },
         }) {
        EXPECT_EQ(run(arguments), exitCode);
        EXPECT_THAT(said, HasSubstr(named.toStdString()));
    }
    for (auto const& argument : { file, file + u".gone"_s }) {
        QProcess process;
        start(process, { argument }, QStringLiteral(QUILLORY_SOURCE "/run"));
        EXPECT_EQ(process.exitCode(), 1);
        EXPECT_THAT(said, HasSubstr(argument.toStdString()));
    }
    EXPECT_EQ(stored(), QJsonObject());
}

}
