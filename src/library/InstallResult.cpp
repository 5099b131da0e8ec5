#include "library/InstallResult.h"

#include <QCoreApplication>

namespace Quillory {

QString InstallResult::line() const
{
    switch (kind) {
    case Kind::created:
        return QCoreApplication::translate("Library", "Installed %1").arg(text);
    case Kind::skipped:
        return QCoreApplication::translate("Library", "Skipped existing %1").arg(text);
    case Kind::failed:
        return text;
    }
    Q_UNREACHABLE();
}

}
