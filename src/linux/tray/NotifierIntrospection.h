#pragma once

#include <QString>

namespace Quillory::NotifierIntrospection {

// What the objects of a status item have, for programs that ask before they call.
QString item();
QString menu();

}
