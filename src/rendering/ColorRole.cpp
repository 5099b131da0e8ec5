#include "rendering/ColorRole.h"

namespace Quillory {

QLatin1StringView colorRoleName(ColorRole role)
{
    switch (role) {
    case ColorRole::label:
        return QLatin1StringView("labelColor");
    case ColorRole::secondaryLabel:
        return QLatin1StringView("secondaryLabelColor");
    case ColorRole::quaternaryLabel:
        return QLatin1StringView("quaternaryLabelColor");
    case ColorRole::separator:
        return QLatin1StringView("separatorColor");
    case ColorRole::codeBackground:
        return QLatin1StringView("codeBackground");
    case ColorRole::functionKey:
        return QLatin1StringView("function");
    case ColorRole::controlKey:
        return QLatin1StringView("control");
    case ColorRole::optionKey:
        return QLatin1StringView("option");
    case ColorRole::shiftKey:
        return QLatin1StringView("shift");
    case ColorRole::commandKey:
        return QLatin1StringView("command");
    case ColorRole::plainKey:
        return QLatin1StringView("key");
    }
    Q_UNREACHABLE();
}

}
