// From a file's save to the list that is applied, in a library of made sheets, over the real store, files, events and
// clock: the latency of the events, the pause before the load, and the work, which is held against reading the files in
// one thread as a first load does: a look at each, its opening, its bytes. Both begin after a rest. Medians, files cached.
//
//   quillory-bench-follow [SHEETS] [REPETITIONS]     1,000 sheets of 10 KB and 15 saves unless told otherwise

#include "app/sandbox/ServeAsWorker.h"
#include "library/LibraryStore.h"
#include "linux/files/InotifyFileEvents.h"
#include "linux/files/PosixFileSystem.h"
#include "linux/qt/QtExecutor.h"
#include "linux/worker/WorkerPool.h"
#include "support/FakeLibraryServices.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>

namespace {

using namespace Quillory;
using Nanoseconds = std::chrono::nanoseconds;

constexpr qsizetype sheetSize = 10'240; // bytes

// Notes when the events are told.
class TimedFileEvents final : public FileEvents {
public:
    explicit TimedFileEvents(Executor& executor)
        : m_executor(executor)
        , m_events(executor)
    {
    }

    Registration watch(QString const& folder, Nanoseconds latency, std::function<void()> changed) override
    {
        return m_events.watch(folder, latency, [this, changed = std::move(changed)] {
            told = m_executor.now();
            changed();
        });
    }

    void lookAgain() override { m_events.lookAgain(); }

    Nanoseconds told {};

private:
    Executor& m_executor;
    InotifyFileEvents m_events;
};

struct Times {
    std::vector<double> latency, pause, work, read;
};

QByteArray sheetText(int number, int revision)
{
    auto text = "# Sheet " + QByteArray::number(number) + "\n\nRevision " + QByteArray::number(revision) + "\n\n";
    for (int task = 1; text.size() < sheetSize; ++task)
        text += "## Task " + QByteArray::number(task) + "\n\nRun `tool --verbose`, then *look* at **it**.\n\n"
            + "| Key | What it does |\n|---|---|\n| `g g` | first line |\n| `G` | last line |\n\n";
    return text.first(sheetSize);
}

void save(QString const& folder, int number, int revision)
{
    QFile file(folder + QStringLiteral("/sheet-%1.md").arg(number));
    if (!file.open(QIODevice::WriteOnly))
        qFatal("can't write %s", qPrintable(file.fileName()));
    file.write(sheetText(number, revision));
}

double milliseconds(Nanoseconds duration)
{
    return std::chrono::duration<double, std::milli>(duration).count();
}

double median(std::vector<double> values)
{
    std::ranges::sort(values);
    return values.empty() ? 0 : values[values.size() / 2];
}

// As a first load reads them: every sheet, in the order of a listing, and nothing made of them.
void readFiles(QString const& folder)
{
    auto const open = PosixFileSystem().openFolder(folder).value();
    auto const names = open->names().value();
    for (auto const& name : names) {
        if (open->status(name).value().isRegularFile)
            (void)open->read(name, 2'097'153);
    }
}

class Bench {
public:
    explicit Bench(int sheets)
        : m_sheets(sheets)
    {
        for (int number = 0; number < sheets; ++number)
            save(m_folder.path(), number, 0);
        auto const services = m_fakes.services();
        m_store.emplace(LibraryStore::Services { services.defaults, services.bookmarks, m_files, m_sandbox, m_events,
                            m_executor, services.clipboard, services.announcements, services.fileOpener,
                            services.openPanels, services.workspace },
            LibraryStore::RestoreFolder::no);
        m_store->connect(m_folder.path());
        runUntil([&] { return m_store->sheets.value().size() == m_sheets && !m_store->busy.value(); });
    }

    void saveOne(int revision, Times& times)
    {
        Nanoseconds begun {}, applied {};
        auto const busy = m_store->busy.addNotifier([&] {
            if (m_store->busy.value())
                begun = m_executor.now();
        });
        auto const sheets = m_store->sheets.addNotifier([&] { applied = m_executor.now(); });
        save(m_folder.path(), revision % m_sheets, revision);
        auto const saved = m_executor.now();
        runUntil([&] { return applied != Nanoseconds {} && !m_store->busy.value(); });
        times.latency.push_back(milliseconds(m_events.told - saved));
        times.pause.push_back(milliseconds(begun - m_events.told));
        times.work.push_back(milliseconds(applied - begun));

        // From the same rest as the work, which finds the processor's caches cold and its clock low.
        bool hasRested = false;
        auto const rest = m_executor.after(applied - m_events.told, [&] { hasRested = true; });
        runUntil([&] { return hasRested; });
        auto const start = m_executor.now();
        readFiles(m_folder.path());
        times.read.push_back(milliseconds(m_executor.now() - start));
    }

private:
    template<typename Condition>
    void runUntil(Condition condition)
    {
        while (!condition())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    int m_sheets;
    QTemporaryDir m_folder;
    FakeLibraryServices m_fakes;
    PosixFileSystem m_files;
    WorkerPool m_sandbox;
    QtExecutor m_executor;
    TimedFileEvents m_events { m_executor };
    std::optional<LibraryStore> m_store;
};

}

int main(int argc, char* argv[])
{
    if (auto const exitCode = serveAsWorker(argc, argv))
        return *exitCode;
    QCoreApplication const application(argc, argv);
    int const sheets = argc > 1 ? std::atoi(argv[1]) : 1'000;
    int const repetitions = argc > 2 ? std::atoi(argv[2]) : 15;
    Bench bench(sheets);
    Times times;
    for (int revision = 1; revision <= repetitions; ++revision)
        bench.saveOne(revision, times);
    auto const work = median(times.work);
    auto const read = median(times.read);
    std::printf("one save among %d sheets, %d times\n", sheets, repetitions);
    std::printf("from the save to the event   %8.1f ms\n", median(times.latency));
    std::printf("from the event to the load   %8.1f ms\n", median(times.pause));
    std::printf("from the load to the list    %8.1f ms   %.2f times reading the files\n", work, work / read);
    std::printf("reading the files            %8.1f ms\n", read);
    return 0;
}
