#pragma once

#include "linux/tray/NotifierValues.h"
#include "platform/StatusMenu.h"

#include <QDBusMessage>

#include <functional>
#include <optional>

namespace Quillory {

// com.canonical.dbusmenu for the menu of one status item. The tray draws the menu, perhaps from a layout that it asked for
// long ago, and need not tell when it opens or closes it: so it is made again whenever a tray is about to show it, and a
// row that was chosen counts only if the latest menu has it, enabled. GUI thread only.
class NotifierMenu {
public:
    struct Operations {
        std::function<StatusMenu()> menu;
        std::function<void(int number)> chosen; // never from within a call that needs an answer
        std::function<void(uint revision)> layoutUpdated; // sends the signal
    };

    static QString interface() { return QStringLiteral("com.canonical.dbusmenu"); }

    explicit NotifierMenu(Operations operations);

    // The arguments of the answer; absent for a method that there is not.
    std::optional<QVariantList> answer(QDBusMessage const& call);
    QVariantMap properties() const;

private:
    void rebuild();
    void announce();
    QVariantList layout(int parent, QStringList const& wanted);
    QVariantList groupProperties(QList<int> const& numbers, QStringList const& wanted) const;
    bool take(int number, QString const& event);
    StatusMenuRow const* row(int number) const;

    Operations m_operations;
    StatusMenu m_menu;
    uint m_revision = 1;
};

}
