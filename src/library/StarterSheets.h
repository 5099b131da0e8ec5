#pragma once

#include <QString>
#include <QStringList>

namespace Quillory::StarterSheets {

// The sheets that come with the program, by the names that an installation takes, in the order in which they are
// offered.
QStringList names();

// Those that are chosen unless the user says otherwise.
QStringList selectedByDefault();

// The name of the file in the user's folder, and among the program's own.
QString targetName(QString const& name);

// Whether the target's name is that of a structured sheet, which may bring icons along.
bool isStructured(QString const& targetName);

// The name as shown to the user.
QString label(QString const& name);

}
