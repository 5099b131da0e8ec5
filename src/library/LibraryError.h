#pragma once

#include <QString>

namespace Quillory {

// Why a file that could be read is no sheet.
enum class LibraryError { tooLarge, encoding };

// What the user reads.
QString description(LibraryError error);

}
