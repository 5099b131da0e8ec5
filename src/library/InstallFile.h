#pragma once

#include "library/InstallResult.h"
#include "platform/FileSystem.h"

#include <QByteArray>
#include <QString>

namespace Quillory {

// Puts a new file into a folder, whole or not at all, and never over an existing one: also a name that differs only in
// case or Unicode normalisation counts as existing. A process that dies in between leaves at most a hidden temporary
// file. Safe on any thread.
InstallResult installFile(
    FileSystem const& files, QString const& name, QByteArray const& bytes, QString const& directory);

}
