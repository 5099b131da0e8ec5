#include "linux/freedesktop/FlatpakSandbox.h"

#include <QFile>

namespace Quillory {

bool isInFlatpakSandbox()
{
    return QFile::exists(QStringLiteral("/.flatpak-info"));
}

}
