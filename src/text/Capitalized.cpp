#include "text/Capitalized.h"

#include <QList>

namespace Quillory {

namespace {

bool separatesWords(char32_t scalar)
{
    return QChar::isSpace(scalar) || scalar == U'-';
}

}

QString capitalized(QString const& text)
{
    QString result;
    bool isFirst = true;
    for (char32_t const scalar : text.toLower().toUcs4()) {
        char32_t const shown = isFirst ? QChar::toTitleCase(scalar) : scalar;
        result += QString::fromUcs4(&shown, 1);
        isFirst = separatesWords(scalar);
    }
    return result;
}

}
