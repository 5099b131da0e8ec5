#pragma once

#include "settings/SettingsSection.h"
#include "settings/SettingsState.h"

namespace Quillory {

class PinRow;

// The pinned sheets, each with the way to unpin it. GUI thread only.
class PinSection : public SettingsSection {
    Q_OBJECT
public:
    // The store outlives it.
    PinSection(LibraryStore& store, QWidget* parent);

    void refresh(SettingsState const& state);

private:
    void showPins(QList<SettingsState::Pin> const& pins);

    LibraryStore& m_store;
    QWidget* m_list;
    QLabel* m_whenNone;
    QLabel* m_whenAny;
    QList<SettingsState::Pin> m_pins;
    QList<PinRow*> m_rows;
};

}
