#pragma once

#include "library/Sheet.h"

#include <QStringList>

namespace Quillory {

// The ids of the sheets that a person means by a name. It may be an id, a file's name without its extensions, or a title,
// in that order; and only where no sheet is called exactly so, the same canonically and without regard to case. More than
// one when the name is ambiguous, none when there is no such sheet.
QStringList idsOfSheetsCalled(QString const& name, QList<Sheet> const& sheets);

}
