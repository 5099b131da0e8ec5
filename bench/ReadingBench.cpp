// Reading sheets in the real reader: first and second show, choosing sheets of the largest size, pages, the end of the
// sheet, idle work, live resizing, find and memory. The stock rich-text view shows the same text
// beside it; what it can't show within minutes is given at 500 KB.
// Milliseconds of the main thread, painting included, on the offscreen platform unless QT_QPA_PLATFORM says otherwise.
//
//   quillory-bench-reading [WORD...]     only the measures whose names hold one of the words; the word "whole" shows the
//                                        stock view all of the largest sheet as well, which takes minutes

#include "Measure.h"
#include "SampleSheets.h"
#include "linux/qt/QtExecutor.h"
#include "reader/NativeReader.h"
#include "reader/ReaderView.h"
#include "rendering/MarkdownRenderer.h"
#include "support/FakeLibraryServices.h"

#include <QApplication>
#include <QScrollBar>
#include <QTextBrowser>
#include <QTextDocument>

#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <span>
#include <string_view>

namespace Quillory {
namespace {

using namespace Qt::StringLiterals;

constexpr QSize window { 880, 640 };
constexpr qsizetype largestStockSheet = 500 * 1024;

double median(std::vector<double> values)
{
    auto const middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

// Bytes that the program has asked for and not given back.
double megabytesInUse()
{
    auto const info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd) / 1e6;
}

Sheet markdownSheet(QByteArray const& source, QString const& id)
{
    return {
        .id = id, .title = id, .source = QString::fromUtf8(source), .parsed = ParsedMarkdown::parsingUtf8(source)
    };
}

class Reader {
public:
    Reader()
    {
        scroll().resize(window);
        scroll().show();
        QCoreApplication::processEvents();
    }
    ~Reader() { delete &scroll(); } // it would go on working while others are measured

    ReaderScrollView& scroll() const { return m_reader.scrollView(); }
    ReaderTextView& view() const { return scroll().textView(); }

    double show(Sheet const& sheet)
    {
        return frame([&] { m_reader.update(sheet); });
    }

    template<typename Work>
    double frame(Work work)
    {
        return milliseconds([&] {
            work();
            view().repaint();
        });
    }

    // How long each turn of the event loop took until all heights were known.
    std::vector<double> settle()
    {
        std::vector<double> turns { 0 };
        while (!view().isSettled())
            turns.push_back(milliseconds([] { QCoreApplication::processEvents(); }));
        return turns;
    }

private:
    QtExecutor m_executor;
    FakeLibraryServices m_services;
    NotificationCenter m_notifications;
    LibraryStore m_store { m_services.services(), LibraryStore::RestoreFolder::no };
    NativeReader m_reader { m_store, { m_executor, m_services.clipboard, m_notifications, m_services.announcements },
        [] { } };
};

double stockFirstFrame(QByteArray const& source)
{
    QTextBrowser browser;
    browser.resize(window);
    browser.show();
    QCoreApplication::processEvents();
    auto* const document = new QTextDocument(&browser);
    return milliseconds([&] {
        document->setMarkdown(QString::fromUtf8(source));
        browser.setDocument(document);
        browser.viewport()->repaint();
    });
}

enum class WholeForStock { no, yes };

void firstFrames(WholeForStock wholeForStock)
{
    for (auto const size : { qsizetype(10 * 1024), qsizetype(100 * 1024), largestSheet }) {
        auto const source = ordinarySheet(size);
        std::vector<double> first, second;
        for (int time = 0; time < 5; ++time) {
            Reader reader;
            reader.show(markdownSheet("# Other\n\nA sheet before.", u"other"_s));
            // Parsing is the library's work and done before; the stock view parses as it shows.
            auto const parsing = milliseconds([&] { ParsedMarkdown::parsingUtf8(source); });
            auto const sheet = markdownSheet(source, u"sheet"_s);
            first.push_back(parsing + reader.show(sheet));
            reader.settle();
            reader.show(markdownSheet("# Other\n\nA sheet before.", u"other"_s));
            second.push_back(reader.show(sheet));
        }
        auto const isShortened = size > largestStockSheet && wholeForStock == WholeForStock::no;
        auto const stockSource = isShortened ? ordinarySheet(largestStockSheet) : source;
        auto const stock = stockFirstFrame(stockSource);
        std::printf(
            "first frame %7.1f KB: %8.2f, stock at %5.1f KB %9.1f, ratio %6.1f; second show %6.2f, worst %6.2f\n",
            static_cast<double>(source.size()) / 1024, median(first), static_cast<double>(stockSource.size()) / 1024,
            stock, stock / median(first), median(second), std::ranges::max(second));
    }
}

void tell(char const* what, std::span<double const> times)
{
    std::printf("%s: median %6.2f, worst %6.2f of %zu\n", what, median({ times.begin(), times.end() }),
        std::ranges::max(times), times.size());
}

// Pages from the top, then the very end.
void readThrough(char const* name, Reader& reader)
{
    auto& view = reader.view();
    auto& bar = *reader.scroll().verticalScrollBar();
    std::vector<double> pages;
    for (int page = 0; page < 200 && bar.value() < bar.maximum(); ++page)
        pages.push_back(reader.frame([&] { bar.setValue(bar.value() + bar.pageStep()); }));
    tell(name, pages);

    auto const toEnd = reader.frame([&] { bar.setValue(bar.maximum()); });
    auto const text = view.rendered().text.string();
    auto const last = view.boundingRect({ text.size() - 1, 1 });
    std::printf("  to the end: %6.2f; the last line ends %.2f above the lower edge, the bar stands %d before its end\n",
        toEnd, view.scrollOrigin().y() + view.height() - last.bottom(), bar.maximum() - bar.value());
}

void shown(char const* name, Sheet const& sheet)
{
    Reader reader;
    auto const rendering = sheet.shortcuts
        ? 0
        : milliseconds([&] { MarkdownRenderer::render(*sheet.parsed, sheet.title, {}, 16); });
    auto const first = reader.show(sheet);
    std::printf("%s: first frame %6.2f, of which rendering takes %6.2f\n", name, first, rendering);
    readThrough("  pages before all heights are known", reader);
    reader.scroll().verticalScrollBar()->setValue(0);
    tell("  turns of the event loop until then", reader.settle());
    auto const height = reader.view().contentSize().height();
    readThrough("  pages after", reader);
    std::printf("  height %.2f, after reading through %.2f\n", height, reader.view().contentSize().height());

    std::vector<double> resizes;
    for (int step = 0; step < 40; ++step)
        resizes.push_back(reader.frame([&] { reader.scroll().resize(window.width() - 9 * step, window.height()); }));
    tell("  resize steps at the end", resizes);
    reader.scroll().verticalScrollBar()->setValue(0);
    resizes.clear();
    for (int step = 40; step > 0; --step)
        resizes.push_back(reader.frame([&] { reader.scroll().resize(window.width() - 9 * step, window.height()); }));
    tell("  resize steps at the top", resizes);
}

// The reader's whole content, as it is when a library has been loaded.
class Window {
public:
    explicit Window(QList<Sheet> const& sheets)
    {
        m_store.applyLoadedSheets(sheets, m_store.generation);
        m_view.resize(window);
        m_view.show();
        handleAll();
    }

    struct Selecting {
        double shown; // until the sheet's own text is painted
        double whole; // until none of it is missing
        double longestTurn; // of the event loop after the first frame
    };

    Selecting select(QString const& id, qsizetype length)
    {
        auto& view = *m_view.textView();
        Selecting times {};
        times.whole = milliseconds([&] {
            times.shown = milliseconds([&] {
                m_store.select(id);
                m_view.refresh();
                view.repaint();
            });
            while (view.rendered().text.length() != length)
                times.longestTurn = std::max(
                    times.longestTurn, milliseconds([] { QCoreApplication::processEvents(); }));
        });
        return times;
    }

    void handleAll()
    {
        do
            QCoreApplication::processEvents();
        while (!m_view.textView()->isSettled());
    }

private:
    QtExecutor m_executor;
    FakeLibraryServices m_fakes;
    NotificationCenter m_notifications;
    LibraryStore m_store { m_fakes.services(m_fakes.defaults, m_fakes.events, m_executor),
        LibraryStore::RestoreFolder::no };
    ReaderView m_view { m_store, { m_executor, m_fakes.clipboard, m_notifications, m_fakes.announcements }, [] { } };
};

QByteArray manyLinks()
{
    QByteArray source;
    for (int link = 0; source.size() < largestSheet - 100; ++link)
        source += "[link](https://example.org/" + QByteArray::number(link) + ") ";
    return source;
}

// From the choice of a sheet of the largest size, never shown before, to the text that is painted.
void selecting()
{
    auto const repeated = [](QByteArray const& piece) { return piece.repeated(largestSheet / piece.size()); };
    std::vector<std::pair<char const*, QByteArray>> const sources {
        { "ordinary", ordinarySheet(largestSheet - 1024) },
        { "short paragraphs", repeated("a\n\n") },
        { "inline code", repeated("`code`, ") },
        { "links", manyLinks() },
        { "one code block", "```\n" + repeated("git log --oneline --graph\n").chopped(8) + "\n```\n" },
        { "code blocks", repeated("```\nls -l\n```\n\n") },
        { "one line", repeated("word ") },
        { "other scripts", repeated("Приклад 例文 `λόγος` é\n\n") },
        { "small tables", repeated("| a | b |\n|---|---|\n| `c` | d |\n\n") },
        { "one table", "| a | b |\n|---|---|\n" + repeated("| `code` | what it does |\n").chopped(64) },
        { "list", repeated("- an item\n") },
    };
    for (auto const& [name, source] : sources) {
        std::vector<double> shown, whole, turns;
        auto const sheet = markdownSheet(source, u"sheet"_s);
        auto const length = MarkdownRenderer::render(*sheet.parsed, sheet.title, {}, 16).text.length();
        for (int time = 0; time < 10; ++time) {
            Window reader({ markdownSheet("# Other\n\nA sheet before.", u"other"_s), sheet });
            auto const times = reader.select(u"sheet"_s, length);
            shown.push_back(times.shown);
            whole.push_back(times.whole);
            turns.push_back(times.longestTurn);
        }
        std::printf("selecting 2 MiB, %-16s shown %6.2f, longest %6.2f; whole %6.2f; longest turn meanwhile %6.2f\n",
            name, median(shown), std::ranges::max(shown), median(whole), median(turns));
    }
}

void ordinaryPages()
{
    shown("ordinary 2 MiB", markdownSheet(ordinarySheet(largestSheet), u"ordinary"_s));
}

void manyLines()
{
    shown("700,000 lines", markdownSheet(QByteArray("a\n\n").repeated(largestSheet / 3), u"lines"_s));
}

void structured()
{
    Sheet sheet { .id = u"structured"_s, .title = u"Largest"_s };
    sheet.shortcuts = largestStructuredSheet();
    shown("structured, 2,000 entries", sheet);
}

void longTable()
{
    QByteArray source = "| Key | Does | When | Note |\n|---|---|---|---|\n";
    for (int row = 0; row < 5'000; ++row) {
        auto const number = QByteArray::number(row);
        source += "| `Ctrl+" + number + "` | what row " + number + " says"
            + QByteArray(", and then some more").repeated(row * 7 % 11) + " | in mode " + QByteArray::number(row % 9)
            + " | see é " + number + " |\n";
    }
    shown("table, 5,000 rows of 4", markdownSheet(source, u"table"_s));
}

// One match everywhere, one at the end alone, and none: the last two look through the whole sheet.
void finding()
{
    Reader reader;
    reader.show(markdownSheet(ordinarySheet(largestSheet) + "\n\nThe lonely Zürich.\n", u"finding"_s));
    reader.settle();
    auto& view = reader.view();
    for (auto const& query : { u"task"_s, u"lonely zurich"_s, u"no such words"_s }) {
        std::vector<double> steps, frames;
        for (int time = 0; time < 40; ++time) {
            bool const backwards = time % 2 == 1;
            reader.scroll().verticalScrollBar()->setValue(0);
            view.repaint();
            steps.push_back(milliseconds([&] { view.findNext(query, backwards); }));
            frames.push_back(milliseconds([&] { view.repaint(); }));
        }
        std::printf("find \"%s\" in 2 MiB\n", qPrintable(query));
        tell("  steps", steps);
        tell("  frames after them", frames);
    }
}

void memory()
{
    auto const source = ordinarySheet(largestSheet);
    auto inUse = megabytesInUse();
    auto const told = [&](char const* what) {
        auto const now = megabytesInUse();
        std::printf("  %-52s %7.2f MB\n", what, now - inUse);
        inUse = now;
    };
    std::printf("memory of a sheet of %.2f MB\n", static_cast<double>(source.size()) / 1e6);
    Reader reader;
    told("an empty reader");
    Sheet sheet { .id = u"sheet"_s, .title = u"sheet"_s, .source = QString::fromUtf8(source) };
    told("source");
    sheet.parsed = ParsedMarkdown::parsingUtf8(source);
    told("tree");
    auto rendered = MarkdownRenderer::render(*sheet.parsed, sheet.title, {}, 16);
    told("attributed text and targets");
    {
        TextLayout layout(rendered.text, 800, FontSet::ofDesktop(), ColorSet::fromPalette(QPalette()));
        layout.layOutVisible(0, 640);
        told("its layout");
        while (layout.makeSomeExact(0, std::chrono::milliseconds(100)).moreLeft) { }
        told("its layout, once all heights are known, on top");
    }
    rendered = {};
    told("all of that given back");
    reader.show(sheet);
    reader.settle();
    told("shown, settled, with the folded copy for searching");
    for (int other = 1; other < 10; ++other) {
        reader.show(markdownSheet(ordinarySheet(largestSheet), QString::number(other)));
        reader.settle();
    }
    told("nine more of that size visited, on top");
}

struct Measure {
    char const* name;
    void (*run)();
};

constexpr Measure measures[] { { "first", [] { firstFrames(WholeForStock::no); } }, { "selecting", selecting },
    { "pages", ordinaryPages }, { "lines", manyLines }, { "structured", structured }, { "table", longTable },
    { "find", finding }, { "memory", memory } };

}
}

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication const application(argc, argv);
    std::span const words(argv + 1, static_cast<std::size_t>(argc - 1));
    for (auto const& measure : Quillory::measures) {
        auto const isAsked = [&](char const* word) {
            return QLatin1StringView(measure.name).contains(QLatin1StringView(word));
        };
        if (words.empty() || std::ranges::any_of(words, isAsked))
            measure.run();
    }
    if (std::ranges::find(words, std::string_view("whole")) != words.end())
        Quillory::firstFrames(Quillory::WholeForStock::yes);
}
