#include "library/InstallFile.h"
#include "library/InstallIcons.h"
#include "library/LibraryInstallation.h"
#include "library/LibraryLoad.h"
#include "library/StarterSheets.h"
#include "platform/linux/files/PosixFileSystem.h"
#include "platform/linux/qt/QtPictureDecoder.h"
#include "support/OrdinaryUser.h"

#include <gmock/gmock.h>

#include <QFile>
#include <QTemporaryDir>

#include <array>
#include <cerrno>
#include <csignal>
#include <functional>
#include <numeric>
#include <random>

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Quillory {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class InstallationOnDisk : public testing::Test {
protected:
    InstallationOnDisk() { chmod(at("").constData(), 0755); }

    QByteArray at(QByteArray const& name) const { return QFile::encodeName(library) + '/' + name; }
    void write(QByteArray const& name, QByteArray const& contents) const
    {
        QFile file(QFile::decodeName(at(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(contents);
    }
    QByteArray contents(QByteArray const& name) const
    {
        QFile file(QFile::decodeName(at(name)));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    std::vector<QByteArray> names() const { return files.everyName(library).value(); }

    PosixFileSystem files;
    QTemporaryDir temporary;
    QString library = temporary.path();
};

TEST_F(InstallationOnDisk, Links_and_files_in_the_way_stay_as_they_are)
{
    write("git.md", "mine");
    ASSERT_EQ(symlink("nowhere", at("vim.md").constData()), 0);
    for (auto const& name : { u"git.md"_s, u"vim.md"_s })
        EXPECT_EQ(installFile(files, name, "new", library), InstallResult::skipped(name));
    EXPECT_EQ(contents("git.md"), "mine");
    EXPECT_FALSE(QFile::exists(QFile::decodeName(at("nowhere"))));

    ASSERT_EQ(symlink(".", at("folder").constData()), 0);
    EXPECT_EQ(installFile(files, u"x.md"_s, "new", library + u"/folder"_s),
        InstallResult::failed(u"Could not open the selected folder"_s));
    EXPECT_THAT(names(), UnorderedElementsAre("git.md", "vim.md", "folder"));
}

TEST_F(InstallationOnDisk, A_folder_that_may_only_be_read_is_told)
{
    OrdinaryUser const user;
    ASSERT_TRUE(user.holds());
    QString const folder = u"/"_s; // no ordinary user may write there
    EXPECT_EQ(installFile(files, u"git.md"_s, "new", folder).text,
        u"Could not create git.md: "_s + SystemError(EACCES).localizedDescription());
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

TEST_F(InstallationOnDisk, A_full_disk_is_told_and_leaves_nothing_behind)
{
    enum : int { fits = 1, wrongMessage, leftSomething, cannotMount };
    auto const installTooMuch = [&](int expected) -> int {
        auto const result = installFile(files, u"big.md"_s, QByteArray(1 << 20, 'x'), library);
        if (result.kind != InstallResult::Kind::failed)
            return fits;
        if (result.text != u"big.md: "_s + SystemError(expected).localizedDescription())
            return wrongMessage;
        return names().empty() ? 0 : leftSomething;
    };
    auto const onSmallDisk = exitCodeOf([&]() -> int {
        if (unshare(CLONE_NEWNS | (geteuid() == 0 ? 0 : CLONE_NEWUSER)) != 0
            || mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0
            || mount("small", QFile::encodeName(library).constData(), "tmpfs", 0, "size=64k") != 0)
            return cannotMount;
        return installTooMuch(ENOSPC);
    });
    std::printf("a disk of 64 KB: %s\n", onSmallDisk == cannotMount ? "may not be mounted here" : "tried");
    EXPECT_THAT(onSmallDisk, testing::AnyOf(0, cannotMount));

    EXPECT_EQ(exitCodeOf([&] {
        rlimit const limit { 65536, 65536 };
        std::signal(SIGXFSZ, SIG_IGN);
        setrlimit(RLIMIT_FSIZE, &limit);
        return installTooMuch(EFBIG);
    }),
        0);
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

TEST_F(InstallationOnDisk, Without_hard_links_a_file_is_renamed_and_still_replaces_nothing)
{
    auto const install = [&](QString const& name) { return installFile(files, name, "new", library); };
    EXPECT_EQ(exitCodeOf([&] {
        refuseCall(SYS_linkat, EPERM);
        bool const isCreated = install(u"git.md"_s).kind == InstallResult::Kind::created;
        auto const folder = files.openForInstalling(library).value();
        bool const isKept = folder->createFile("x") && folder->publish("x", "git.md").error().code() == EEXIST;
        refuseCall(SYS_renameat2, EINVAL);
        auto const told = u"Could not install vim.md: "_s + SystemError(EPERM).localizedDescription();
        return isCreated && isKept && install(u"vim.md"_s).text == told ? 0 : 1;
    }),
        0);
    EXPECT_EQ(contents("git.md"), "new");
    EXPECT_THAT(names(), UnorderedElementsAre("git.md", "x"));
}

TEST_F(InstallationOnDisk, Killed_at_any_moment_it_leaves_whole_files_and_hidden_temporaries)
{
    constexpr int kills = 200;
    QByteArray const mine = "mine, from before";
    QByteArray const whole(300'000, 'w');
    write("5.MD", mine);
    std::mt19937 random(1);
    int installed = 0, temporaries = 0;
    for (int kill = 0; kill < kills; ++kill) {
        auto const child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            for (int number = kill * 10'000;; ++number) {
                installFile(files, u"5.md"_s, whole, library);
                installFile(files, QString::number(number) + u".md"_s, whole, library);
            }
        }
        auto const before = kill * 10'000;
        // Up to the first file of this process, then on to a moment within one of the next.
        auto const first = at(QByteArray::number(before) + ".md");
        while (access(first.constData(), F_OK) != 0)
            sched_yield();
        for (auto turns = random() % 500; turns > 0; --turns)
            sched_yield();
        ::kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        for (auto const& name : names()) {
            if (name == "5.MD")
                continue;
            if (name.startsWith('.')) {
                ASSERT_TRUE(name.startsWith(".quillory-") && name.endsWith(".tmp")) << name.toStdString();
                ++temporaries;
            } else {
                ASSERT_EQ(contents(name), whole) << name.toStdString();
                ++installed;
            }
            unlink(at(name).constData());
        }
        ASSERT_EQ(contents("5.MD"), mine);
    }
    std::printf("%d kills: %d whole files, %d temporaries\n", kills, installed, temporaries);
    EXPECT_GT(temporaries, 0); // or no kill came at a moment that matters
}

TEST_F(InstallationOnDisk, All_starters_are_there_whole_and_without_fault)
{
    LibraryInstallation installation { .folder = library, .starters = QStringLiteral(QUILLORY_STARTERS) };
    for (auto const& name : StarterSheets::names())
        installation.targets.append(StarterSheets::targetName(name));
    auto const load = [&]() -> std::expected<LoadedLibrary, SystemError> {
        return LoadedLibrary { loadLibrary(files, QtPictureDecoder(), library).value(), {} };
    };
    auto const outcome = installation.run(files, load, {});
    QStringList failures;
    for (auto const& result : outcome.results) {
        if (result.kind != InstallResult::Kind::created)
            failures.append(result.line());
    }
    EXPECT_THAT(failures, IsEmpty());
    ASSERT_TRUE(outcome.library);
    EXPECT_EQ(outcome.library->sheets.size(), StarterSheets::names().size());
    for (auto const& sheet : outcome.library->sheets) {
        EXPECT_FALSE(sheet.error) << qPrintable(sheet.id + u": "_s + *sheet.error);
        EXPECT_THAT(sheet.iconWarnings, IsEmpty()) << qPrintable(sheet.id);
        qsizetype entries = 30; // those of a structured sheet are counted
        if (sheet.shortcuts)
            entries = std::transform_reduce(sheet.shortcuts->sections.begin(), sheet.shortcuts->sections.end(),
                qsizetype {}, std::plus(), [](auto const& section) { return section.entries.size(); });
        EXPECT_GE(entries, 30) << qPrintable(sheet.id);
    }
}

}
}
