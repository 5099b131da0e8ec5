#include "text/Scalars.h"

#include <QChar>

#include <algorithm>

namespace Quillory {

qsizetype scalarCount(QStringView text)
{
    auto const* units = text.utf16();
    qsizetype pairs = 0;
    for (qsizetype i = 1; i < text.size(); ++i)
        pairs += (units[i - 1] & 0xFC00) == 0xD800 && (units[i] & 0xFC00) == 0xDC00;
    return text.size() - pairs;
}

bool isWhiteSpace(char32_t scalar)
{
    return QChar::isSpace(scalar);
}

bool isControl(char32_t scalar)
{
    auto const category = QChar::category(scalar);
    return category == QChar::Other_Control || category == QChar::Other_Format;
}

bool isBlank(QStringView text)
{
    // No white space lies above U+FFFF, so units will do.
    return std::ranges::all_of(text, [](QChar unit) { return isWhiteSpace(unit.unicode()); });
}

}
