#pragma once

#include <QString>

namespace Quillory {

// What a copy button tells: its symbol, its help (also shown under the pointer) and its accessibility value.
struct CopyLook {
    enum class Symbol { documents, checkmark };

    Symbol symbol = Symbol::documents;
    QString help;
    QString value;

    static CopyLook of(bool copied, bool learningModeEnabled);

    // "Copy " and what is copied, the latter up to so many characters.
    static QString label(QString const& text);
    static QString label(QString const& text, qsizetype characters);
};

}
