#include "linux/tray/TrayMenu.h"

#include <utility>

namespace Quillory {

void TrayMenu::popUp(StatusMenu const& menu, QPoint place, std::function<void(int)> chosen)
{
    m_menu.reset();
    if (menu.isEmpty())
        return;
    m_menu = std::make_unique<QMenu>();
    for (auto const& row : menu) {
        if (row.isSeparator()) {
            m_menu->addSeparator();
            continue;
        }
        auto* const action = m_menu->addAction(QString(row.title).replace(u'&', QStringLiteral("&&")));
        action->setEnabled(row.isEnabled);
        if (!row.key.isEmpty())
            action->setShortcut(QKeySequence(QStringLiteral("Ctrl+") + row.key));
        // Queued, since what is chosen may end the item, or the program.
        QObject::connect(
            action, &QAction::triggered, m_menu.get(), [chosen, number = row.number] { chosen(number); },
            Qt::QueuedConnection);
    }
    m_menu->popup(place);
}

}
