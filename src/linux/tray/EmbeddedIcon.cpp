#include "linux/tray/EmbeddedIcon.h"

#include <QIcon>
#include <QPixmap>

#include <utility>

namespace Quillory {

namespace {

QIcon iconOf(StatusItemLook const& look, StatusFace::Style const& style)
{
    QIcon icon;
    for (int const side : StatusFace::sides)
        icon.addPixmap(QPixmap::fromImage(StatusFace::drawn(look, style, side)));
    return icon;
}

}

// The second press of a double click is one of two clicks.
EmbeddedIcon::EmbeddedIcon(Operations operations)
{
    auto const activated = [operations = std::move(operations)](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick)
            operations.clicked();
        else if (reason == QSystemTrayIcon::Context)
            operations.menuWanted();
    };
    // Queued, since a click may end the icon.
    QObject::connect(&m_icon, &QSystemTrayIcon::activated, &m_icon, activated, Qt::QueuedConnection);
}

void EmbeddedIcon::show(StatusItemLook const& look, StatusFace::Style const& style)
{
    m_icon.setIcon(iconOf(look, style));
    m_icon.setToolTip(look.toolTip);
    m_icon.setVisible(true);
}

}
