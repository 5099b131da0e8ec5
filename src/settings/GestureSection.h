#pragma once

#include "settings/SettingsSection.h"
#include "settings/SettingsState.h"

#include <functional>

class QComboBox;

namespace Quillory {

class Disclosure;
class StatusLine;

// The modifier gesture: which one, how it goes, and whether the session lets the program see it. GUI thread only.
class GestureSection : public SettingsSection {
    Q_OBJECT
public:
    struct Actions {
        std::function<void()> setUp;
        std::function<void()> showApplication;
        std::function<void()> checkAgain;
    };

    // The store outlives it.
    GestureSection(LibraryStore& store, Actions const& actions, QWidget* parent);

    void refresh(SettingsState const& state);

private:
    void addPicker(LibraryStore& store);
    void addHowTo();
    void addAllowed();
    void addSetup(Actions const& actions);
    void addTroubleshooting();
    QWidget* makeButton(QString const& text, std::function<void()> const& action);

    QComboBox* m_picker = nullptr;
    QList<QLabel*> m_steps;
    QList<QWidget*> m_whenPossible;
    QList<QWidget*> m_whenImpossible;
    QList<QWidget*> m_whenOff;
    QList<QWidget*> m_whenOn;
    QList<QWidget*> m_whenAllowed;
    QList<QWidget*> m_whenSetupNeeded;
};

}
