#pragma once

#include "library/Interpretation.h"
#include "library/Sheet.h"
#include "platform/SystemError.h"

#include <QString>

#include <optional>

namespace Quillory {

// Why a file that could be read is no sheet.
enum class LibraryError { tooLarge, encoding, overBudget, noSandbox };

// For the user to read.
QString description(LibraryError error);
std::optional<QString> description(Interpretation interpretation); // absent when it is complete
QString descriptionOfUnreadableFolder(SystemError const& error);

// Whether what the sheet shows was read before the error that it has.
bool showsLastReadable(Sheet const& sheet);

}
