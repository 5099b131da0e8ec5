// A folder of 10,000 files, 5,000 of them sheets: the time and the memory of its load, and how long the main thread is
// held while the store takes a result over and lets the old list go: the first list, one in which nothing changed, one in
// which every sheet was made again though equal, and one with a single other sheet.
//
//   quillory-bench-folder

#include "Measure.h"

#include "library/LibraryLoad.h"
#include "library/LibraryStore.h"
#include "linux/files/PosixFileSystem.h"
#include "linux/qt/QtExecutor.h"
#include "linux/qt/QtPictureDecoder.h"
#include "support/FakeLibraryServices.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>

namespace {

using namespace Quillory;

constexpr int files = 10'000;
constexpr int repetitions = 20;

QByteArray madeSheet(int number)
{
    auto const digits = QByteArray::number(number);
    QByteArray sheet = "# Sheet " + digits + "\n\n";
    for (int section = 0; section < 12; ++section)
        sheet += "## Task " + QByteArray::number(section) + "\n\nRun `tool" + digits
            + " --verbose`, then *look*.\n\n| Key | What it does |\n|---|---|\n| `g g` | first line |\n\n"
            + "- [x] check the `config`\n- restart ~~twice~~ once\n\n";
    return sheet;
}

void makeFolder(QTemporaryDir const& folder)
{
    for (int number = 0; number < files; ++number) {
        auto const suffix = number % 2 == 0 ? QStringLiteral("md") : QStringLiteral("txt");
        QFile file(folder.filePath(QStringLiteral("file-%1.%2").arg(number).arg(suffix)));
        if (!file.open(QIODevice::WriteOnly))
            qFatal("can't write %s", qPrintable(file.fileName()));
        file.write(madeSheet(number));
    }
}

struct Held {
    double median;
    double longest;
};

// How long the main thread is in the store for one result. The results are made before, one for each repetition.
template<typename Make>
Held heldBy(LibraryStore& store, Make make)
{
    std::vector<double> times;
    for (int repetition = 0; repetition < repetitions; ++repetition) {
        QList<Sheet> loaded = make(repetition);
        times.push_back(milliseconds([&] { store.applyLoadedSheets(std::move(loaded), store.generation.value()); }));
        QCoreApplication::processEvents();
    }
    std::ranges::sort(times);
    return { times[repetitions / 2], times.back() };
}

void print(char const* what, Held const& held)
{
    std::printf("%-42s %7.2f ms   longest of %d: %.2f ms\n", what, held.median, repetitions, held.longest);
}

void report(QString const& path)
{
    PosixFileSystem const fileSystem;
    QtPictureDecoder const pictures;
    auto const load = [&](QList<Sheet> const& previous) {
        return loadLibrary(fileSystem, pictures, path, previous).value_or(QList<Sheet>());
    };
    auto const before = residentMegabytes();
    QList<Sheet> sheets;
    auto const loadTime = milliseconds([&] { sheets = load({}); });
    auto const after = residentMegabytes();
    auto const reloadTime = milliseconds([&] { (void)load(sheets); });
    std::printf("load of %lld sheets in %d files            %7.0f ms   %.1f MB\n",
        static_cast<long long>(sheets.size()), files, loadTime, after - before);
    std::printf("load, nothing changed                      %7.0f ms\n", reloadTime);

    FakeLibraryServices fakes;
    QtExecutor executor;
    auto const others = fakes.services();
    LibraryStore store(
        { others.defaults, others.bookmarks, others.files, others.sandbox, others.events, executor, others.clipboard,
            others.announcements, others.fileOpener, others.openPanels, others.workspace },
        LibraryStore::RestoreFolder::no);
    print("held by the first list, and by none",
        heldBy(store, [&](int repetition) { return repetition % 2 == 0 ? load({}) : QList<Sheet>(); }));
    store.applyLoadedSheets(load({}), store.generation.value());
    print("held by a list in which nothing changed", heldBy(store, [&](int) { return load(store.sheets.value()); }));
    print("held by an equal list, all made again", heldBy(store, [&](int) { return load({}); }));
    print("held by a list with one other sheet", heldBy(store, [&](int repetition) {
        auto changed = load(store.sheets.value());
        changed.last().title = QString::number(repetition);
        return changed;
    }));
}

}

int main(int argc, char* argv[])
{
    QCoreApplication const application(argc, argv);
    QTemporaryDir const folder;
    makeFolder(folder);
    report(folder.path());
    return 0;
}
