#pragma once

#include "settings/SettingsServices.h"

#include <QCoreApplication>

namespace Quillory {

// What the settings window shows at one moment, apart from its views. Equal states look the same.
struct SettingsState {
    Q_DECLARE_TR_FUNCTIONS(SettingsView)
public:
    enum class Gesture { off, allowed, setupNeeded, impossible };

    struct Pin {
        QString id;
        QString title;
        bool operator==(Pin const&) const = default;
    };

    QString folderStatus;
    bool canAskForFolder = true; // no file panel is open
    bool shortcutsMatch = false; // both are set, and to the same
    // What the desktop has made of each shortcut, and of all of them; empty where nothing is to be said.
    QString toggleBinding;
    QString peekBinding;
    QString desktopKeys;
    bool canAskDesktopAgain = false;
    ModifierGesture modifierGesture = ModifierGesture::off;
    Gesture gesture = Gesture::off;
    QStringList gestureSteps; // none while it is off or impossible
    QList<Pin> pins;
    bool learningModeEnabled = false;
    double textSize = 0;
    KeyNames keyNames = KeyNames::symbols;

    static SettingsState of(SettingsServices const& services);

    QString learningModeHelp() const;
    QString textSizeLabel() const;

    bool operator==(SettingsState const&) const = default;
};

}
