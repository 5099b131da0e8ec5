#pragma once

#include "KeyboardShortcuts/recorder/Recorder.h"
#include "settings/SettingsSection.h"
#include "settings/SettingsState.h"

#include <functional>

namespace Quillory {

// The two shortcuts that the user sets. GUI thread only.
class ShortcutSection : public SettingsSection {
    Q_OBJECT
public:
    // `askDesktopAgain` is called only while the state allows it.
    ShortcutSection(Recorder::Services const& services, std::function<void()> const& askDesktopAgain, QWidget* parent);

    void refresh(SettingsState const& state);

private:
    QLabel* m_toggleBinding;
    QLabel* m_peekBinding;
    QLabel* m_warning;
    QLabel* m_desktopKeys;
    QWidget* m_askAgain;
};

}
