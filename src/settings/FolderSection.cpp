#include "settings/FolderSection.h"

#include "reader/BarButton.h"

#include <QLabel>

namespace Quillory {

FolderSection::FolderSection(LibraryStore& store, QWidget* parent)
    : SettingsSection(tr("Local cheat sheet folder"), parent)
    , m_status(addText({}))
    , m_choose(BarButton::withText(tr("Choose or reconnect folder…"),
          tr("Choose your cheat sheet folder or restore access to an existing folder"), BarButton::Look::framed,
          card()))
{
    addRow(m_choose);
    addText(
        tr("Top-level .md and .quillory.json files are shown. Reading never changes your sheets."), Look::secondary);
    connect(m_choose, &BarButton::clicked, this, [this, &store] { store.chooseFolder(window()->winId()); });
}

void FolderSection::refresh(SettingsState const& state)
{
    m_status->setText(state.folderStatus);
    m_choose->setEnabled(state.canAskForFolder);
}

}
