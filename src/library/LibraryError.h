#pragma once

#include "platform/SystemError.h"

#include <QString>

namespace Quillory {

// Why a file that could be read is no sheet.
enum class LibraryError { tooLarge, encoding };

// For the user to read.
QString description(LibraryError error);
QString descriptionOfUnreadableFolder(SystemError const& error);

}
