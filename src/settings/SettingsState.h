#pragma once

#include "KeyboardShortcuts/KeyboardShortcuts.h"
#include "library/LibraryStore.h"

#include <QCoreApplication>

namespace Quillory {

// What the settings window shows at one moment, apart from its views. Equal states look the same.
struct SettingsState {
    Q_DECLARE_TR_FUNCTIONS(SettingsView)
public:
    enum class Gesture { off, allowed, setupNeeded };

    struct Pin {
        QString id;
        QString title;
        bool operator==(Pin const&) const = default;
    };

    QString folderStatus;
    bool canAskForFolder = true; // no file panel is open
    bool shortcutsMatch = false; // both are set, and to the same
    ModifierGesture modifierGesture = ModifierGesture::off;
    Gesture gesture = Gesture::off;
    QStringList gestureSteps; // none while it is off
    QList<Pin> pins;
    bool learningModeEnabled = false;
    double textSize = 0;

    static SettingsState of(LibraryStore const& store, KeyboardShortcuts const& shortcuts);

    QString learningModeHelp() const;
    QString textSizeLabel() const;

    bool operator==(SettingsState const&) const = default;
};

}
