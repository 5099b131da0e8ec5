#include "ProgramData.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace Quillory::ProgramData {

namespace {

// From the folder of this program, as installed if that is there, else as built.
QString place(char const* installed, char const* built)
{
    QDir const folder(QCoreApplication::applicationDirPath());
    auto const from = [&](char const* path) {
        return QDir::cleanPath(folder.absoluteFilePath(QString::fromUtf8(path)));
    };
    return QFileInfo::exists(from(installed)) ? from(installed) : from(built);
}

}

QString startersFolder()
{
    return place(QUILLORY_DATA_FROM_PROGRAM "/Starters", QUILLORY_DATA_FROM_BUILT_PROGRAM "/Starters");
}

QString command()
{
    return place(QUILLORY_COMMAND_FROM_PROGRAM, QUILLORY_COMMAND_FROM_BUILT_PROGRAM);
}

}
