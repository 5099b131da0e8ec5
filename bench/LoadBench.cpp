// Ratios of one run: loading a folder of Markdown sheets against parsing the same bytes with the bare parser, and
// loading it again unchanged against reading its files. Sheets are parsed by workers, and for comparison in this process.
// Medians of ten, warm cache; the parser alone on one thread.
//
//   quillory-bench-load [FOLDER]     without a folder: 1,000 made sheets, 10 MB together

#include "Measure.h"

#include "app/sandbox/ServeAsWorker.h"
#include "library/LibraryLoad.h"
#include "linux/files/PosixFileSystem.h"
#include "linux/qt/QtPictureDecoder.h"
#include "linux/worker/WorkerPool.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cmark-gfm-core-extensions.h>
#include <cmark-gfm.h>

#include <algorithm>
#include <cstdio>
#include <vector>

#include <sys/resource.h>

namespace {

using namespace Quillory;

constexpr int repetitions = 10;
constexpr int madeSheets = 1'000;
constexpr qsizetype madeSheetSize = 10'240; // bytes

template<typename Function>
double medianMilliseconds(Function function)
{
    std::vector<double> times;
    for (int repetition = 0; repetition < repetitions; ++repetition)
        times.push_back(milliseconds(function));
    std::ranges::sort(times);
    return (times[repetitions / 2 - 1] + times[repetitions / 2]) / 2;
}

// A sheet as people write them: a title, sections, commands in code, a table, notes.
QByteArray madeSheet(int number)
{
    auto const digits = QByteArray::number(number);
    QByteArray sheet = "# Sheet " + digits + "\n\nWhat one forgets about tool " + digits
        + ", in the order of need.\n\n";
    for (int section = 1; sheet.size() < madeSheetSize; ++section) {
        auto const position = QByteArray::number(section);
        sheet += "## Task " + position + "\n\nRun `tool" + digits
            + " --verbose` first, then *look* at **what** it says.\n" + "See [the manual](https://example.org/" + digits
            + "/" + position + ") -- \"it depends\"...\n\n" + "```sh\ntool" + digits + " start --port 80" + position
            + " | tee log\ntool" + digits + " stop\n```\n\n"
            + "- [x] check the `config`\n- [ ] restart ~~twice~~ once\n  1. nested, with `code`\n  2. and more\n\n"
            + "| Key | What it does |\n|---|:--|\n| `Ctrl+" + position + "` | goes to line " + position
            + " |\n| `g g` | first line |\n| `G` | last line |\n\n> A note about task " + position + ".\n\n";
    }
    sheet.truncate(madeSheetSize);
    return sheet;
}

QString makeLibrary(QTemporaryDir const& folder)
{
    for (int number = 0; number < madeSheets; ++number) {
        QFile file(folder.filePath(QStringLiteral("sheet-%1.md").arg(number)));
        if (!file.open(QIODevice::WriteOnly))
            qFatal("can't write %s", qPrintable(file.fileName()));
        file.write(madeSheet(number));
    }
    return folder.path();
}

std::vector<QByteArray> readSheets(QString const& folder)
{
    std::vector<QByteArray> texts;
    auto const open = PosixFileSystem().openFolder(folder);
    if (!open)
        qFatal("can't open %s", qPrintable(folder));
    auto names = (*open)->names().value_or(std::vector<QByteArray>());
    std::erase_if(names, [](QByteArray const& name) { return !name.toLower().endsWith(".md"); });
    for (auto const& name : names) {
        auto const status = (*open)->status(name);
        if (!status || !status->isRegularFile)
            continue;
        if (auto const text = (*open)->read(name, sheetSizeLimit + 1); text && *text)
            texts.push_back(**text);
    }
    return texts;
}

void parseBare(QByteArray const& text)
{
    auto* const parser = cmark_parser_new(CMARK_OPT_SOURCEPOS | CMARK_OPT_SMART);
    for (auto const* extension : { "table", "strikethrough", "tasklist" })
        cmark_parser_attach_syntax_extension(parser, cmark_find_syntax_extension(extension));
    cmark_parser_feed(parser, text.constData(), static_cast<std::size_t>(text.size()));
    auto* const root = cmark_parser_finish(parser);
    cmark_parser_free(parser);
    cmark_node_free(root);
}

// Of one call by the processors' time, this process's and that of children that have ended: a busy machine changes it
// little.
template<typename Function>
double processorMilliseconds(Function function)
{
    auto const used = [] {
        double sum = 0;
        for (auto const who : { RUSAGE_SELF, RUSAGE_CHILDREN }) {
            rusage usage {};
            getrusage(who, &usage);
            for (auto const& time : { usage.ru_utime, usage.ru_stime })
                sum += static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
        }
        return sum;
    };
    auto const before = used();
    for (int repetition = 0; repetition < repetitions; ++repetition)
        function();
    return (used() - before) / repetitions;
}

// Until nothing is under way.
QList<Sheet> load(PosixFileSystem const& files, Sandbox& sandbox, QString const& folder, QList<Sheet> const& previous)
{
    LibraryLoad load { .files = files, .sandbox = sandbox, .folder = folder, .previous = previous };
    do {
        auto loaded = load.run().value_or(LoadedLibrary());
        load.previous = std::move(loaded.sheets);
        load.earlier = std::make_shared<LoadMemory>(std::move(loaded.memory));
    } while (load.earlier->isUnderWay());
    return load.previous;
}

void report(QString const& folder)
{
    PosixFileSystem const files;
    WorkerPool sandbox;
    auto const before = residentMegabytes();
    QList<Sheet> sheets;
    auto const first = milliseconds([&] { sheets = load(files, sandbox, folder, {}); });
    auto const after = residentMegabytes();

    qsizetype sourceBytes = 0;
    std::size_t treeBytes = 0;
    for (auto const& sheet : sheets) {
        sourceBytes += sheet.source.toUtf8().size();
        treeBytes += sheet.parsed ? sheet.parsed->byteSize() : 0;
    }
    auto const texts = readSheets(folder);
    auto const read = medianMilliseconds([&] { readSheets(folder); });
    auto const bare = medianMilliseconds([&] { std::ranges::for_each(texts, parseBare); });
    auto const here = medianMilliseconds([&] { (void)loadLibrary(files, QtPictureDecoder(), folder); });
    auto const loaded = medianMilliseconds([&] { load(files, sandbox, folder, {}); });
    auto const reload = medianMilliseconds([&] { load(files, sandbox, folder, sheets); });

    auto const bareTime = processorMilliseconds([&] { std::ranges::for_each(texts, parseBare); });
    auto const hereTime = processorMilliseconds([&] { (void)loadLibrary(files, QtPictureDecoder(), folder); });
    auto const workersTime = processorMilliseconds([&] {
        WorkerPool own;
        load(files, own, folder, {});
    });

    auto const megabytes = static_cast<double>(sourceBytes) / 1e6;
    std::printf("sheets                        %lld, %.1f MB\n", static_cast<long long>(sheets.size()), megabytes);
    std::printf("bare parser, parse and free   %8.1f ms\n", bare);
    std::printf("first load, workers start     %8.1f ms   %.2f times the bare parser\n", first, first / bare);
    std::printf("load and let go               %8.1f ms   %.2f times the bare parser\n", loaded, loaded / bare);
    std::printf("the same in one process       %8.1f ms   %.2f times the bare parser\n", here, here / bare);
    std::printf("processor time: bare parser   %8.1f ms\n", bareTime);
    std::printf("  in one process              %8.1f ms   %.2f times the bare parser\n", hereTime, hereTime / bareTime);
    std::printf(
        "  with workers, their start   %8.1f ms   %.2f times the bare parser\n", workersTime, workersTime / bareTime);
    std::printf("reading the files             %8.1f ms\n", read);
    std::printf("load, nothing changed         %8.1f ms   %.2f times reading the files\n", reload, reload / read);
    std::printf("resident memory of the sheets %8.1f MB   (text and tree, %.1f bytes a byte of source)\n",
        after - before, (after - before) / megabytes);
    std::printf("trees                         %8.1f MB   %.2f bytes a byte of source\n",
        static_cast<double>(treeBytes) / 1e6, static_cast<double>(treeBytes) / static_cast<double>(sourceBytes));
}

}

int main(int argc, char* argv[])
{
    if (auto const exitCode = serveAsWorker(argc, argv))
        return *exitCode;
    cmark_gfm_core_extensions_ensure_registered();
    if (argc > 1) {
        report(QString::fromLocal8Bit(argv[1]));
        return 0;
    }
    QTemporaryDir const folder;
    report(makeLibrary(folder));
    return 0;
}
