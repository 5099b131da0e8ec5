#pragma once

#include "library/Sheet.h"

#include <QList>
#include <QStringList>

namespace Quillory {

// What one reading of the folder gave.
struct LoadedLibrary {
    QList<Sheet> sheets;
    QStringList pictureFolders; // below the library folder, whether or not they exist
};

}
