#pragma once

#include "library/LoadMemory.h"
#include "library/Sheet.h"

#include <QList>
#include <QStringList>

namespace Quillory {

// The result of reading the folder once.
struct LoadedLibrary {
    QList<Sheet> sheets;
    QStringList pictureFolders; // below the library folder, whether or not they exist
    LoadMemory memory;          // for the next load, which is due at once when something in it is under way
};

}
