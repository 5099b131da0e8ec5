#pragma once

#include <QString>
#include <QStringView>

namespace Quillory {

// Characters that do something without being seen: controls but tab and line breaks, the controls of text direction,
// and those that Unicode lets a font ignore. Joiners, variation selectors and tags that belong to the picture or letter
// before them are none, since they are seen by what they do.
bool hasHiddenCharacters(QStringView text);

// The text with a visible mark in the place of each of them, unit for unit. A mark has no direction. `text` as it is where
// there are none.
QString withMarksOfHiddenCharacters(QString text);

}
