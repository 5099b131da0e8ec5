#include "updates/views/CheckForUpdatesView.h"

namespace Quillory {

CheckForUpdatesView::CheckForUpdatesView(UpdateController& updates, QWidget* parent)
    : QPushButton(parent)
    , m_updates(updates)
    , m_checking(updates.isChecking.addNotifier([this] { refresh(); }))
    , m_available(updates.updateAvailable.addNotifier([this] { refresh(); }))
    , m_canCheck(updates.canCheckForUpdates.addNotifier([this] { refresh(); }))
{
    connect(this, &QPushButton::clicked, this, [this] { m_updates.checkForUpdates(); });
    refresh();
}

void CheckForUpdatesView::refresh()
{
    bool const isChecking = m_updates.isChecking;
    setText(isChecking                  ? tr("Checking for Updates…")
            : m_updates.updateAvailable ? tr("Update available…")
                                        : tr("Check for Updates…"));
    setEnabled(!isChecking && m_updates.canCheckForUpdates);
}

}
