#pragma once

#include "linux/tray/TrayIcon.h"

#include <QSystemTrayIcon>

#include <functional>

namespace Quillory {

// An icon in a tray of the X server that takes the program's own windows (XEmbed). To be made only while nobody watches
// for items on the bus: the toolkit looks for that once, at the first icon, and would never come back to windows.
class EmbeddedIcon final : public TrayIcon {
public:
    struct Operations {
        std::function<void()> clicked;
        std::function<void()> menuWanted;
    };

    explicit EmbeddedIcon(Operations operations);

    void show(StatusItemLook const& look, StatusFace::Style const& style) override;

private:
    QSystemTrayIcon m_icon;
};

}
