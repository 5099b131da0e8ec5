// The library search over 7,200 sheets, 4.4 MB together: folding them, finding among them, and a key in the field until
// the narrowed list is painted; then the list of all of them: arrow keys, pages, a reload that changes one sheet.
// Milliseconds of the main thread where not said otherwise, medians of 20, the longest beside them. Searches are held
// against memmem over as many bytes in one piece, and against grep -ric as a process over the same files.
// On the offscreen platform unless QT_QPA_PLATFORM says otherwise.
//
//   quillory-bench-search

#include "Measure.h"

#include "library/FoldedSheets.h"
#include "library/LibraryLoad.h"
#include "library/LibraryQuery.h"
#include "linux/files/PosixFileSystem.h"
#include "linux/qt/QtExecutor.h"
#include "linux/qt/QtPictureDecoder.h"
#include "reader/LibrarySearchField.h"
#include "reader/ReaderView.h"
#include "reader/SheetList.h"
#include "support/FakeLibraryServices.h"

#include <QApplication>
#include <QKeyEvent>
#include <QProcess>
#include <QScrollBar>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <random>

namespace Quillory {
namespace {

using namespace Qt::StringLiterals;

constexpr int madeSheets = 7'200;
constexpr qsizetype sheetSize = 611; // bytes
constexpr int repetitions = 20;

struct Times {
    double median;
    double longest;
};

template<typename Function>
Times measured(Function function)
{
    std::vector<double> times;
    for (int repetition = 0; repetition < repetitions; ++repetition)
        times.push_back(function(repetition));
    std::ranges::sort(times);
    return { (times[repetitions / 2 - 1] + times[repetitions / 2]) / 2, times.back() };
}

void print(char const* what, Times const& times)
{
    std::printf("%-44s %8.2f ms   longest %.2f ms\n", what, times.median, times.longest);
}

// Words as rare as those of a language: a few often, most of them seldom.
class Words {
public:
    Words()
    {
        for (int number = 0; number < 4'000; ++number) {
            QByteArray word;
            for (int syllable = 0; syllable < 2 + number % 3; ++syllable)
                word += QByteArrayList { "re", "sta", "in", "te", "lo", "co", "na", "ki", "mu", "zor", "pe",
                    "ba" }[below(12)];
            m_words.append(word);
        }
    }
    QByteArray const& next() { return m_words.at(std::min(below(m_words.size()), below(m_words.size()))); }

private:
    template<typename Number>
    Number below(Number end)
    {
        return static_cast<Number>(m_engine() % static_cast<std::uint64_t>(end));
    }

    std::mt19937 m_engine { 1 };
    QByteArrayList m_words;
};

QByteArray madeSheet(Words& words, int number)
{
    auto sheet = "# Sheet " + QByteArray::number(number) + "\n\n";
    while (sheet.size() < sheetSize) {
        sheet += words.next();
        sheet += sheet.size() % 7 == 0 ? "\n\n- `" + words.next() + " --" + words.next() + "`\n" : QByteArray(" ");
    }
    sheet.truncate(sheetSize - 1);
    return sheet + '\n';
}

void makeLibrary(QTemporaryDir const& folder)
{
    Words words;
    for (int number = 0; number < madeSheets; ++number) {
        QFile file(folder.filePath(u"sheet-%1.md"_s.arg(number)));
        if (!file.open(QIODevice::WriteOnly) || file.write(madeSheet(words, number)) < 0)
            qFatal("can't write %s", qPrintable(file.fileName()));
    }
}

double grepMilliseconds(QString const& query, QString const& folder)
{
    return milliseconds([&] {
        QProcess grep;
        grep.setStandardOutputFile(QProcess::nullDevice());
        grep.start(u"grep"_s, { u"-ric"_s, u"-F"_s, u"-e"_s, query, folder });
        if (!grep.waitForFinished(-1) || grep.exitStatus() != QProcess::NormalExit)
            qFatal("grep can't be run");
    });
}

void reportSearches(QList<Sheet> const& sheets, QString const& folder)
{
    std::shared_ptr<FoldedSheets const> folded;
    print("folding all, on a worker",
        measured([&](int) { return milliseconds([&] { folded = FoldedSheets::of(sheets); }); }));
    auto changed = sheets;
    changed.last().source += u"changed"_s;
    print("folding again when one has changed, likewise",
        measured([&](int) { return milliseconds([&] { (void)FoldedSheets::of(changed, folded); }); }));
    qsizetype source = 0;
    for (auto const& sheet : sheets)
        source += sheet.source.toUtf8().size();
    std::printf("what is kept                                 %8.2f MB   %.3f bytes a byte of source\n",
        static_cast<double>(folded->byteSize()) / 1e6,
        static_cast<double>(folded->byteSize()) / static_cast<double>(source));

    QByteArray const plain = QByteArray("restar innovation ").repeated(source / 18);
    for (auto const& query : { u"e"_s, u"nat"_s, u"restain"_s, u"RESTAIN zor"_s, u"no such words"_s }) {
        auto const bytes = *LibraryQuery::of(query).bytes;
        std::size_t found = 0;
        auto const here = measured([&](int) { return milliseconds([&] { found = folded->holding(bytes).size(); }); });
        auto const absent = bytes + '\1'; // to the end of the bytes
        auto const scan = measured([&](int) {
            return milliseconds([&] {
                if (memmem(plain.constData(), static_cast<std::size_t>(plain.size()), absent.constData(),
                        static_cast<std::size_t>(absent.size())))
                    qFatal("it is there");
            });
        });
        auto const grep = measured([&](int) { return grepMilliseconds(query, folder); });
        std::printf("\"%s\"%*s %6zu sheets %8.2f ms   %.2f times a plain scan (%.2f ms), %.3f times grep (%.0f ms)\n",
            qPrintable(query), static_cast<int>(14 - query.size()), "", found, here.median, here.median / scan.median,
            scan.median, here.median / grep.median, grep.median);
    }
}

// The reader's whole content over the sheets.
class Window {
public:
    explicit Window(QList<Sheet> const& sheets)
    {
        m_store.applyLoadedSheets(sheets, m_store.generation);
        m_view.resize(880, 640);
        m_view.show();
        handleAll();
    }

    LibraryStore& store() { return m_store; }
    SheetList& list() { return *m_view.findChild<SheetList*>(); }
    LibrarySearchField& field() { return *m_view.findChild<LibrarySearchField*>(); }

    void handleAll()
    {
        for (int round = 0; round < 10; ++round)
            QCoreApplication::processEvents();
    }

    // Until what `act` brings about is painted.
    template<typename Act>
    double untilPainted(Act act)
    {
        return milliseconds([&] {
            act();
            m_view.refresh();
            list().viewport()->repaint();
        });
    }

    // The longest turn of the main thread until the first search has its results.
    double longestTurnOfFirstSearch()
    {
        auto longest = milliseconds([&] { field().setText(u"no such words"_s); });
        while (!m_store.libraryResults.value().isEmpty())
            longest = std::max(longest, milliseconds([] { QCoreApplication::processEvents(); }));
        return std::max(longest, milliseconds([this] { handleAll(); }));
    }

    static void press(QWidget& widget, int key, QString const& text = {})
    {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, text);
        QCoreApplication::sendEvent(&widget, &event);
    }

private:
    FakeLibraryServices m_fakes;
    QtExecutor m_executor;
    LibraryStore m_store { m_fakes.services(m_fakes.defaults, m_fakes.events, m_executor),
        LibraryStore::RestoreFolder::no };
    NotificationCenter m_notifications;
    ReaderView m_view { m_store, { m_executor, m_fakes.clipboard, m_notifications, m_fakes.announcements }, [] { } };
};

void reportWindow(QList<Sheet> const& sheets)
{
    Window window(sheets);
    std::printf("%-44s %8.2f ms\n", "longest turn of the first search", window.longestTurnOfFirstSearch());
    constexpr std::array<char16_t, 7> letters { u'r', u'e', u's', u't', u'a', u'i', u'n' };
    print("a key in the field until the list is painted", measured([&](int repetition) {
        auto const letter = static_cast<std::size_t>(repetition) % letters.size();
        if (letter == 0)
            window.field().clear();
        window.handleAll();
        auto const text = QString(QChar(letters[letter]));
        return window.untilPainted([&] { Window::press(window.field(), 0, text); });
    }));
    print("the query cleared until the list is painted", measured([&](int) {
        window.field().setText(u"restain"_s);
        window.handleAll();
        return window.untilPainted([&] { window.field().clear(); });
    }));
    auto& list = window.list();
    for (auto const& [what, key] :
        { std::pair("an arrow key in the list", Qt::Key_Down), { "a page key", Qt::Key_PageDown } }) {
        print(what, measured([&, key = key](int) {
            window.handleAll();
            return window.untilPainted([&] { Window::press(list, key); });
        }));
    }
    print("a page by the scroll bar", measured([&](int) {
        return window.untilPainted(
            [&] { list.verticalScrollBar()->triggerAction(QAbstractSlider::SliderPageStepAdd); });
    }));
    print("a reload that changes one sheet", measured([&](int repetition) {
        auto changed = sheets;
        changed[madeSheets / 2].title = QString::number(repetition);
        window.handleAll();
        return window.untilPainted(
            [&] { window.store().applyLoadedSheets(std::move(changed), window.store().generation); });
    }));
    print("a reload that removes one sheet or adds it", measured([&](int repetition) {
        auto changed = sheets;
        if (repetition % 2 == 0)
            changed.remove(madeSheets / 2);
        window.handleAll();
        return window.untilPainted(
            [&] { window.store().applyLoadedSheets(std::move(changed), window.store().generation); });
    }));
}

}
}

int main(int argc, char* argv[])
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication const application(argc, argv);
    QTemporaryDir const folder;
    Quillory::makeLibrary(folder);
    Quillory::PosixFileSystem const files;
    auto const sheets = Quillory::loadLibrary(files, Quillory::QtPictureDecoder(), folder.path())
                            .value_or(QList<Quillory::Sheet>());
    Quillory::reportSearches(sheets, folder.path());
    Quillory::reportWindow(sheets);
    return 0;
}
