#include "textlayout/ColumnDemands.h"

#include "textlayout/ParagraphLayout.h"
#include "textlayout/TextUnits.h"

#include <algorithm>
#include <cmath>

namespace Quillory {

namespace {

constexpr std::size_t cellsLaidOut = 200; // over all columns, at most
constexpr std::size_t cellsLaidOutOfColumn = 8;
constexpr std::size_t paragraphsLaidOut = 16; // of one cell
constexpr double narrowestColumn = 8; // characters: shorter words aren't broken even where the table gets too wide
constexpr char16_t firstIdeograph = u'\u2E80'; // from here on lines break between characters
constexpr double columnsOfTab = 8;

// The greatest widths of a cell, without its padding.
struct CellWidths {
    double word = 0; // without a break between blanks
    double line = 0;
    double letter = 0; // of an ordinary one
};

// Adds up the widths of letters. Asks for cells in the order of the text.
class LetterWidths {
public:
    explicit LetterWidths(LayoutContext const& context)
        : m_context(context)
    {
    }

    CellWidths of(TextRange range)
    {
        auto const runs = m_context.text().runs();
        while (m_run + 1 < runs.size() && runs[m_run + 1].location <= range.location)
            ++m_run;
        m_line = m_word = 0;
        m_widths = { .letter = m_context.metrics(runs[m_run]).averageWidth };
        for (auto run = m_run; run < runs.size() && runs[run].location < range.end(); ++run) {
            auto const from = std::max(runs[run].location, range.location);
            auto const to = std::min(runs[run].location + runs[run].length, range.end());
            add(runs[run], QStringView(m_context.text().string()).sliced(from, to - from));
        }
        return m_widths;
    }

private:
    void add(AttributedText::Run const& run, QStringView letters)
    {
        auto const& metrics = m_context.metrics(run);
        for (qsizetype index = 0; index < letters.size(); ++index) {
            auto const letter = letters[index];
            auto const ascii = static_cast<std::size_t>(letter.unicode()) - u' ';
            if (letter == u' ') {
                m_line += metrics.asciiWidths[0];
                m_word = 0;
            } else if (ascii < metrics.asciiWidths.size()) {
                advance(metrics.asciiWidths[ascii]);
            } else if (letter == u'\n' || letter == QChar::LineSeparator) {
                m_line = m_word = 0;
            } else if (letter == u'\t') {
                m_line += columnsOfTab * metrics.asciiWidths[0];
                m_word = 0;
            } else {
                auto const isPair = index + 1 < letters.size() && letter.isHighSurrogate();
                advance(m_context.letterWidth(run, letters.sliced(index, isPair ? 2 : 1)));
                index += isPair ? 1 : 0;
                if (letter >= firstIdeograph)
                    m_word = 0;
            }
        }
    }

    void advance(double width)
    {
        m_line += width;
        m_word += width;
        m_widths.word = std::max(m_widths.word, m_word);
        m_widths.line = std::max(m_widths.line, m_line);
    }

    LayoutContext const& m_context;
    std::size_t m_run = 0;
    double m_line = 0;
    double m_word = 0;
    CellWidths m_widths;
};

// The widest cells of a column by one measure, and what no other cell exceeds.
class Widest {
public:
    void note(std::size_t cell, double width, std::size_t most)
    {
        if (m_cells.size() == most && (most == 0 || width <= m_cells.back().width)) {
            m_rest = std::max(m_rest, width);
            return;
        }
        m_cells.insert(std::ranges::upper_bound(m_cells, width, std::greater<>(), &Noted::width), { cell, width });
        if (m_cells.size() > most) {
            m_rest = std::max(m_rest, m_cells.back().width);
            m_cells.pop_back();
        }
    }

    struct Noted {
        std::size_t cell = 0;
        double width = 0;
    };
    std::vector<Noted> const& cells() const { return m_cells; }
    double rest() const { return m_rest; }

private:
    std::vector<Noted> m_cells; // the widest first
    double m_rest = 0;
};

std::optional<CellWidths> laidOutWidths(LayoutContext const& context, TextRange range)
{
    auto const starts = textUnitStarts(context.text(), range, TableUnits::none);
    if (starts.size() > paragraphsLaidOut + 1)
        return {};
    CellWidths widths;
    for (std::size_t unit = 0; unit + 1 < starts.size(); ++unit) {
        TextRange paragraph { starts[unit], static_cast<qsizetype>(starts[unit + 1]) - starts[unit] };
        if (context.text().string()[paragraph.end() - 1] == u'\n')
            --paragraph.length;
        ParagraphLayout const lines(
            context, { paragraph }, LayoutContext::unlimitedWidth, ParagraphLayout::Breaks::betweenWords);
        widths.word = std::max(widths.word, lines.narrowestWidth());
        widths.line = std::max(widths.line, lines.widestWidth());
    }
    return widths;
}

}

std::vector<ColumnDemand> columnDemands(
    LayoutContext const& context, std::span<CellToMeasure const> cells, std::size_t columns)
{
    struct Column {
        Widest words, lines;
        CellWidths widths;
        double padding = 0;
        bool isEmpty = true;
    };
    std::vector<Column> measured(columns);
    auto const most = std::min(cellsLaidOutOfColumn, cellsLaidOut / columns);
    LetterWidths letters(context);
    for (std::size_t cell = 0; cell < cells.size(); ++cell) {
        auto& column = measured[static_cast<std::size_t>(cells[cell].column)];
        auto const widths = letters.of(cells[cell].range);
        column.words.note(cell, widths.word, most);
        column.lines.note(cell, widths.line, most);
        column.widths.letter = std::max(column.widths.letter, widths.letter);
        column.padding = std::max(column.padding, 2 * cells[cell].padding);
        column.isEmpty = false;
    }

    std::vector<ColumnDemand> demands;
    for (auto& column : measured) {
        if (column.isEmpty) {
            demands.emplace_back();
            continue;
        }
        column.widths.word = column.words.rest();
        column.widths.line = column.lines.rest();
        auto const layOut = [&](Widest const& widest, double CellWidths::* measure) {
            for (auto const& noted : widest.cells()) {
                auto const laidOut = laidOutWidths(context, cells[noted.cell].range);
                column.widths.*measure = std::max(column.widths.*measure, laidOut ? (*laidOut).*measure : noted.width);
            }
        };
        layOut(column.words, &CellWidths::word);
        layOut(column.lines, &CellWidths::line);
        // So much wider that cells like the widest are known to fit before they are laid out.
        auto const roomy = [&column](double width) {
            return column.padding + std::ceil(width * LayoutContext::kerningShare + LayoutContext::kerningSlack);
        };
        ColumnDemand demand { .narrowest = roomy(column.widths.word), .widest = roomy(column.widths.line) };
        demand.floor = std::min(demand.narrowest, column.padding + narrowestColumn * column.widths.letter);
        demands.push_back(demand);
    }
    return demands;
}

}
