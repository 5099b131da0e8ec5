#include "library/InstallFile.h"
#include "library/InstallIcons.h"
#include "library/StarterSheets.h"
#include "support/Dice.h"
#include "support/FakeLibraryServices.h"
#include "support/OrdinaryUser.h"
#include "support/Test.h"

#include <QFileInfo>

#include <array>
#include <cerrno>
#include <csignal>

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Quillory {
namespace {

using Step = FaultyFileSystem::Step;

QString systemText(int error)
{
    return SystemError(error).localizedDescription();
}

// What a name can be.
enum class Kind { file, link, folder };

class InstallationTest : public Test, protected FakeLibraryServices {
protected:
    InstallationTest() { root.makeFolder("library"); }

    void put(QByteArray const& name, Kind kind, QByteArray const& contents) const
    {
        if (kind == Kind::file)
            root.write("library/" + name, contents);
        else if (kind == Kind::link)
            root.link("library/" + name, contents);
        else
            root.makeFolder("library/" + name);
    }
    bool isStill(QByteArray const& name, Kind kind, QByteArray const& contents) const
    {
        QFileInfo const entry(root.path("library/" + name));
        return kind == Kind::file ? !entry.isSymLink() && root.read("library/" + name) == contents
            : kind == Kind::link
            ? std::filesystem::read_symlink(root.at("library/" + name).constData()) == contents.constData()
            : entry.isDir();
    }
    InstallResult install(QString const& name) const { return installFile(files, name, "new", library); }

    QString const library = root.path("library");
};

TEST_F(InstallationTest, Names_that_lead_elsewhere_are_refused)
{
    for (auto const& name : { u""_s, u"."_s, u".."_s, u"../x.md"_s, u"a/x.md"_s, u"/x.md"_s, u"x.md/"_s })
        EXPECT_EQ(install(name), InstallResult::failed(u"Invalid starter filename"_s)) << qPrintable(name);
    EXPECT_THAT(root.names("library"), IsEmpty());
}

TEST_F(InstallationTest, What_differs_only_in_case_or_normalisation_exists)
{
    for (auto const& [existing, name, isSame] :
        std::initializer_list<std::tuple<QByteArray, QString, bool>> { { "git.md", u"git.md"_s, true },
            { "Git.MD", u"git.md"_s, true }, { "caf\xc3\xa9.md", u"cafe\u0301.md"_s, true },
            { "CAFE\xcc\x81.md", u"caf\u00e9.md"_s, true }, { ".Hidden.md", u".hidden.md"_s, true },
            { "cafe.md", u"caf\u00e9.md"_s, false }, { "git.md~", u"git.md"_s, false } }) {
        for (auto const kind : { Kind::file, Kind::link, Kind::folder }) {
            SCOPED_TRACE(Message() << existing.toStdString() << ' ' << static_cast<int>(kind));
            root.remove("library");
            root.makeFolder("library");
            put(existing, kind, "old");
            EXPECT_EQ(install(name), isSame ? InstallResult::skipped(name) : InstallResult::created(name));
            EXPECT_TRUE(isStill(existing, kind, "old"));
            EXPECT_EQ(root.names("library").size(), isSame ? 1U : 2U);
            EXPECT_TRUE(isSame || isStill(name.toUtf8(), Kind::file, "new"));
        }
    }
}

TEST_F(InstallationTest, Somebody_who_is_faster_at_any_moment_keeps_the_name)
{
    for (auto const moment :
        { Step::everyName, Step::openForInstalling, Step::createFile, Step::write, Step::close, Step::publish }) {
        for (auto const kind : { Kind::file, Kind::link, Kind::folder }) {
            SCOPED_TRACE(Message() << static_cast<int>(moment) << ' ' << static_cast<int>(kind));
            root.remove("library");
            root.makeFolder("library");
            files.before = [&](Step step, QByteArray const&) {
                if (step == moment)
                    put("git.md", kind, "theirs");
                return 0;
            };
            EXPECT_EQ(install(u"git.md"_s), InstallResult::skipped(u"git.md"_s));
            EXPECT_TRUE(isStill("git.md", kind, "theirs"));
            EXPECT_THAT(root.names("library"), ElementsAre("git.md")) << "no temporary";
        }
    }
}

TEST_F(InstallationTest, A_failing_step_is_told_and_leaves_nothing_behind)
{
    for (auto const& [failing, error, message] : std::initializer_list<std::tuple<Step, int, QString>> {
             { Step::everyName, EACCES, u"git.md: "_s + systemText(EACCES) },
             { Step::openForInstalling, ELOOP, u"Could not open the selected folder"_s },
             { Step::createFile, EROFS, u"Could not create git.md: "_s + systemText(EROFS) },
             { Step::write, ENOSPC, u"git.md: "_s + systemText(ENOSPC) },
             { Step::close, EIO, u"git.md: "_s + systemText(EIO) },
             { Step::publish, EPERM, u"Could not install git.md: "_s + systemText(EPERM) } }) {
        files.before = [&](Step step, QByteArray const&) { return step == failing ? error : 0; };
        EXPECT_EQ(install(u"git.md"_s), InstallResult::failed(message));
        EXPECT_THAT(root.names("library"), IsEmpty()) << qPrintable(message);
    }
    files.before = nullptr;
    root.link("library/folder", ".");
    EXPECT_EQ(installFile(files, u"x.md"_s, "new", root.path("library/folder")),
        InstallResult::failed(u"Could not open the selected folder"_s));
    OrdinaryUser const user;
    ASSERT_TRUE(user.holds());
    EXPECT_EQ(installFile(files, u"git.md"_s, "new", u"/"_s), // where no ordinary user may write
        InstallResult::failed(u"Could not create git.md: "_s + systemText(EACCES)));
}

// In a process of its own: what it does to its mounts and limits ends with it.
template<typename Function>
int exitCodeOf(Function function)
{
    auto const child = fork();
    if (child == 0)
        _exit(function());
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// From now on and for good, as a file system answers that does not have it.
void refuseCall(unsigned call, unsigned error)
{
    std::array<sock_filter, 4> filter { { BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, call, 0, 1), BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | error),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW) } };
    sock_fprog const program { filter.size(), filter.data() };
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program);
}

TEST_F(InstallationTest, Without_hard_links_a_file_is_renamed_and_still_replaces_nothing)
{
    EXPECT_EQ(exitCodeOf([&] {
        refuseCall(SYS_linkat, EPERM);
        bool const isCreated = install(u"git.md"_s).kind == InstallResult::Kind::created;
        auto const folder = files.openForInstalling(library).value();
        bool const isKept = folder->createFile("x") && folder->publish("x", "git.md").error().code() == EEXIST;
        refuseCall(SYS_renameat2, EINVAL);
        auto const told = u"Could not install vim.md: "_s + systemText(EPERM);
        return isCreated && isKept && install(u"vim.md"_s).text == told ? 0 : 1;
    }),
        0);
    EXPECT_EQ(root.read("library/git.md"), "new");
    EXPECT_THAT(root.names("library"), UnorderedElementsAre("git.md", "x"));
}

TEST_F(InstallationTest, Killed_at_any_moment_it_leaves_whole_files_and_hidden_temporaries)
{
    constexpr int kills = 200;
    TemporaryFolder const disk { std::filesystem::temp_directory_path() }; // where a write takes its time
    QByteArray const whole(300'000, 'w');
    disk.write("5.MD", "mine, from before");
    Dice dice(1);
    int temporaries = 0;
    for (int kill = 0; kill < kills; ++kill) {
        auto const before = kill * 10'000;
        auto const child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            for (int number = before;; ++number) {
                installFile(files, u"5.md"_s, whole, disk.path());
                installFile(files, QString::number(number) + u".md"_s, whole, disk.path());
            }
        }
        // Up to the first file of this process, then on to a moment within one of the next.
        while (!disk.has(QByteArray::number(before) + ".md"))
            sched_yield();
        for (auto turns = dice.below(500); turns > 0; --turns)
            sched_yield();
        ::kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        for (auto const& name : disk.names()) {
            if (name == "5.MD")
                continue;
            bool const isTemporary = name.startsWith(".quillory-") && name.endsWith(".tmp");
            ASSERT_TRUE(isTemporary || disk.read(name) == whole) << name.toStdString();
            temporaries += isTemporary ? 1 : 0;
            disk.remove(name);
        }
        ASSERT_EQ(disk.read("5.MD"), "mine, from before");
    }
    EXPECT_GT(temporaries, 0); // or no kill came at a moment that matters
}

class IconInstallationTest : public InstallationTest {
protected:
    IconInstallationTest()
    {
        for (auto const* name : { "icons/a.png", "icons/b.png" })
            root.write("starters/" + QByteArray(name), name);
    }

    QStringList install(QStringList const& references) const
    {
        ShortcutSheet sheet;
        for (auto const& reference : references)
            sheet.sections.append({ .icon = reference });
        QStringList lines;
        for (auto const& result : installIcons(files, sheet, root.path("starters"), library))
            lines.append(result.line());
        return lines;
    }
};

TEST_F(IconInstallationTest, Icons_come_in_order_and_each_once_and_bad_references_are_told)
{
    root.write("starters/icons/full.png", QByteArray(262'144, 'x'));
    root.write("starters/icons/over.png", QByteArray(262'145, 'x'));
    root.link("starters/icons/link.png", "/etc/passwd");
    root.write("starters/x.png", "x");
    auto const invalid = [](QString const& shown) { return u"Missing or invalid bundled icon: "_s + shown; };
    auto const tooLong = QString(150, u'z') + u"/x.png"_s;
    EXPECT_THAT(install({ u"icons/b.png"_s, u"icons/a.png"_s, u"icons/b.png"_s, u"icons/over.png"_s, u"../x.png"_s,
                    u"x.png"_s, u"icons/../x.png"_s, u"icons/link.png"_s, u"other/a.png"_s, u"icons/missing.png"_s,
                    tooLong, u"icons/.."_s, u"icons/full.png"_s }),
        ElementsAre(invalid(u"../x.png"_s), invalid(u"icons/.."_s), invalid(u"icons/../x.png"_s), u"Installed a.png"_s,
            u"Installed b.png"_s, u"Installed full.png"_s, invalid(u"icons/link.png"_s),
            invalid(u"icons/missing.png"_s), invalid(u"icons/over.png"_s), invalid(u"other/a.png"_s),
            invalid(u"x.png"_s), invalid(QString(100, u'z'))));
    EXPECT_EQ(root.read("library/icons/a.png"), "icons/a.png");
    EXPECT_EQ(root.read("library/icons/full.png").size(), 262'144);
    EXPECT_THAT(install({ u"icons/a.png"_s }), ElementsAre(u"Skipped existing a.png"_s));
}

TEST_F(IconInstallationTest, Only_a_real_folder_takes_icons_and_only_icons_make_it)
{
    EXPECT_THAT(install({}), ElementsAre());
    EXPECT_FALSE(root.has("library/icons"));
    auto const refused = u"Cannot install icons: icons must be a local directory, not a symlink."_s;
    for (auto const kind : { Kind::file, Kind::link }) {
        root.remove("library/icons");
        put("icons", kind, "elsewhere");
        EXPECT_THAT(install({ u"icons/a.png"_s, u"icons/b.png"_s }), ElementsAre(refused));
        EXPECT_TRUE(isStill("icons", kind, "elsewhere"));
    }
    root.remove("library/icons");
    files.before = [](Step step, QByteArray const&) { return step == Step::makeFolder ? EACCES : 0; };
    EXPECT_THAT(install({ u"icons/a.png"_s }), ElementsAre(u"Could not install icons: "_s + systemText(EACCES)));
    // A link that takes the folder's place once it was looked at and listed.
    files.before = [&](Step step, QByteArray const& name) {
        if (step == Step::openForInstalling && name.endsWith("/icons")) {
            root.remove("library/icons");
            put("icons", Kind::link, "../starters");
        }
        return 0;
    };
    EXPECT_THAT(install({ u"icons/a.png"_s }), ElementsAre(u"Could not open the selected folder"_s));
    EXPECT_FALSE(root.has("starters/a.png"));
}

class StarterInstallationTest : public IconInstallationTest {
protected:
    StarterInstallationTest()
    {
        root.write("starters/git.md", "# Git");
        root.write("starters/vim.md", "# Vim");
        root.write("starters/brave.quillory.json", R"({"schemaVersion": 1, "title": "Brave", "icon": "icons/a.png",
            "sections": [{"id": "s", "title": "S", "icon": "../x.png", "entries":
                [{"id": "e", "title": "E", "shortcuts": [{"steps": [{"modifiers": ["control"], "key": "t"}]}]}]}]})");
        store.connect(library);
        executor.settle();
    }

    QString message() const { return store.message.value().value_or(u"(none)"_s); }

    LibraryStore store { services(), LibraryStore::RestoreFolder::no };
};

TEST_F(StarterInstallationTest, The_outcome_is_told_in_order_and_the_library_read_again)
{
    root.write("library/GIT.md", "# Mine");
    store.installStarters({ u"vim"_s, u"git"_s, u"gone"_s, u"brave.quillory"_s });
    EXPECT_TRUE(store.busy.value());
    executor.settle();
    EXPECT_EQ(message(),
        u"Installed brave.quillory.json\nMissing or invalid bundled icon: ../x.png\nInstalled a.png\n"
        u"Skipped existing git.md\nMissing bundled starter: gone.md\nInstalled vim.md"_s);
    EXPECT_FALSE(store.busy.value());
    EXPECT_EQ(store.sheets.value().size(), 3);
    EXPECT_EQ(root.read("library/GIT.md"), "# Mine");
}

TEST_F(StarterInstallationTest, A_skipped_starter_brings_no_icons_and_a_failed_reading_is_the_last_line)
{
    root.write("library/Brave.quillory.json", "mine");
    store.installStarters({ u"brave.quillory"_s });
    executor.settle();
    EXPECT_EQ(message(), u"Skipped existing brave.quillory.json"_s);
    EXPECT_FALSE(root.has("library/icons"));

    files.before = [&, isLinked = false](Step step, QByteArray const&) mutable {
        isLinked = isLinked || step == Step::publish;
        return isLinked && step == Step::names ? EIO : 0;
    };
    store.installStarters({ u"git"_s });
    executor.settle();
    EXPECT_EQ(
        message(), u"Installed git.md\nCould not read the folder. Choose it again or refresh. "_s + systemText(EIO));
    EXPECT_FALSE(store.busy.value());
}

TEST_F(StarterInstallationTest, One_that_is_overtaken_keeps_its_files_and_shows_nothing)
{
    files.before = [&](Step step, QByteArray const&) {
        if (step == Step::publish && !root.has("library/git.md"))
            store.installStarters({ u"gone"_s }); // while the first one's worker runs
        return 0;
    };
    store.installStarters({ u"git"_s, u"vim"_s });
    ASSERT_TRUE(executor.runWork());
    EXPECT_TRUE(store.busy.value());
    executor.settle();
    EXPECT_EQ(message(), u"Missing bundled starter: gone.md"_s);
    EXPECT_THAT(root.names("library"), ElementsAre("git.md"));
}

TEST_F(InstallationTest, All_starters_are_there_whole_and_without_fault)
{
    auto all = services();
    all.starters = QStringLiteral(QUILLORY_STARTERS);
    LibraryStore store(all, LibraryStore::RestoreFolder::no);
    store.connect(library);
    store.installStarters(StarterSheets::names());
    executor.settle();
    auto const lines = store.message.value().value_or(QString()).split(u'\n');
    EXPECT_THAT(lines, Each(ResultOf([](auto const& line) { return line.startsWith(u"Installed "); }, true)));
    EXPECT_EQ(store.sheets.value().size(), StarterSheets::names().size());
    for (auto const& sheet : store.sheets.value()) {
        EXPECT_FALSE(sheet.error) << qPrintable(sheet.id + u": "_s + *sheet.error);
        EXPECT_THAT(sheet.iconWarnings, IsEmpty()) << qPrintable(sheet.id);
        qsizetype entries = 0;
        for (auto const& section : sheet.shortcuts.value_or(ShortcutSheet()).sections)
            entries += section.entries.size();
        EXPECT_TRUE(!sheet.shortcuts || entries >= 30) << qPrintable(sheet.id);
    }
}

TEST(StarterSheets, Each_has_its_target_its_label_and_whether_it_starts_selected)
{
    QStringList rows;
    for (auto const& name : StarterSheets::names())
        rows.append(StarterSheets::targetName(name) + u" | "_s + StarterSheets::label(name)
            + (StarterSheets::selectedByDefault().contains(name) ? u" | yes"_s : u""_s));
    EXPECT_THAT(rows,
        ElementsAre(u"git.md | Git | yes"_s, u"vim.md | Vim | yes"_s, u"pandas.md | pandas | yes"_s,
            u"kubernetes.md | Kubernetes | yes"_s, u"docker.md | Docker | yes"_s, u"markdown.md | Markdown | yes"_s,
            u"brave.quillory.json | Brave · JSON example"_s, u"xcode.quillory.json | Xcode · JSON example"_s,
            u"sequel-ace.quillory.json | Sequel Ace · JSON example"_s, u"intellij-idea.quillory.json | IntelliJ IDEA"_s,
            u"vscode.quillory.json | Visual Studio Code"_s));
    EXPECT_EQ(StarterSheets::label(u"ÉTAT-major.x.quillory"_s), u"État Major.x · JSON example"_s);
}

}
}
