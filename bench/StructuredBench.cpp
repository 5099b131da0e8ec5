// Decoding and validating a structured sheet against the JSON parser alone, for the two shapes of the largest legal
// sheet: 2,000 entries in 2 MiB, most of it text or most of it shortcuts.

#include "library/ShortcutSheet.h"

#include <benchmark/benchmark.h>

#include <nlohmann/json.hpp>

#include <QByteArrayList>

#include <cstdlib>

namespace Quillory {
namespace {

constexpr qsizetype largestSheet = 2 * 1024 * 1024;
constexpr int sections = 10;
constexpr int entriesEach = 200;

QByteArray sheetOf(QByteArray const& text, QByteArray const& shortcuts)
{
    QByteArrayList sectionList;
    for (int section = 0; section < sections; ++section) {
        QByteArrayList entries;
        for (int entry = 0; entry < entriesEach; ++entry) {
            auto const id = QByteArray::number(section) + '.' + QByteArray::number(entry);
            entries.append(R"({"id":")" + id + R"(","title":"Entry )" + id + R"(","text":")" + text
                + R"(","shortcuts":[)" + shortcuts + "]}");
        }
        auto const id = QByteArray::number(section);
        sectionList.append(
            R"({"id":")" + id + R"(","title":"Section )" + id + R"(","entries":[)" + entries.join(',') + "]}");
    }
    auto const sheet = R"({"schemaVersion":1,"title":"Largest","sections":[)" + sectionList.join(',') + "]}";
    auto const blanks = largestSheet - sheet.size();
    if (blanks < 0 || !ShortcutSheet::decode(sheet))
        std::abort();
    return sheet + QByteArray(blanks, ' ');
}

QByteArray const& sheetOfTexts()
{
    static QByteArray const sheet = sheetOf(QByteArray("Se\xC3\xB1or, copies what is marked. ").repeated(31), {});
    return sheet;
}

QByteArray const& sheetOfShortcuts()
{
    static QByteArray const sheet = [] {
        auto const steps = QByteArrayList(5, R"({"modifiers":["shift","command"],"key":"k"})").join(',');
        return sheetOf({}, QByteArrayList(4, R"({"steps":[)" + steps + "]}").join(','));
    }();
    return sheet;
}

void parserAlone(benchmark::State& state, QByteArray const& sheet)
{
    for (auto _ : state) {
        auto document = nlohmann::json::parse(sheet.begin(), sheet.end());
        benchmark::DoNotOptimize(document);
    }
}

// The least that the parser can do: it reads the document and keeps nothing.
void parserKeepingNothing(benchmark::State& state, QByteArray const& sheet)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(nlohmann::json::accept(sheet.begin(), sheet.end()));
}

void decodeAndValidate(benchmark::State& state, QByteArray const& sheet)
{
    for (auto _ : state) {
        auto decoded = ShortcutSheet::decode(sheet);
        benchmark::DoNotOptimize(decoded);
    }
}

BENCHMARK_CAPTURE(parserAlone, texts, sheetOfTexts())->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(parserKeepingNothing, texts, sheetOfTexts())->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(decodeAndValidate, texts, sheetOfTexts())->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(parserAlone, shortcuts, sheetOfShortcuts())->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(parserKeepingNothing, shortcuts, sheetOfShortcuts())->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(decodeAndValidate, shortcuts, sheetOfShortcuts())->Unit(benchmark::kMillisecond);

}
}

BENCHMARK_MAIN();
