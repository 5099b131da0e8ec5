#pragma once

#include <QString>
#include <QStringView>

#include <compare>

namespace Quillory {

// Order by the Unicode scalar values of the canonically normalised (NFC) texts. No locale, no numeric collation.
std::strong_ordering compareText(QStringView a, QStringView b);

// Whether two texts are canonically equivalent.
bool canonicallyEqual(QStringView a, QStringView b);

// The form in which canonically equivalent texts are the same string, for use as a key.
QString canonicalForm(QString const& text);

}
