#pragma once

#include "updates/UpdateController.h"

#include <QPushButton>

namespace Quillory {

// The button that looks for updates, or leads to the one that waits. GUI thread only.
class CheckForUpdatesView final : public QPushButton {
    Q_OBJECT
public:
    // The controller outlives it.
    explicit CheckForUpdatesView(UpdateController& updates, QWidget* parent = nullptr);

private:
    void refresh();

    UpdateController& m_updates;
    QPropertyNotifier m_checking;
    QPropertyNotifier m_available;
    QPropertyNotifier m_canCheck;
};

}
