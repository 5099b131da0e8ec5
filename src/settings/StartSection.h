#pragma once

#include "platform/Autostart.h"
#include "settings/SettingsSection.h"

namespace Quillory {

class CheckRow;
class LibraryStore;

// Whether the program starts with the desktop, looked at again whenever its window comes to the front: the desktop's own
// settings, or another program, may have changed it. GUI thread only.
class StartSection : public SettingsSection {
    Q_OBJECT
public:
    // Both outlive it; the store tells what went wrong.
    StartSection(Autostart& autostart, LibraryStore& store, QWidget* parent);

protected:
    bool event(QEvent* event) override;

private:
    void ask(Autostart::State wanted);
    void refresh();

    Autostart& m_autostart;
    LibraryStore& m_store;
    CheckRow* m_switch;
};

}
