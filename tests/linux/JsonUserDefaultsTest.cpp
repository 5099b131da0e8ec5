#include "linux/files/JsonUserDefaults.h"
#include "support/Dice.h"
#include "support/ManualExecutor.h"
#include "support/OrdinaryUser.h"
#include "support/TemporaryFolder.h"
#include "support/Test.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>

#include <cerrno>
#include <csignal>
#include <optional>

#include <sched.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Quillory {
namespace {

using Trouble = UserDefaults::Trouble;
using Stored = UserDefaults::Value;
SystemError const notAllowed(EACCES);

class JsonUserDefaultsTest : public Test {
protected:
    JsonUserDefaults& start()
    {
        m_defaults.emplace(m_path, m_executor);
        m_observation = m_defaults->observeTrouble([this](auto const& trouble) { m_troubles.push_back(trouble); });
        return *m_defaults;
    }
    void put(QByteArray const& contents) const { m_folder.write("defaults.json", contents); }
    QJsonObject onDisk() const
    {
        return QJsonDocument::fromJson(m_folder.read(QDir(m_folder.path()).relativeFilePath(m_path).toUtf8())).object();
    }
    // Time for a write, which then runs and reports.
    void passTime()
    {
        m_executor.advance(250ms);
        m_executor.runAndFinishWork();
    }

    TemporaryFolder const m_folder;
    QString m_path = m_folder.path("defaults.json");
    QString m_a = u"a"_s;
    QString m_b = u"b"_s;
    ManualExecutor m_executor;
    std::vector<Trouble> m_troubles;
    std::optional<JsonUserDefaults> m_defaults;
    Registration m_observation;
};

TEST_F(JsonUserDefaultsTest, A_value_of_each_type_comes_back_as_it_was_set)
{
    QJsonArray const array { 1, u"two"_s, QJsonObject { { u"three"_s, true } } };
    for (auto const& value : { Stored(true), Stored(16.5), Stored(-3.0), Stored(u"é\n\"🜁"_s), Stored(QString()),
             Stored(QByteArray()), Stored(QByteArray("\0\xff\x01", 3)), Stored(array), Stored(QJsonArray()),
             Stored(QJsonObject { { u"data"_s, 1 } }), Stored(QJsonObject()) }) {
        start().setValue(m_a, value);
        auto& defaults = start();
        EXPECT_EQ(defaults.value(m_a), value);
        EXPECT_EQ(defaults.get<bool>(m_a).has_value(), std::holds_alternative<bool>(value));
        defaults.removeValue(m_a);
        EXPECT_EQ(defaults.value(m_a), std::nullopt);
    }
    m_defaults.reset();
    put(R"({"a": {"data": "eyJwYXRoIjoiLyJ9"}, "b": {"data": "not base64!"}})");
    EXPECT_EQ(start().get<QByteArray>(m_a), QByteArray(R"({"path":"/"})"));
    EXPECT_TRUE(m_defaults->get<QJsonObject>(m_b));
    m_defaults->setValue(m_b, QByteArray("\xff\xfe{", 3));
    m_defaults->flush();
    EXPECT_EQ(onDisk().value(m_b), (QJsonObject { { u"data"_s, u"//57"_s } }));
}

TEST_F(JsonUserDefaultsTest, Changes_hold_at_once_and_are_written_together_within_250_ms)
{
    m_path = m_folder.path("config/quillory/defaults.json");
    auto& defaults = start();
    defaults.setValue(m_a, 1.0);
    m_executor.advance(150ms);
    defaults.setValue(m_b, true);
    EXPECT_EQ(defaults.get<double>(m_a), 1.0);
    EXPECT_FALSE(QFile::exists(m_path));
    m_executor.advance(100ms);
    EXPECT_EQ(m_executor.queuedWork(), 1U);
    EXPECT_TRUE(m_executor.runAndFinishWork());
    EXPECT_EQ(onDisk(), (QJsonObject { { m_a, 1 }, { m_b, true } }));
    EXPECT_EQ(m_executor.pendingTimers(), 0U);
    EXPECT_THAT(m_folder.names("config/quillory"), ElementsAre("defaults.json"));
    struct stat status {};
    ASSERT_EQ(stat(QFile::encodeName(m_path).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U);
}

TEST_F(JsonUserDefaultsTest, Where_nothing_changes_nothing_is_written)
{
    QByteArray const contents = "{ \"a\": 3.0,\n\n \"b\": \"kept\" }";
    put(contents);
    auto& defaults = start();
    defaults.setValue(m_a, 3.0);
    defaults.removeValue(u"missing"_s);
    EXPECT_EQ(m_executor.pendingTimers(), 0U);
    defaults.setValue(m_a, 4.0);
    defaults.setValue(m_a, 3.0);
    passTime();
    m_defaults.reset();
    EXPECT_EQ(m_folder.read("defaults.json"), contents);
    m_folder.remove("defaults.json");
    start().flush();
    EXPECT_THAT(m_folder.names(), IsEmpty());
}

TEST_F(JsonUserDefaultsTest, Members_that_nobody_asks_for_stay_and_so_does_a_link_to_the_file)
{
    m_folder.write("real.json", R"({"a": 1, "future": [null, 9007199254740993, {"x": 1e300}], "nothing": null})");
    m_folder.link("defaults.json", "real.json");
    auto expected = onDisk();
    start().setValue(m_b, true);
    m_defaults->removeValue(m_a);
    m_defaults.reset();
    expected.remove(m_a);
    expected.insert(m_b, true);
    EXPECT_EQ(onDisk(), expected);
    EXPECT_THAT(m_folder.read("defaults.json").toStdString(), HasSubstr("9007199254740993"));
    EXPECT_TRUE(QFileInfo(m_path).isSymLink());
}

TEST_F(JsonUserDefaultsTest, A_worker_that_comes_late_does_not_undo_a_newer_write)
{
    auto& defaults = start();
    defaults.setValue(m_a, 1.0);
    m_executor.advance(250ms); // its write waits for a worker
    defaults.setValue(m_a, 2.0);
    defaults.flush();
    m_executor.runAndFinishWork();
    EXPECT_EQ(onDisk(), (QJsonObject { { m_a, 2 } }));

    defaults.setValue(m_a, 3.0);
    m_executor.advance(250ms);
    m_executor.runWork(); // written, and not yet told
    defaults.setValue(m_a, 2.0);
    m_defaults.reset();
    EXPECT_EQ(onDisk(), (QJsonObject { { m_a, 2 } }));
}

TEST_F(JsonUserDefaultsTest, A_damaged_file_is_set_aside_under_a_free_name_and_never_overwritten)
{
    std::vector<QByteArray> expected;
    for (auto const* damage : { "", "{\"a\": 1", "[1]", "\0\0\0" }) {
        put(damage);
        auto const& name = expected.emplace_back("defaults.json.damaged-" + QByteArray::number(expected.size() + 1));
        auto& defaults = start();
        EXPECT_EQ(defaults.damagedFile(), m_folder.path(name));
        EXPECT_THAT(m_troubles, Contains(Trouble { Trouble::Kind::setAside, m_folder.path(name) }));
        EXPECT_EQ(defaults.value(m_a), std::nullopt);
        EXPECT_THAT(m_folder.names(), ElementsAreArray(expected));
        EXPECT_EQ(m_folder.read(name), QByteArray(damage));
    }
    m_defaults->setValue(m_b, true);
    m_defaults.reset();
    EXPECT_EQ(onDisk(), (QJsonObject { { m_b, true } }));
}

TEST_F(JsonUserDefaultsTest, A_file_that_cannot_be_read_is_not_replaced_and_takes_the_changes_once_it_can)
{
    put(R"({"a": 1, "b": 1})");
    ASSERT_EQ(chmod(QFile::encodeName(m_path).constData(), 0), 0);
    {
        OrdinaryUser const user;
        ASSERT_TRUE(user.holds());
        auto& defaults = start();
        EXPECT_EQ(defaults.value(m_a), std::nullopt);
        EXPECT_EQ(defaults.lastWriteError(), std::nullopt);
        defaults.setValue(m_b, 2.0);
        passTime();
        EXPECT_EQ(defaults.lastWriteError(), notAllowed);
        EXPECT_THAT(
            m_troubles, ElementsAre(Trouble { Trouble::Kind::unreadable, m_path, notAllowed.localizedDescription() }));
        EXPECT_EQ(defaults.get<double>(m_b), 2.0);
    }
    EXPECT_EQ(onDisk(), (QJsonObject { { m_a, 1 }, { m_b, 1 } }));
    m_defaults->flush();
    EXPECT_EQ(m_defaults->lastWriteError(), std::nullopt);
    EXPECT_EQ(m_defaults->get<double>(m_a), 1.0);
    EXPECT_EQ(onDisk(), (QJsonObject { { m_a, 1 }, { m_b, 2 } }));
}

TEST_F(JsonUserDefaultsTest, A_write_that_fails_leaves_the_old_file_and_is_tried_again_at_the_next_change)
{
    start().setValue(m_a, 1.0);
    m_defaults->flush();
    ASSERT_EQ(chmod(m_folder.at().constData(), 0555), 0);
    {
        OrdinaryUser const user;
        ASSERT_TRUE(user.holds());
        for (auto const value : { 2.0, 3.0, 2.0 }) {
            m_defaults->setValue(m_a, value);
            passTime();
            EXPECT_EQ(m_defaults->lastWriteError(), notAllowed);
        }
        EXPECT_THAT(
            m_troubles, ElementsAre(Trouble { Trouble::Kind::unwritable, m_path, notAllowed.localizedDescription() }))
            << "told once";
    }
    EXPECT_EQ(onDisk(), (QJsonObject { { m_a, 1 } }));
    EXPECT_EQ(m_executor.pendingTimers(), 0U);
    ASSERT_EQ(chmod(m_folder.at().constData(), 0777), 0);
    m_defaults->setValue(m_b, true);
    passTime();
    EXPECT_EQ(m_defaults->lastWriteError(), std::nullopt);
    EXPECT_EQ(onDisk(), (QJsonObject { { m_a, 2 }, { m_b, true } }));
}

TEST_F(JsonUserDefaultsTest, A_disk_that_is_full_in_the_middle_of_a_write_and_a_folder_in_its_place_are_left_alone)
{
    start().setValue(m_a, 1.0);
    m_defaults->flush();
    auto const before = m_folder.read("defaults.json");
    m_defaults->setValue(m_b, QString(5000, u'x'));
    auto const oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit old {};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &old), 0);
    rlimit const small { 100, old.rlim_max };
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    m_defaults->flush();
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &old), 0);
    std::signal(SIGXFSZ, oldHandler);
    EXPECT_EQ(m_defaults->lastWriteError(), SystemError(EFBIG));
    EXPECT_EQ(m_folder.read("defaults.json"), before);
    EXPECT_THAT(m_folder.names(), ElementsAre("defaults.json"));

    m_path = m_folder.path("folder");
    m_folder.makeFolder("folder/x");
    start().setValue(m_a, 1.0);
    m_defaults->flush();
    EXPECT_EQ(m_defaults->lastWriteError(), SystemError(EISDIR));
    m_defaults.reset();
    EXPECT_TRUE(m_folder.has("folder/x"));
}

// Writes numbers without end, each twice in a file of some pages, so that half a file would show.
[[noreturn]] void writeForEver(QString const& path, int number)
{
    ManualExecutor executor;
    JsonUserDefaults defaults(path, executor);
    for (;; ++number) {
        defaults.setValue(u"first"_s, static_cast<double>(number));
        defaults.setValue(u"padding"_s, QString(20'000 + number % 1000, u'x'));
        defaults.setValue(u"last"_s, static_cast<double>(number));
        defaults.flush();
    }
}

TEST(DefaultsCrash, A_writer_killed_at_any_moment_leaves_the_old_file_or_the_new_one)
{
    TemporaryFolder const folder { std::filesystem::temp_directory_path() }; // where a write takes its time
    auto const stored = [&] { return QJsonDocument::fromJson(folder.read("defaults.json")); };
    Dice dice(7);
    for (int kill = 0, before = 0; kill < 200; ++kill) {
        auto const writer = fork();
        ASSERT_GE(writer, 0);
        if (writer == 0)
            writeForEver(folder.path("defaults.json"), before + 1);
        while (stored()[u"first"_s].toInt() <= before)
            sched_yield();
        auto const moment = std::chrono::steady_clock::now() + std::chrono::microseconds(dice.below(3000));
        while (std::chrono::steady_clock::now() < moment) { }
        ASSERT_EQ(::kill(writer, SIGKILL), 0);
        ASSERT_EQ(waitpid(writer, nullptr, 0), writer);

        auto const left = stored();
        auto const number = left[u"first"_s].toInt();
        ASSERT_GT(number, before);
        ASSERT_EQ(left[u"last"_s].toInt(), number);
        ASSERT_EQ(left[u"padding"_s].toString().size(), 20'000 + number % 1000);
        before = number;
    }
    EXPECT_GT(folder.names().size(), 1U) << "a temporary, or no kill came at a moment that matters";
    for (auto const& name : folder.names())
        EXPECT_TRUE(name.startsWith("defaults.json") && !name.contains("damaged")) << name.toStdString();
}

}
}
