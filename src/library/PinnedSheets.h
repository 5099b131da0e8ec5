#pragma once

#include "platform/UserDefaults.h"

#include <QStringList>

// The stored pins of all folders: sheet ids in pin order. What is damaged in the store is as if it were not there.
namespace Quillory::PinnedSheets {

QStringList stored(UserDefaults const& defaults, QString const& folder);

// Reads all folders back, puts `pins` in the place of this folder's and writes them.
void store(UserDefaults& defaults, QString const& folder, QStringList const& pins);

}
