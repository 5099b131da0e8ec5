#pragma once

#include "platform/InputPermission.h"

// Whether the gesture's keys can be watched.
namespace Quillory::ModifierGesturePermission {

// Either way is enough; both are always asked.
inline bool isGranted(InputPermission const& permission)
{
    bool const isTrusted = permission.isAccessibilityTrusted();
    bool const canListen = permission.canListenToEvents();
    return isTrusted || canListen;
}

}
