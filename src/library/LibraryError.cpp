#include "library/LibraryError.h"

#include <QCoreApplication>

namespace Quillory {

QString description(LibraryError error)
{
    switch (error) {
    case LibraryError::tooLarge:
        return QCoreApplication::translate(
            "Library", "This sheet exceeds the 2 MiB limit. Open it in your editor to shorten it.");
    case LibraryError::encoding:
        return QCoreApplication::translate(
            "Library", "This sheet is not valid UTF-8. Save it as UTF-8 in your editor.");
    }
    Q_UNREACHABLE();
}

QString descriptionOfUnreadableFolder(SystemError const& error)
{
    return QCoreApplication::translate("Library", "Could not read the folder. Choose it again or refresh. %1")
        .arg(error.localizedDescription());
}

}
