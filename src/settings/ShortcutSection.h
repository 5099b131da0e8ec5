#pragma once

#include "KeyboardShortcuts/recorder/Recorder.h"
#include "settings/SettingsSection.h"
#include "settings/SettingsState.h"

namespace Quillory {

// The two shortcuts that the user sets. GUI thread only.
class ShortcutSection : public SettingsSection {
    Q_OBJECT
public:
    ShortcutSection(Recorder::Services const& services, QWidget* parent);

    void refresh(SettingsState const& state);

private:
    QLabel* m_warning;
};

}
