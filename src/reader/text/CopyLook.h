#pragma once

#include <QString>

namespace Quillory {

// The state of a copy button as it is told: its symbol, its help (also shown under the pointer) and its accessibility value.
struct CopyLook {
    enum class Symbol { documents, checkmark };

    static constexpr qsizetype spokenCharacters = 50; // of code: enough to know it by, not more than one listens to

    Symbol symbol = Symbol::documents;
    QString help;
    QString value;

    static CopyLook of(bool copied, bool learningModeEnabled);

    // "Copy " and what is copied, the latter up to so many characters.
    static QString label(QString const& text);
    static QString label(QString const& text, qsizetype characters);
};

}
