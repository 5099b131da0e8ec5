#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

class PrepareTest : public testing::Test {
protected:
    PrepareTest() { QDir(m_folder.path()).mkpath(u"config/quillory"_s); }

    void store(QByteArray const& settings)
    {
        QFile file(settingsFile());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(settings);
    }

    QByteArray stored() const
    {
        QFile file(settingsFile());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QJsonValue setting(QString const& key) const { return QJsonDocument::fromJson(stored()).object()[key]; }

    QString connectedFolder() const
    {
        auto const bookmark = setting(u"libraryBookmark"_s).toObject()[u"data"_s].toString().toLatin1();
        return QJsonDocument::fromJson(QByteArray::fromBase64(bookmark)).object()[u"path"_s].toString();
    }

    int run(QString const& program, QStringList const& arguments)
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"XDG_CONFIG_HOME"_s, m_folder.filePath(u"config"_s));
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(program, arguments);
        EXPECT_TRUE(process.waitForFinished());
        said = QString::fromUtf8(process.readAllStandardOutput() + process.readAllStandardError()).toStdString();
        return process.exitCode();
    }

    int prepare(QStringList const& arguments)
    {
        return run(QStringLiteral(QUILLORY_PROGRAMS "/quillory-prepare"), arguments);
    }

    QString makeFolder(QString const& name)
    {
        auto const path = QFileInfo(m_folder.path()).canonicalFilePath() + u'/' + name;
        QDir().mkpath(path);
        return path;
    }

    std::string said;

private:
    QString settingsFile() const { return m_folder.filePath(u"config/quillory/defaults.json"_s); }

    QTemporaryDir m_folder;
};

TEST_F(PrepareTest, A_shortcut_is_stored_only_where_none_is)
{
    auto const ours = u"{\"carbonKeyCode\":40,\"carbonModifiers\":6144}"_s;
    auto const theirs = u"{\"carbonKeyCode\":49,\"carbonModifiers\":512}"_s;
    struct Case {
        QString description;
        QJsonObject before;
        QJsonValue after;
        std::string sentence;
    };
    auto const key = u"KeyboardShortcuts_toggleQuillory"_s;
    Case const cases[] {
        { u"nothing stored"_s, {}, ours, "Press Ctrl+Alt+K to call" },
        { u"another shortcut"_s, { { key, theirs } }, theirs, "Press Shift+Space to call" },
        { u"switched off"_s, { { key, false } }, false, "switched off" },
        { u"text that is no shortcut"_s, { { key, u"{"_s } }, ours, "Press Ctrl+Alt+K to call" },
    };
    for (auto const& [description, before, after, sentence] : cases) {
        SCOPED_TRACE(description.toStdString());
        store(QJsonDocument(before).toJson());
        EXPECT_EQ(prepare({ u"--shortcuts-if-none"_s }), 0);
        EXPECT_EQ(setting(key), after);
        EXPECT_THAT(said, testing::HasSubstr(sentence));
        EXPECT_THAT(said, testing::HasSubstr("Hold Ctrl+Alt+J to peek"));
    }
    EXPECT_EQ(prepare({ u"--gesture"_s, u"shift"_s }), 0);
    EXPECT_EQ(setting(u"modifierGesture"_s), u"shift"_s);
    EXPECT_NE(prepare({ u"--gesture"_s, u"Shift"_s }), 0);
    EXPECT_EQ(setting(u"modifierGesture"_s), u"shift"_s);
}

TEST_F(PrepareTest, What_has_nothing_to_change_leaves_the_file_byte_for_byte)
{
    QByteArray const settings = "{ "
                                "\"KeyboardShortcuts_toggleQuillory\":false,\n\"KeyboardShortcuts_peekQuillory\":false,"
                                "\n\"unknown\": [1, {}] }";
    store(settings);
    EXPECT_EQ(prepare({ u"--shortcuts-if-none"_s }), 0);
    EXPECT_EQ(stored(), settings);
}

TEST_F(PrepareTest, A_named_folder_replaces_the_last_one_and_a_spare_one_does_not)
{
    auto const mine = makeFolder(u"mine"_s);
    auto const spare = makeFolder(u"spare"_s);
    store("{\"textSize\": 20}");
    EXPECT_EQ(prepare({ u"--folder-if-none"_s, spare }), 0);
    EXPECT_EQ(connectedFolder(), spare);
    EXPECT_EQ(prepare({ u"--folder"_s, mine }), 0);
    EXPECT_EQ(connectedFolder(), mine);
    EXPECT_EQ(prepare({ u"--folder-if-none"_s, spare }), 0);
    EXPECT_EQ(connectedFolder(), mine);
    EXPECT_EQ(setting(u"textSize"_s).toDouble(), 20);
}

TEST_F(PrepareTest, Run_names_the_folder_that_it_cant_connect)
{
    auto const file = makeFolder(u"folder"_s) + u"/file.md"_s;
    ASSERT_TRUE(QFile(file).open(QIODevice::WriteOnly));
    for (auto const& argument : { file, file + u".gone"_s }) {
        EXPECT_NE(run(QStringLiteral(QUILLORY_SOURCE "/run"), { argument }), 0);
        EXPECT_THAT(said, testing::HasSubstr(argument.toStdString()));
        EXPECT_NE(prepare({ u"--folder"_s, argument }), 0);
        EXPECT_THAT(said, testing::HasSubstr(argument.toStdString()));
    }
    EXPECT_EQ(stored(), "") << "a start that fails stores nothing";
}

}
