#include "text/OneLine.h"

#include "text/Graphemes.h"

#include <algorithm>

namespace Quillory {

QString oneLine(QStringView text, qsizetype characters)
{
    auto line = firstGraphemes(text, characters).toString();
    if (line.size() < text.size()) {
        line = firstGraphemes(line, characters - 1).toString();
        line += u'…';
    }
    auto const breaksOrControls = [](QChar unit) {
        return unit.category() == QChar::Other_Control || unit.category() == QChar::Separator_Line
            || unit.category() == QChar::Separator_Paragraph;
    };
    std::ranges::replace_if(line, breaksOrControls, QChar(u' '));
    return line;
}

}
