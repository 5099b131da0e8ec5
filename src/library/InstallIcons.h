#pragma once

#include "library/InstallResult.h"
#include "library/ShortcutSheet.h"
#include "platform/FileSystem.h"

#include <QList>
#include <QString>

namespace Quillory {

// Copies the icons that a sheet refers to from beside its source into the folder `icons` of the library, which is made
// if need be. Nothing is made for a sheet without icons. Safe on any thread.
QList<InstallResult> installIcons(
    FileSystem const& files, ShortcutSheet const& sheet, QString const& source, QString const& library);

}
