#include "textlayout/CodeWidth.h"

#include "text/HiddenCharacters.h"
#include "textlayout/ParagraphLayout.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace Quillory {

namespace {

constexpr std::size_t linesLaidOut = 8;
constexpr char16_t firstIdeograph = u'\u2E80';
constexpr char16_t endOfIdeographs = u'\uF900'; // with the surrogates, of which two make one character
constexpr double columnsOfIdeograph = 2.2; // emoji are a little wider than two letters

struct CodeLine {
    TextRange range;
    double beside = 0; // what the style keeps free
    double bound = 0; // of its width, with what is beside it
};

// Letters may stand further apart than their widths say.
double roomy(double width)
{
    return width * LayoutContext::kerningShare + LayoutContext::kerningSlack;
}

double boundOfMixed(LayoutContext const& context, AttributedText::Run const& run, QStringView text, double column)
{
    auto const shown = withMarksOfHiddenCharacters(text.toString());
    QStringView const line = shown;
    auto const tabStop = ParagraphLayout::tabColumns * column;
    double width = 0;
    for (qsizetype index = 0; index < line.size(); ++index) {
        auto const letter = line[index];
        if (letter == u'\t')
            width = (std::floor(width / tabStop) + 1) * tabStop;
        else if (letter.unicode() < 0x7F)
            width += column;
        else if (letter.isHighSurrogate())
            width += columnsOfIdeograph * column;
        else if (letter.unicode() >= firstIdeograph && letter.unicode() < endOfIdeographs)
            width += letter.isLowSurrogate() ? 0 : columnsOfIdeograph * column;
        else
            width += context.letterWidth(run, line.sliced(index, 1));
    }
    return roomy(width);
}

double boundOf(LayoutContext const& context, AttributedText::Run const& run, QStringView line)
{
    auto const& metrics = context.metrics(run);
    auto const column = static_cast<double>(std::ranges::max(metrics.asciiWidths));
    // Without an early exit, so that the compiler looks at many letters at once.
    auto isPlain = true;
    for (auto const letter : line)
        isPlain &= static_cast<char16_t>(letter.unicode() - u' ') < metrics.asciiWidths.size();
    return isPlain ? static_cast<double>(line.size()) * column : boundOfMixed(context, run, line, column);
}

// The lines with the largest bounds, the largest first, and one more for what no other line exceeds.
class WidestLines {
public:
    void note(CodeLine const& line)
    {
        if (m_lines.size() > linesLaidOut && line.bound <= m_lines.back().bound)
            return;
        m_lines.insert(std::ranges::upper_bound(m_lines, line.bound, std::greater<>(), &CodeLine::bound), line);
        if (m_lines.size() > linesLaidOut + 1)
            m_lines.pop_back();
    }
    std::vector<CodeLine> const& lines() const { return m_lines; }

private:
    std::vector<CodeLine> m_lines;
};

WidestLines widestLines(LayoutContext const& context)
{
    auto const& text = context.text();
    auto const runs = text.runs();
    std::size_t run = 0;
    WidestLines widest;
    for (auto const styled : text.paragraphRuns()) {
        auto const& style = text.paragraphStyle(styled);
        if (style.wrapping != ParagraphStyle::Wrapping::atContainer)
            continue;
        // On the left as much is kept free at the end as at the start.
        auto const beside = 2 * std::max(style.headIndent, style.firstLineHeadIndent) - std::min(style.tailIndent, 0.0);
        auto location = styled.location;
        for (auto const line : QStringView(text.string()).sliced(location, styled.length).tokenize(u'\n')) {
            while (run + 1 < runs.size() && runs[run + 1].location <= location)
                ++run;
            widest.note({ { location, line.size() }, beside, beside + boundOf(context, runs[run], line) });
            location += line.size() + 1;
        }
    }
    return widest;
}

}

double codeWidth(LayoutContext const& context, double enough)
{
    auto const widest = widestLines(context);
    double width = 0;
    for (std::size_t number = 0; number < widest.lines().size(); ++number) {
        auto const& [range, beside, bound] = widest.lines()[number];
        if (bound <= width)
            break;
        if (bound > enough || number == linesLaidOut)
            return std::max(width, std::ceil(bound));
        ParagraphLayout const line(
            context, { range }, LayoutContext::unlimitedWidth, ParagraphLayout::Breaks::betweenWords);
        // A line that ends at the very edge would wrap.
        width = std::max(width, std::ceil(line.widestWidth() + beside) + 1);
    }
    return width;
}

}
