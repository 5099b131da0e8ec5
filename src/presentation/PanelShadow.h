#pragma once

#include <QMargins>
#include <QRect>

class QPainter;

namespace Quillory {

// The soft shadow around a panel that floats, as if light came from above.
class PanelShadow {
public:
    // How far it reaches beyond the panel, in points.
    static constexpr QMargins margins { 24, 16, 24, 32 };

    // Around `panel`, whose corners are round. Nothing is drawn of what lies below the panel itself.
    static void paint(QPainter& painter, QRect const& panel);
};

}
