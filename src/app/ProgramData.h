#pragma once

#include <QString>

namespace Quillory::ProgramData {

// The sheets that the program offers to install. Installed or built, it finds them from where it stands itself, so that
// a whole prefix can be moved.
QString startersFolder();

// The program that users and desktops start, which becomes this one.
QString command();

}
