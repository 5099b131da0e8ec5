#include "StandInPortal.h"
#include "linux/freedesktop/DesktopFileOpener.h"
#include "support/EventLoop.h"
#include "support/TemporaryFolder.h"
#include "support/Test.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QUrl>

#include <csignal>
#include <memory>

#include <sys/stat.h>
#include <unistd.h>

namespace Quillory {
namespace {

// A launcher of the test's own stands first in the search path.
class DesktopFileOpenerTest : public Test {
protected:
    DesktopFileOpenerTest()
    {
        qputenv("PATH", root.at() + ":" + searchPath);
        launcherWorks(true);
    }
    ~DesktopFileOpenerTest() override { qputenv("PATH", searchPath); }

    void launcherWorks(bool isWorking)
    {
        makeProgram("xdg-open", "printf %s \"$1\" > \"$0.log\"\nexit " + QByteArray(isWorking ? "0" : "3") + "\n");
    }
    static QDBusConnection ownConnection()
    {
        return QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"service"_s);
    }
    // Whether it could be opened, once that is told.
    bool isOpened()
    {
        EXPECT_TRUE(loop.runUntil([&] { return outcome.has_value(); }));
        return outcome && outcome->has_value();
    }
    QString opened() { return QString::fromUtf8(root.read("xdg-open.log")); }
    FileOpener::Done asked()
    {
        outcome.reset();
        return [this](auto const& result) { outcome = result; };
    }
    QString makeFile(QByteArray const& name, QByteArray const& contents = {}) const
    {
        root.write(name, contents);
        return root.path(name);
    }
    void makeProgram(QByteArray const& name, QByteArray const& script) const
    {
        auto const rights = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
        QFile::setPermissions(makeFile(name, "#!/bin/sh\n" + script), rights);
    }

    TemporaryFolder const root { std::filesystem::temp_directory_path() }; // where programs may run
    EventLoop loop;
    StandInPortal portal;
    std::optional<std::expected<void, FileOpener::Failure>> outcome;
    DesktopFileOpener opener { QDBusConnection::sessionBus() };
    QByteArray searchPath = qgetenv("PATH");
    QString const file = makeFile("a #1.md");
    QString const link = u"https://example.org/a?b=%20#c"_s;
};

TEST_F(DesktopFileOpenerTest, The_answer_is_that_of_the_one_who_was_to_open_it)
{
    for (auto const* name : { "plain.md", "it's 100% \"C#\" $HOME;&? ü.md", "-rf.md" }) {
        auto const path = makeFile(name);
        for (bool const isWorking : { true, false }) {
            launcherWorks(isWorking);
            opener.open(path, asked());
            EXPECT_EQ(isOpened(), isWorking);
            EXPECT_EQ(opened(), path);
            EXPECT_TRUE(isWorking || !outcome->error().description.isEmpty());
        }
    }
    opener.openLink(link, asked());
    EXPECT_FALSE(isOpened());
    EXPECT_EQ(opened(), link);
}

TEST_F(DesktopFileOpenerTest, Without_a_launcher_the_portal_opens_and_its_answer_counts)
{
    root.remove("xdg-open");
    qputenv("PATH", root.at());
    opener.open(file, asked());
    EXPECT_FALSE(isOpened()); // there is no portal either

    portal.start();
    for (auto const& [answer, isFine] : { std::pair(0U, true), std::pair(1U, true), std::pair(2U, false) }) {
        portal.response = answer;
        opener.open(file, asked());
        EXPECT_EQ(isOpened(), isFine) << answer;
        EXPECT_EQ(portal.calls.last(), file);
    }
    opener.openLink(link, asked());
    EXPECT_FALSE(isOpened());
    EXPECT_EQ(portal.calls.last(), link);
    opener.open(root.path("gone.md"), asked());
    EXPECT_FALSE(isOpened());
}

TEST_F(DesktopFileOpenerTest, In_a_sandbox_the_portal_does_it_all)
{
    portal.start();
    DesktopFileOpener inSandbox(QDBusConnection::sessionBus(), DesktopFileOpener::By::portal);
    QVariantMap editing { { u"writable"_s, true }, { u"ask"_s, false } };
    inSandbox.open(file, asked());
    EXPECT_TRUE(isOpened());
    EXPECT_EQ(portal.options, editing);
    inSandbox.openWith(file, QString(), asked());
    EXPECT_TRUE(isOpened());
    editing[u"ask"_s] = true;
    EXPECT_EQ(portal.options, editing);
    inSandbox.reveal(file);
    EXPECT_TRUE(loop.runUntil([&] { return portal.calls.size() == 6; }));
    EXPECT_THAT(portal.calls.mid(4), ElementsAre(u"OpenDirectory"_s, file));
    EXPECT_EQ(opened(), QString());
}

TEST_F(DesktopFileOpenerTest, The_file_manager_is_shown_the_file_and_without_one_its_folder_opens)
{
    opener.reveal(file);
    EXPECT_TRUE(loop.runUntil([&] { return opened() == root.path(); }));

    QStringList shown;
    BusService const manager(ownConnection(), u"org.freedesktop.FileManager1"_s, u"/org/freedesktop/FileManager1"_s,
        [&](QDBusMessage const& call, QDBusConnection&) {
            shown << call.member() << call.arguments().at(0).toStringList();
            return std::optional(QVariantList());
        });
    ASSERT_TRUE(manager.isRegistered);
    opener.reveal(file);
    EXPECT_TRUE(loop.runUntil([&] { return !shown.isEmpty(); }));
    EXPECT_THAT(shown, ElementsAre(u"ShowItems"_s, QString::fromLatin1(QUrl::fromLocalFile(file).toEncoded())));
}

// Writes what it was started with, and ends the file with a line of its own.
constexpr char recorder[] = "{ printf '%s\\n' \"$@\"; pwd; grep -E '^Sig(Blk|Ign)' /proc/self/status; "
                            "env | grep -E '^(XDG_ACTIV|DESKTOP_ST|DBUS_STARTER)'; ls /proc/$$/fd/77; echo end; } > ";

TEST_F(DesktopFileOpenerTest, A_chosen_application_starts_with_the_file_and_with_nothing_of_ours_in_its_way)
{
    auto const log = root.at("log");
    makeProgram("editor", recorder + log + "\n");
    makeProgram("x-terminal-emulator", "[ \"$1\" = -e ] && shift && exec \"$@\" terminal\n");
    auto const here = QDir::currentPath();
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &blocked, &before);
    QByteArrayList const ofOurStart { "XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID", "DBUS_STARTER_ADDRESS" };
    for (auto const& name : ofOurStart)
        qputenv(name, "x");
    constexpr int inheritable = 77;
    dup2(STDIN_FILENO, inheritable);
    struct Case {
        QByteArray lines;
        QStringList arguments;
    };
    for (auto const& [lines, arguments] : {
             Case { "Exec=editor --new %f\nPath=" + root.at(), { u"--new"_s, file, root.path() } },
             Case { "Exec=editor\nTerminal=true", { file, u"terminal"_s, here } },
         }) {
        root.remove("log");
        auto const entry = makeFile("editor.desktop", "[Desktop Entry]\nType=Application\nName=E\n" + lines + "\n");
        opener.openWith(file, entry, asked());
        EXPECT_TRUE(isOpened());
        EXPECT_TRUE(loop.runUntil([&] { return root.read("log").endsWith("end\n"); }));
        auto written = QString::fromUtf8(root.read("log")).split(u'\n');
        EXPECT_EQ(written.mid(0, arguments.size()), arguments);
        EXPECT_TRUE(written.contains(u"SigBlk:\t0000000000000000"_s)) << written.join(u'|').toStdString();
        // Two above the ordinary ones are the C library's own.
        EXPECT_THAT(written.filter(QRegularExpression(u"=x|fd/77"_s)), IsEmpty());
        EXPECT_EQ(written.filter(QRegularExpression(u"^SigIgn:\t[0-9a-f]{8}[08]0000000$"_s)).size(), 1);
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    close(inheritable);
    for (auto const& name : ofOurStart)
        qunsetenv(name);
}

TEST_F(DesktopFileOpenerTest, What_cannot_be_started_is_told)
{
    auto const head = QByteArray("[Desktop Entry]\nType=Application\nName=E\n");
    for (auto const& contents : { QByteArray(), QByteArray("text"), head, head + "Exec=no-such-program %f\n",
             head + "Exec=editor %q\n", head + "Exec=editor \"open\n", head + "Exec=editor\nPath=/no/such/folder\n",
             head + "Exec=editor\n" + QByteArray(1'048'576, '#') }) {
        opener.openWith(file, makeFile("x.desktop", contents), asked());
        ASSERT_FALSE(isOpened()) << contents.toStdString();
        EXPECT_FALSE(outcome->error().description.isEmpty());
    }
    auto const pipe = root.path("pipe.desktop");
    ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0); // nobody writes
    for (auto const& entry : { u"/no/such.desktop"_s, pipe, root.path() }) {
        opener.openWith(file, entry, asked());
        EXPECT_FALSE(isOpened()) << entry.toStdString();
    }
}

TEST_F(DesktopFileOpenerTest, An_answer_after_its_end_is_not_given)
{
    auto temporary = std::make_unique<DesktopFileOpener>(QDBusConnection::sessionBus());
    temporary->open(file, asked());
    temporary.reset();
    EXPECT_TRUE(loop.runUntil([&] { return opened() == file; }));
    // The end of another one, started later, shows that this one's has come through.
    std::optional<bool> later;
    opener.open(file, [&](auto const& result) { later = result.has_value(); });
    EXPECT_TRUE(loop.runUntil([&] { return later.has_value(); }));
    EXPECT_FALSE(outcome);
}

}
}
