#pragma once

#include "settings/SettingsSection.h"
#include "settings/SettingsState.h"

class QSlider;

namespace Quillory {

class CheckRow;

// Learning Mode and the text's size. GUI thread only.
class ReaderSection : public SettingsSection {
    Q_OBJECT
public:
    // The store outlives it.
    ReaderSection(LibraryStore& store, QWidget* parent);

    void refresh(SettingsState const& state);

private:
    CheckRow* m_learningMode;
    QSlider* m_textSize;
    QLabel* m_textSizeLabel;
};

}
