// Rendering to attributed text. Markdown against cmark-gfm's HTML renderer on the same tree, for sheets of several
// shapes; the largest legal structured sheet at three widths, alone and with laying out what is on screen, which is one
// step of a live resize once the sheet is prepared. Run it with --benchmark_repetitions=9 and compare medians of one run.

#include "SampleSheets.h"
#include "rendering/MarkdownRenderer.h"
#include "rendering/PreparedShortcuts.h"
#include "textlayout/FontTextMeasure.h"
#include "textlayout/TextLayout.h"

#include <benchmark/benchmark.h>

#include <cmark-gfm-core-extensions.h>
#include <cmark-gfm.h>

#include <QGuiApplication>
#include <QPalette>

#include <array>
#include <cstdlib>

namespace Quillory {
namespace {

constexpr double textSize = 16;

QByteArray prose()
{
    QByteArray const sentence = "What is told in a sheet goes on for some words and then comes to its end. ";
    return (sentence.repeated(6).trimmed() + "\n\n").repeated(largestSheet / (sentence.size() * 6 + 1));
}

QByteArray manyLines()
{
    return QByteArray("a\n\n").repeated(700'000);
}

QByteArray manyTargets()
{
    return QByteArray("`code` in line, ").repeated(100'000).replace(", ", "\n\n");
}

QByteArray tables()
{
    auto const row = QByteArray("| cell `x` ").repeated(6) + "|\n";
    return row + QByteArray("|-").repeated(6) + "|\n" + row.repeated(largestSheet / row.size() - 2);
}

cmark_node* parse(cmark_parser* parser, QByteArray const& source)
{
    for (auto const* name : { "table", "strikethrough", "tasklist" })
        cmark_parser_attach_syntax_extension(parser, cmark_find_syntax_extension(name));
    cmark_parser_feed(parser, source.constData(), static_cast<std::size_t>(source.size()));
    return cmark_parser_finish(parser);
}

void html(benchmark::State& state, QByteArray const& source)
{
    cmark_gfm_core_extensions_ensure_registered();
    auto* const parser = cmark_parser_new(CMARK_OPT_SMART);
    auto* const root = parse(parser, source);
    for (auto _ : state) {
        auto* const text = cmark_render_html(root, CMARK_OPT_DEFAULT, cmark_parser_get_syntax_extensions(parser));
        benchmark::DoNotOptimize(text);
        std::free(text); // NOLINT(cppcoreguidelines-no-malloc): the library's allocator
    }
    cmark_node_free(root);
    cmark_parser_free(parser);
    state.SetBytesProcessed(state.iterations() * source.size());
}

void attributed(benchmark::State& state, QByteArray const& source)
{
    auto const parsed = ParsedMarkdown::parsingUtf8(source);
    for (auto _ : state) {
        auto rendered = MarkdownRenderer::render(parsed, QString(), {}, textSize);
        benchmark::DoNotOptimize(rendered);
    }
    state.SetBytesProcessed(state.iterations() * source.size());
}

void structured(benchmark::State& state)
{
    auto const sheet = largestStructuredSheet();
    PreparedShortcuts const prepared(sheet, {}, textSize, FontTextMeasure(FontSet::ofDesktop()));
    auto const width = static_cast<double>(state.range(0));
    for (auto _ : state) {
        auto rendered = prepared.render(width);
        benchmark::DoNotOptimize(rendered);
    }
}

void resizeStep(benchmark::State& state)
{
    auto const sheet = largestStructuredSheet();
    auto const fonts = FontSet::ofDesktop();
    PreparedShortcuts const prepared(sheet, {}, textSize, FontTextMeasure(fonts));
    auto width = static_cast<double>(state.range(0));
    for (auto _ : state) {
        width += 0.25; // always another width, as while dragging
        auto const rendered = prepared.render(width);
        TextLayout layout(rendered.text, width, fonts, ColorSet::fromPalette(QPalette()));
        layout.layOutVisible(0, 700);
        benchmark::DoNotOptimize(layout.height());
    }
}

BENCHMARK(structured)->Arg(400)->Arg(900)->Arg(2200)->Unit(benchmark::kMillisecond);
BENCHMARK(resizeStep)->Arg(400)->Arg(900)->Arg(2200)->Unit(benchmark::kMillisecond);

void registerSheets()
{
    static std::array<std::pair<char const*, QByteArray>, 6> const sheets { {
        { "ordinary 10 KB", ordinarySheet(10 * 1024) },
        { "ordinary 2 MiB", ordinarySheet(largestSheet) },
        { "prose 2 MiB", prose() },
        { "700,000 lines", manyLines() },
        { "100,000 targets", manyTargets() },
        { "table 2 MiB", tables() },
    } };
    for (auto const& [name, source] : sheets) {
        auto const add = [&](std::string const& kind, void (*function)(benchmark::State&, QByteArray const&)) {
            benchmark::RegisterBenchmark((kind + name).c_str(), function, source)->Unit(benchmark::kMillisecond);
        };
        add("html/", html);
        add("attributed/", attributed);
    }
}

}
}

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication const application(argc, argv);
    Quillory::registerSheets();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
