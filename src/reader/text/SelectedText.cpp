#include "reader/text/SelectedText.h"

namespace Quillory {

namespace {

// Every cell ends in a line feed, the last of its row as well.
QString withJoinedCells(AttributedText const& text, TextRange range)
{
    auto string = text.string().sliced(range.location, range.length);
    auto const runs = text.paragraphRuns();
    for (auto run = static_cast<std::size_t>(text.paragraphRunAt(range.location)); run + 1 < runs.size(); ++run) {
        if (runs[run].end() >= range.end())
            break;
        auto const isCell = [&](std::size_t each) {
            auto const& block = text.paragraphStyle(runs[each]).block;
            return block && block->widths == TableBlock::Widths::automatic;
        };
        if (!isCell(run) || !isCell(run + 1))
            continue;
        auto const cell = text.tableCell(runs[run]);
        auto const next = text.tableCell(runs[run + 1]);
        if (cell.table == next.table && cell.row == next.row && cell.column != next.column)
            string[runs[run].end() - 1 - range.location] = u'\t';
    }
    return string;
}

}

QString selectedText(AttributedText const& text, TextRange range)
{
    auto const string = withJoinedCells(text, range);
    QString result;
    result.reserve(range.length);
    for (auto run = text.runAt(range.location); run < std::ssize(text.runs()); ++run) {
        auto const part = text.runs()[static_cast<std::size_t>(run)];
        if (part.location >= range.end())
            break;
        auto const start = std::max(part.location, range.location);
        auto const end = std::min(part.location + part.length, range.end());
        auto const& attributes = text.attributes(part);
        if (!attributes.attachment && !attributes.isGap)
            result += QStringView(string).sliced(start - range.location, end - start);
    }
    return result;
}

}
