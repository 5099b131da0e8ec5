#pragma once

#include "settings/SettingsSection.h"

namespace Quillory {

// The program itself. GUI thread only.
class AboutSection : public SettingsSection {
    Q_OBJECT
public:
    // `updates` stands above the version; null where there are no updates.
    AboutSection(QWidget* updates, QString const& versionText, QWidget* parent);
};

}
