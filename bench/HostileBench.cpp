// A folder of sheets that are made to hold the parser up, among some that are not: how long until all are listed and the
// ordinary ones are there, how long a save is followed meanwhile, how long the end takes, and what it costs in all.
//
//   quillory-bench-hostile [HOSTILE] [ORDINARY] [whole]     60 and 40 unless told otherwise; `whole` waits for all

#include "app/sandbox/ServeAsWorker.h"
#include "library/LibraryStore.h"
#include "linux/files/InotifyFileEvents.h"
#include "linux/files/PosixFileSystem.h"
#include "linux/qt/QtExecutor.h"
#include "linux/worker/WorkerPool.h"
#include "support/FakeLibraryServices.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

namespace {

using namespace Quillory;

constexpr qsizetype hostileSize = 2 * 1024 * 1024; // bytes

QByteArray hostileText(int kind)
{
    constexpr int depth = 1 << 19;
    static std::array const texts {
        QByteArray(hostileSize, '"'),
        QByteArray("'a").repeated(hostileSize / 2),
        QByteArray(2 * depth, '>') + '\n' + QByteArray("a\n").repeated(depth / 2),
        QByteArray("a|b\n").repeated(depth) + "-|-\n",
        QByteArray("![[]()").repeated(hostileSize / 6),
    };
    return texts.at(static_cast<std::size_t>(kind) % texts.size()).first(hostileSize - depth);
}

void write(QTemporaryDir const& folder, QString const& name, QByteArray const& text)
{
    QFile file(folder.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("can't write %s", qPrintable(name));
}

template<typename Condition>
qint64 millisecondsUntil(Condition condition)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return timer.elapsed();
}

bool isReady(Sheet const& sheet)
{
    return !sheet.error && sheet.interpretation == Interpretation::complete;
}

void measure(int hostile, int ordinary, bool whole)
{
    QTemporaryDir const folder;
    for (int number = 0; number < hostile; ++number)
        write(folder, QStringLiteral("hostile-%1.md").arg(number), hostileText(number) + QByteArray::number(number));
    for (int number = 0; number < ordinary; ++number)
        write(folder, QStringLiteral("ordinary-%1.md").arg(number), "# A title\n\nSome `code`.\n");

    FakeLibraryServices fakes;
    PosixFileSystem const files;
    WorkerPool sandbox;
    QtExecutor executor;
    InotifyFileEvents events(executor);
    auto const services = fakes.services();
    LibraryStore store({ services.defaults, services.bookmarks, files, sandbox, events, executor, services.clipboard,
                           services.announcements, services.fileOpener, services.openPanels, services.workspace },
        LibraryStore::RestoreFolder::no);
    store.connect(folder.path());
    auto const& sheets = store.sheets.value();
    auto const usable = millisecondsUntil(
        [&] { return sheets.size() == hostile + ordinary && std::ranges::count_if(sheets, isReady) >= ordinary; });
    std::printf("%d hostile sheets and %d others\n", hostile, ordinary);
    std::printf("all listed, the others ready  %8lld ms\n", static_cast<long long>(usable));

    write(folder, QStringLiteral("ordinary-0.md"), "# Saved\n");
    auto const saved = millisecondsUntil([&] {
        return std::ranges::any_of(
            sheets, [](Sheet const& sheet) { return sheet.title == QLatin1StringView("Saved"); });
    });
    std::printf("a save, followed meanwhile    %8lld ms\n", static_cast<long long>(saved));
    if (whole) {
        auto const all = millisecondsUntil([&] { return !store.busy; });
        std::printf("all past their deadlines      %8lld ms\n", static_cast<long long>(usable + saved + all));
    }
    QElapsedTimer end;
    end.start();
    store.shutdown();
    auto const isEnded = executor.stopWorkers(std::chrono::milliseconds(100));
    std::printf("the end                       %8lld ms%s\n", static_cast<long long>(end.elapsed()),
        isEnded ? "" : ", with work left behind");
}

}

int main(int argc, char* argv[])
{
    if (auto const exitCode = serveAsWorker(argc, argv))
        return *exitCode;
    QCoreApplication const application(argc, argv);
    auto const number = [&](int index, int otherwise) { return argc > index ? std::atoi(argv[index]) : otherwise; };
    measure(number(1, 60), number(2, 40), argc > 3 && std::string_view(argv[3]) == "whole");
    return 0;
}
