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
    }
    Q_UNREACHABLE();
}

}
