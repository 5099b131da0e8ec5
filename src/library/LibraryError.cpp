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
    case LibraryError::overBudget:
        return QCoreApplication::translate("Library",
            "The sheets before this one take all the memory that is there for sheets. Move some of them to another "
            "folder.");
    case LibraryError::noSandbox:
        return QCoreApplication::translate("Library",
            "This sheet could not be read, since no process could be started for it. Close other programs and "
            "refresh.");
    }
    Q_UNREACHABLE();
}

std::optional<QString> description(Interpretation interpretation)
{
    switch (interpretation) {
    case Interpretation::complete:
        return std::nullopt;
    case Interpretation::underWay:
        return QCoreApplication::translate(
            "Library", "This sheet is still being read. It is shown as code until then.");
    case Interpretation::tookTooLong:
        return QCoreApplication::translate(
            "Library", "This sheet takes too long to read and is shown as code. Simplify it in your editor.");
    case Interpretation::crashed:
        return QCoreApplication::translate("Library",
            "Reading this sheet failed and it is shown as code. Look in your editor for what is unusual in it.");
    }
    Q_UNREACHABLE();
}

bool showsLastReadable(Sheet const& sheet)
{
    return sheet.error && !sheet.source.isEmpty() && sheet.error != description(sheet.interpretation);
}

QString descriptionOfUnreadableFolder(SystemError const& error)
{
    return QCoreApplication::translate("Library", "Could not read the folder. Choose it again or refresh. %1")
        .arg(error.localizedDescription());
}

}
