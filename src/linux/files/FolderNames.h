#pragma once

#include "platform/SystemError.h"

#include <QByteArray>

#include <expected>
#include <vector>

namespace Quillory {

// The names in an open folder, hidden ones included, each time from the start.
std::expected<std::vector<QByteArray>, SystemError> namesInFolder(int descriptor);

// False for a name that leads anywhere but to a direct child, and so out of the folder.
bool isNameOfChild(QByteArray const& name);

}
