#include "library/InstallFile.h"
#include "library/InstallIcons.h"
#include "library/StarterSheets.h"
#include "support/FakeLibraryServices.h"

#include <gmock/gmock.h>

#include <cerrno>

namespace Quillory {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using Kind = FakeFileSystem::Kind;
using Step = FakeFileSystem::InstallStep;

QString const library = u"/library"_s;
QString const starters = u"/starters"_s;

QString systemText(int error)
{
    return SystemError(error).localizedDescription();
}

class InstallationTest : public testing::Test, protected FakeLibraryServices {
protected:
    InstallationTest() { files.addFolder(library); }

    InstallResult install(QString const& name) { return installFile(files, name, "new", library); }
    QByteArray contents(QByteArray const& name) const
    {
        return files.entry(library, name).value_or(FakeFileSystem::Entry()).contents;
    }
    bool hasTemporaries() const
    {
        auto const names = files.everyName(library).value();
        return std::ranges::any_of(names, [](auto const& name) { return name.startsWith(".quillory-"); });
    }
};

TEST_F(InstallationTest, Names_that_lead_elsewhere_are_refused)
{
    for (auto const& name : { u""_s, u"."_s, u".."_s, u"../x.md"_s, u"a/x.md"_s, u"/x.md"_s, u"x.md/"_s })
        EXPECT_EQ(install(name), InstallResult::failed(u"Invalid starter filename"_s)) << qPrintable(name);
    EXPECT_TRUE(files.everyName(library)->empty());
}

TEST_F(InstallationTest, What_differs_only_in_case_or_normalisation_exists)
{
    struct Case {
        QByteArray existing;
        QString name;
        bool isSame;
    };
    for (auto const& [existing, name, isSame] : {
             Case { "git.md", u"git.md"_s, true },
             Case { "Git.MD", u"git.md"_s, true },
             Case { "caf\xc3\xa9.md", u"cafe\u0301.md"_s, true },
             Case { "CAFE\xcc\x81.md", u"caf\u00e9.md"_s, true },
             Case { ".Hidden.md", u".hidden.md"_s, true },
             Case { "cafe.md", u"caf\u00e9.md"_s, false },
             Case { "git.md~", u"git.md"_s, false },
         }) {
        for (auto const kind : { Kind::regular, Kind::symbolicLink, Kind::folder }) {
            SCOPED_TRACE(testing::Message() << existing.toStdString() << ' ' << static_cast<int>(kind));
            files.removeFolder(library);
            files.put(library, existing, { .kind = kind, .contents = "old" });
            EXPECT_EQ(install(name), isSame ? InstallResult::skipped(name) : InstallResult::created(name));
            EXPECT_EQ(contents(existing), "old");
            EXPECT_EQ(contents(name.toUtf8()), isSame && name.toUtf8() != existing ? "" : isSame ? "old" : "new");
            EXPECT_FALSE(hasTemporaries());
        }
    }
}

TEST_F(InstallationTest, Somebody_who_is_faster_at_any_moment_keeps_the_name)
{
    for (auto const moment : { Step::list, Step::open, Step::create, Step::write, Step::close, Step::publish }) {
        for (auto const kind : { Kind::regular, Kind::symbolicLink, Kind::folder }) {
            SCOPED_TRACE(testing::Message() << static_cast<int>(moment) << ' ' << static_cast<int>(kind));
            files.removeFolder(library);
            files.addFolder(library);
            files.setInstallHook([&](Step step, QByteArray const&) {
                if (step == moment)
                    files.put(library, "git.md", { .kind = kind, .contents = "theirs" });
                return 0;
            });
            EXPECT_EQ(install(u"git.md"_s), InstallResult::skipped(u"git.md"_s));
            EXPECT_EQ(contents("git.md"), "theirs");
            EXPECT_EQ(files.entry(library, "git.md")->kind, kind);
            files.setInstallHook(nullptr);
            EXPECT_FALSE(hasTemporaries());
        }
    }
}

TEST_F(InstallationTest, A_failing_step_is_told_and_leaves_nothing_behind)
{
    struct Case {
        Step step;
        int error;
        QString message;
    };
    for (auto const& [failing, error, message] : {
             Case { Step::list, EACCES, u"git.md: "_s + systemText(EACCES) },
             Case { Step::open, ELOOP, u"Could not open the selected folder"_s },
             Case { Step::create, EROFS, u"Could not create git.md: "_s + systemText(EROFS) },
             Case { Step::write, ENOSPC, u"git.md: "_s + systemText(ENOSPC) },
             Case { Step::close, EIO, u"git.md: "_s + systemText(EIO) },
             Case { Step::publish, EPERM, u"Could not install git.md: "_s + systemText(EPERM) },
         }) {
        SCOPED_TRACE(qPrintable(message));
        files.setInstallHook([&](Step step, QByteArray const&) { return step == failing ? error : 0; });
        EXPECT_EQ(install(u"git.md"_s), InstallResult::failed(message));
        files.setInstallHook(nullptr);
        EXPECT_TRUE(files.everyName(library)->empty());
    }
}

class IconInstallationTest : public InstallationTest {
protected:
    IconInstallationTest()
    {
        files.addFolder(starters);
        for (auto const* name : { "icons/a.png", "icons/b.png" })
            files.write(starters, name, name);
    }

    QStringList install(QStringList const& references)
    {
        ShortcutSheet sheet;
        for (auto const& reference : references)
            sheet.sections.append({ .icon = reference });
        QStringList lines;
        for (auto const& result : installIcons(files, sheet, starters, library))
            lines.append(result.line());
        return lines;
    }
};

TEST_F(IconInstallationTest, Icons_come_in_order_and_each_once_and_bad_references_are_told)
{
    files.write(starters, "icons/full.png", QByteArray(262'144, 'x'));
    files.write(starters, "icons/over.png", QByteArray(262'145, 'x'));
    files.put(starters, "icons/link.png", { .kind = Kind::symbolicLink, .contents = "/etc/passwd" });
    files.write(starters, "x.png", "x");
    auto const invalid = [](QString const& shown) { return u"Missing or invalid bundled icon: "_s + shown; };
    auto const tooLong = QString(150, u'z') + u"/x.png"_s;
    EXPECT_THAT(install({ u"icons/b.png"_s, u"icons/a.png"_s, u"icons/b.png"_s, u"icons/over.png"_s, u"../x.png"_s,
                    u"x.png"_s, u"icons/../x.png"_s, u"icons/link.png"_s, u"other/a.png"_s, u"icons/missing.png"_s,
                    tooLong, u"icons/.."_s, u"icons/full.png"_s }),
        ElementsAre(invalid(u"../x.png"_s), invalid(u"icons/.."_s), invalid(u"icons/../x.png"_s), u"Installed a.png"_s,
            u"Installed b.png"_s, u"Installed full.png"_s, invalid(u"icons/link.png"_s),
            invalid(u"icons/missing.png"_s), invalid(u"icons/over.png"_s), invalid(u"other/a.png"_s),
            invalid(u"x.png"_s), invalid(QString(100, u'z'))));
    EXPECT_EQ(contents("icons/a.png"), "icons/a.png");
    EXPECT_EQ(contents("icons/full.png").size(), 262'144);
    EXPECT_THAT(install({ u"icons/a.png"_s }), ElementsAre(u"Skipped existing a.png"_s));
}

TEST_F(IconInstallationTest, Only_a_real_folder_takes_icons_and_only_icons_make_it)
{
    EXPECT_THAT(install({}), ElementsAre());
    EXPECT_FALSE(files.entry(library, "icons"));
    auto const refused = u"Cannot install icons: icons must be a local directory, not a symlink."_s;
    for (auto const kind : { Kind::regular, Kind::symbolicLink }) {
        files.put(library, "icons", { .kind = kind, .contents = "/elsewhere" });
        EXPECT_THAT(install({ u"icons/a.png"_s, u"icons/b.png"_s }), ElementsAre(refused));
        EXPECT_EQ(files.entry(library, "icons")->kind, kind);
    }
    files.remove(library, "icons");
    files.setInstallHook([](Step step, QByteArray const&) { return step == Step::makeFolder ? EACCES : 0; });
    EXPECT_THAT(install({ u"icons/a.png"_s }), ElementsAre(u"Could not install icons: "_s + systemText(EACCES)));
    // A link that takes the folder's place once it was looked at and listed.
    files.setInstallHook([&, opens = 0](Step step, QByteArray const&) mutable {
        if (step == Step::open && ++opens == 2)
            files.put(library, "icons", { .kind = Kind::symbolicLink, .contents = "/elsewhere" });
        return 0;
    });
    EXPECT_THAT(install({ u"icons/a.png"_s }), ElementsAre(u"Could not open the selected folder"_s));
    EXPECT_FALSE(files.entry(library, "icons/a.png"));
}

class StarterInstallationTest : public IconInstallationTest {
protected:
    StarterInstallationTest()
    {
        files.write(starters, "git.md", "# Git");
        files.write(starters, "vim.md", "# Vim");
        files.write(starters, "brave.quillory.json", R"({"schemaVersion": 1, "title": "Brave", "icon": "icons/a.png",
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
    files.write(library, "GIT.md", "# Mine");
    store.installStarters({ u"vim"_s, u"git"_s, u"gone"_s, u"brave.quillory"_s });
    EXPECT_TRUE(store.busy.value());
    executor.settle();
    EXPECT_EQ(message(),
        u"Installed brave.quillory.json\nMissing or invalid bundled icon: ../x.png\nInstalled a.png\n"
        u"Skipped existing git.md\nMissing bundled starter: gone.md\nInstalled vim.md"_s);
    EXPECT_FALSE(store.busy.value());
    EXPECT_EQ(store.sheets.value().size(), 3);
    EXPECT_EQ(contents("GIT.md"), "# Mine");
}

TEST_F(StarterInstallationTest, A_skipped_starter_brings_no_icons_and_a_failed_reading_is_the_last_line)
{
    files.write(library, "Brave.quillory.json", "mine");
    store.installStarters({ u"brave.quillory"_s });
    executor.settle();
    EXPECT_EQ(message(), u"Skipped existing brave.quillory.json"_s);
    EXPECT_FALSE(files.entry(library, "icons"));

    files.setInstallHook([&](Step step, QByteArray const&) {
        if (step == Step::publish)
            files.failListing(library, EIO);
        return 0;
    });
    store.installStarters({ u"git"_s });
    executor.settle();
    EXPECT_EQ(
        message(), u"Installed git.md\nCould not read the folder. Choose it again or refresh. "_s + systemText(EIO));
    EXPECT_FALSE(store.busy.value());
}

TEST_F(StarterInstallationTest, One_that_is_overtaken_keeps_its_files_and_shows_nothing)
{
    int links = 0;
    files.setInstallHook([&](Step step, QByteArray const&) {
        if (step == Step::publish && links++ == 0)
            store.installStarters({ u"brave.quillory"_s }); // while the first one's worker runs
        return 0;
    });
    store.installStarters({ u"git"_s, u"vim"_s });
    ASSERT_TRUE(executor.runWork());
    EXPECT_TRUE(files.entry(library, "git.md"));
    EXPECT_FALSE(files.entry(library, "vim.md"));
    EXPECT_TRUE(store.busy.value());
    executor.settle();
    EXPECT_EQ(
        message(), u"Installed brave.quillory.json\nMissing or invalid bundled icon: ../x.png\nInstalled a.png"_s);
    EXPECT_FALSE(store.busy.value());
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
