#include "rendering/Headings.h"

namespace Quillory {

namespace {

// The starts of all headings, until `look` returns false. Neighbours are one run, which is cut at line feeds.
template<typename Look>
void lookAtHeadings(AttributedText const& text, Look look)
{
    for (auto const run : text.paragraphRuns()) {
        if (!text.paragraphStyle(run).isHeading)
            continue;
        for (auto start = run.location; start < run.end();) {
            if (!look(start))
                return;
            auto const feed = text.string().indexOf(u'\n', start);
            start = feed < 0 ? run.end() : feed + 1;
        }
    }
}

}

std::optional<qsizetype> Headings::after(AttributedText const& text, qsizetype position)
{
    std::optional<qsizetype> found;
    lookAtHeadings(text, [&](qsizetype start) {
        if (start > position)
            found = start;
        return !found;
    });
    return found;
}

std::optional<qsizetype> Headings::before(AttributedText const& text, qsizetype position)
{
    std::optional<qsizetype> found;
    lookAtHeadings(text, [&](qsizetype start) {
        if (start < position)
            found = start;
        return start < position;
    });
    return found;
}

}
