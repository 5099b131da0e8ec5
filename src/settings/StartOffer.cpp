#include "settings/StartOffer.h"

namespace Quillory {

namespace {

QString const offered = QStringLiteral("startOffered");

}

// A turn later: connecting a folder clears the message.
StartOffer::StartOffer(LibraryStore& store, UserDefaults& defaults, Executor& executor, Autostart const& autostart)
    : m_store(store)
    , m_defaults(defaults)
    , m_autostart(autostart)
    , m_folderChanges(store.folder.addNotifier([this, &executor] { m_task = executor.post([this] { offer(); }); }))
{
}

void StartOffer::offer()
{
    bool const isTold = m_defaults.get<bool>(offered).value_or(false);
    if (isTold || !m_store.folder.value() || m_store.message.value() || m_autostart.state() == Autostart::State::on)
        return;
    m_defaults.setValue(offered, true);
    m_store.showMessage(tr("Quillory can start with your desktop: turn it on in the settings."));
}

}
