#include "ProgramData.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace Quillory::ProgramData {

QString startersFolder()
{
    QDir const programs(QCoreApplication::applicationDirPath());
    auto const place = [&](char const* data) {
        return QDir::cleanPath(programs.absoluteFilePath(QString::fromUtf8(data) + QStringLiteral("/Starters")));
    };
    auto const installed = place(QUILLORY_DATA_FROM_PROGRAMS);
    return QFileInfo(installed).isDir() ? installed : place(QUILLORY_DATA_FROM_BUILT_PROGRAMS);
}

}
