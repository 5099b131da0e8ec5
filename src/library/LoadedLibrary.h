#pragma once

#include "library/Sheet.h"

#include <QList>
#include <QStringList>

namespace Quillory {

// The result of reading the folder once.
struct LoadedLibrary {
    QList<Sheet> sheets;
    QStringList pictureFolders; // below the library folder, whether or not they exist
};

}
