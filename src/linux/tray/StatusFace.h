#pragma once

#include "platform/StatusItemLook.h"

#include <QColor>
#include <QFont>
#include <QImage>
#include <QSize>

#include <array>

namespace Quillory {

// The picture that a tray shows of an item: square, since trays squeeze all else, in one ink, with a faint rim of the
// opposite ink, since nobody recolours pictures and the panel's ground may be either. GUI thread only.
class StatusFace {
public:
    // How the desktop draws its own items.
    struct Style {
        QFont font;
        bool isLightInk; // for a dark ground

        static Style ofDesktop();
        bool operator==(Style const&) const = default;
    };

    // The sides that trays ask for, and the one that they scale down, in pixels.
    static constexpr std::array sides { 16, 18, 22, 24, 32, 48, 64, 128 };

    static QImage drawn(StatusItemLook const& look, Style const& style, int side);
};

}
