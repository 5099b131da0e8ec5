#include "library/InstallFile.h"
#include "library/InstallIcons.h"
#include "library/StarterSheets.h"
#include "support/Cases.h"
#include "support/FakeLibraryServices.h"

#include <QFileInfo>

#include <array>
#include <cerrno>

#include <linux/filter.h>
#include <linux/seccomp.h>
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

class InstallationTest : public Test, protected FakeLibraryServices {
protected:
    InstallationTest() { clear(); }

    void clear() const
    {
        root.remove("library");
        root.makeFolder("library");
    }
    // Somebody else's: a link that leads nowhere yet, which a careless writer would follow or replace.
    void put(QByteArray const& name) const { root.link("library/" + name, "../nowhere"); }
    bool isStill(QByteArray const& name) const
    {
        return QFileInfo(root.path("library/" + name)).isSymLink() && !root.has("nowhere");
    }
    InstallResult install(QString const& name) const { return installFile(files, name, "new", library); }

    QString const library = root.path("library");
};

TEST_F(InstallationTest, What_differs_only_in_case_or_normalisation_exists_and_what_leads_elsewhere_is_refused)
{
    for (auto const& name : { u""_s, u"."_s, u".."_s, u"../x.md"_s, u"a/x.md"_s, u"/x.md"_s, u"x.md/"_s })
        EXPECT_EQ(install(name), InstallResult::failed(u"Invalid starter filename"_s)) << qPrintable(name);
    EXPECT_THAT(root.names("library"), IsEmpty());
    forEachCase(u"names"_s, [this](auto const& row) {
        auto const existing = row[0].toString().toUtf8();
        auto const name = row[1].toString();
        clear();
        put(existing);
        EXPECT_EQ(install(name), row[2].toBool() ? InstallResult::skipped(name) : InstallResult::created(name));
        EXPECT_TRUE(isStill(existing));
        EXPECT_EQ(root.names("library").size(), row[2].toBool() ? 1U : 2U);
    });
    EXPECT_EQ(root.read("library/git.md"), "new");
}

TEST_F(InstallationTest, Somebody_who_is_faster_at_any_moment_keeps_the_name)
{
    for (auto const moment :
        { Step::everyName, Step::openForInstalling, Step::createFile, Step::write, Step::close, Step::publish }) {
        SCOPED_TRACE(static_cast<int>(moment));
        clear();
        files.before = [&](Step step, QByteArray const&) {
            if (step == moment)
                put("git.md");
            return 0;
        };
        EXPECT_EQ(install(u"git.md"_s), InstallResult::skipped(u"git.md"_s));
        EXPECT_TRUE(isStill("git.md"));
        EXPECT_THAT(root.names("library"), ElementsAre("git.md")) << "no temporary";
    }
}

TEST_F(InstallationTest, A_failing_step_is_told_and_leaves_nothing_and_at_no_moment_a_name_has_half_a_file)
{
    for (auto const& [failing, error, message] : std::initializer_list<std::tuple<Step, int, QString>> {
             { Step::everyName, EACCES, u"git.md: "_s + systemText(EACCES) },
             { Step::openForInstalling, ELOOP, u"Could not open the selected folder"_s },
             { Step::createFile, EROFS, u"Could not create git.md: "_s + systemText(EROFS) },
             { Step::write, ENOSPC, u"git.md: "_s + systemText(ENOSPC) },
             { Step::close, EIO, u"git.md: "_s + systemText(EIO) },
             { Step::publish, EPERM, u"Could not install git.md: "_s + systemText(EPERM) } }) {
        files.before = [&](Step step, QByteArray const&) {
            // Here the process may die.
            for (auto const& name : root.names("library")) {
                EXPECT_TRUE(name.startsWith(".quillory-") && name.endsWith(".tmp")) << name.toStdString();
                EXPECT_TRUE(step != Step::publish || root.read("library/" + name) == "new");
            }
            return step == failing ? error : 0;
        };
        EXPECT_EQ(install(u"git.md"_s), InstallResult::failed(message));
        EXPECT_THAT(root.names("library"), IsEmpty()) << qPrintable(message);
    }
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
    auto const child = fork(); // what it refuses itself ends with it
    if (child == 0) {
        refuseCall(SYS_linkat, EPERM);
        bool const isCreated = install(u"git.md"_s).kind == InstallResult::Kind::created;
        auto const folder = files.openForInstalling(library).value();
        bool const isKept = folder->createFile("x") && folder->publish("x", "git.md").error().code() == EEXIST;
        refuseCall(SYS_renameat2, EINVAL);
        auto const told = u"Could not install vim.md: "_s + systemText(EPERM);
        _exit(isCreated && isKept && install(u"vim.md"_s).text == told ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(root.read("library/git.md"), "new");
    EXPECT_THAT(root.names("library"), UnorderedElementsAre("git.md", "x"));
}

class IconInstallationTest : public InstallationTest {
protected:
    IconInstallationTest()
    {
        for (auto const* name : { "icons/a.png", "icons/b.png", "x.png" })
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
    QStringList references, lines;
    forEachCase(u"icons to install"_s, [&](auto const& row) {
        references.prepend(row[0].toString());
        lines << row[1].toString();
    });
    EXPECT_EQ(install(references + references), lines);
    EXPECT_EQ(root.read("library/icons/a.png"), "icons/a.png");
    EXPECT_EQ(root.read("library/icons/full.png").size(), 262'144);
    EXPECT_THAT(install({ u"icons/a.png"_s }), ElementsAre(u"Skipped existing a.png"_s));
}

TEST_F(IconInstallationTest, Only_a_real_folder_takes_icons_and_only_icons_make_it)
{
    EXPECT_THAT(install({}), ElementsAre());
    EXPECT_FALSE(root.has("library/icons"));
    auto const refused = u"Cannot install icons: icons must be a local directory, not a symlink."_s;
    root.write("library/icons", "mine");
    EXPECT_THAT(install({ u"icons/a.png"_s, u"icons/b.png"_s }), ElementsAre(refused));
    EXPECT_EQ(root.read("library/icons"), "mine");
    root.makeFolder("elsewhere");
    auto const linkIcons = [this] {
        root.remove("library/icons");
        root.link("library/icons", "../elsewhere");
    };
    linkIcons();
    EXPECT_THAT(install({ u"icons/a.png"_s }), ElementsAre(refused));
    root.remove("library/icons");
    files.before = [](Step step, QByteArray const&) { return step == Step::makeFolder ? EACCES : 0; };
    EXPECT_THAT(install({ u"icons/a.png"_s }), ElementsAre(u"Could not install icons: "_s + systemText(EACCES)));
    // A link that takes the folder's place once it was looked at and listed.
    files.before = [&](Step step, QByteArray const& name) {
        if (step == Step::openForInstalling && name.endsWith("/icons"))
            linkIcons();
        return 0;
    };
    EXPECT_THAT(install({ u"icons/a.png"_s }), ElementsAre(u"Could not open the selected folder"_s));
    EXPECT_THAT(root.names("elsewhere"), IsEmpty());
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
    void install(QStringList const& names)
    {
        store.installStarters(names);
        EXPECT_TRUE(store.busy.value());
        executor.settle();
        EXPECT_FALSE(store.busy.value());
    }

    LibraryStore store { services(), LibraryStore::RestoreFolder::no };
};

TEST_F(StarterInstallationTest, The_outcome_is_told_in_order_and_the_library_read_again)
{
    root.write("library/GIT.md", "# Mine");
    root.write("library/Brave.quillory.json", "mine");
    install({ u"brave.quillory"_s });
    EXPECT_EQ(message(), u"Skipped existing brave.quillory.json"_s);
    EXPECT_FALSE(root.has("library/icons")) << "a skipped starter brings no icons";
    root.remove("library/Brave.quillory.json");
    install({ u"vim"_s, u"git"_s, u"gone"_s, u"brave.quillory"_s });
    EXPECT_EQ(message(),
        u"Installed brave.quillory.json\nMissing or invalid bundled icon: ../x.png\nInstalled a.png\n"
        u"Skipped existing git.md\nMissing bundled starter: gone.md\nInstalled vim.md"_s);
    EXPECT_EQ(store.sheets.value().size(), 3);
    EXPECT_EQ(root.read("library/GIT.md"), "# Mine");

    root.remove("library/vim.md");
    files.before = [&](Step step, QByteArray const&) {
        return step == Step::names && root.has("library/vim.md") ? EIO : 0;
    };
    install({ u"vim"_s });
    EXPECT_EQ(
        message(), u"Installed vim.md\nCould not read the folder. Choose it again or refresh. "_s + systemText(EIO));
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
    QStringList names;
    forEachCase(u"starters"_s, [&](auto const& row) {
        names << row[0].toString();
        EXPECT_EQ(StarterSheets::targetName(names.last()), row[1].toString());
        EXPECT_EQ(StarterSheets::label(names.last()), row[2].toString());
        EXPECT_EQ(StarterSheets::selectedByDefault().contains(names.last()), row[3].toBool());
    });
    EXPECT_EQ(StarterSheets::names(), names);
    EXPECT_EQ(StarterSheets::label(u"ÉTAT-major.x.quillory"_s), u"État Major.x · JSON example"_s);
}

}
}
