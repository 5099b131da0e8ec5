#include "platform/linux/files/JsonUserDefaults.h"
#include "support/ManualExecutor.h"
#include "support/Test.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <new>
#include <random>
#include <thread>

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Quillory {
namespace {

// What the writer tells across its own death: the number whose write began last, and the one whose write came back.
struct Progress {
    std::atomic<int> begun;
    std::atomic<int> finished;
};

// Writes numbers without end, each twice in a file of some pages, so that half a file would show.
[[noreturn]] void writeForEver(QString const& path, Progress& progress)
{
    ManualExecutor executor;
    JsonUserDefaults defaults(path, executor);
    for (int number = progress.finished + 1;; ++number) {
        defaults.setValue(u"first"_s, static_cast<double>(number));
        defaults.setValue(u"padding"_s, QString(20'000 + number % 1000, u'x'));
        defaults.setValue(u"last"_s, static_cast<double>(number));
        progress.begun = number;
        defaults.flush();
        progress.finished = number;
    }
}

TEST(DefaultsCrash, A_writer_killed_at_any_moment_leaves_the_old_file_or_the_new_one)
{
    QTemporaryDir const folder;
    auto const path = folder.filePath(u"defaults.json"_s);
    auto* const shared = mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(shared, MAP_FAILED);
    auto& progress = *new (shared) Progress;
    std::mt19937 random(7);
    int inMiddle = 0;
    constexpr int kills = 200;
    for (int kill = 0; kill < kills; ++kill) {
        int const before = progress.finished;
        auto const writer = fork();
        ASSERT_GE(writer, 0);
        if (writer == 0)
            writeForEver(path, progress);
        while (progress.finished < before + 1)
            std::this_thread::yield();
        auto const moment = std::chrono::steady_clock::now() + std::chrono::microseconds(random() % 3000);
        while (std::chrono::steady_clock::now() < moment) { }
        ASSERT_EQ(::kill(writer, SIGKILL), 0);
        int status = 0;
        ASSERT_EQ(waitpid(writer, &status, 0), writer);
        ASSERT_TRUE(WIFSIGNALED(status));

        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        auto const stored = QJsonDocument::fromJson(file.readAll()).object();
        auto const number = stored.value(u"first"_s).toInt(-1);
        ASSERT_EQ(stored.value(u"last"_s).toInt(-2), number);
        ASSERT_EQ(stored.value(u"padding"_s).toString().size(), 20'000 + number % 1000);
        ASSERT_GE(number, progress.finished);
        ASSERT_LE(number, progress.begun);
        inMiddle += progress.begun != progress.finished;
    }
    munmap(shared, sizeof(Progress));
    std::printf("%d kills, %d of them inside a write\n", kills, inMiddle);
    EXPECT_GT(inMiddle, kills / 4);
    for (auto const& name : QDir(folder.path()).entryList(QDir::Files | QDir::Hidden))
        EXPECT_TRUE(name == u"defaults.json"_s || name.startsWith(u"defaults.json."_s)) << name.toStdString();
    EXPECT_TRUE(QDir(folder.path()).entryList({ u"*.damaged-*"_s }).isEmpty());
}

}
}
