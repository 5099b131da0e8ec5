#pragma once

#include "settings/SettingsSection.h"
#include "settings/SettingsState.h"

namespace Quillory {

class BarButton;

// Which folder is connected, and the way to another. GUI thread only.
class FolderSection : public SettingsSection {
    Q_OBJECT
public:
    // The store outlives it.
    FolderSection(LibraryStore& store, QWidget* parent);

    void refresh(SettingsState const& state);

private:
    QLabel* m_status;
    BarButton* m_choose;
};

}
