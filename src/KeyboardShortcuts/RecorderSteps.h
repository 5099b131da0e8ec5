#pragma once

#include "KeyboardShortcuts/ConflictPolicy.h"
#include "KeyboardShortcuts/KeyboardShortcuts.h"
#include "KeyboardShortcuts/MenuItem.h"
#include "KeyboardShortcuts/RecorderField.h"
#include "platform/KeyStrokes.h"

#include <QCoreApplication>

#include <expected>
#include <functional>
#include <optional>
#include <variant>

namespace Quillory {

// What a shortcut recorder does, apart from its field: takes the next combination for a name while the field has the
// keyboard, refuses what can't work, and lets no hot key fire meanwhile. Main thread only.
class RecorderSteps {
    Q_DECLARE_TR_FUNCTIONS(Recorder)
public:
    using Answer = KeyStrokes::Answer;
    enum class AlertAnswer { refuse, force };
    enum class Where { inside, outside };

    // All outlive it.
    struct Services {
        KeyboardShortcuts& shortcuts;
        HotKeyCenter& center;
        NotificationCenter& notifications;
        KeyboardLayout& layout;
        SystemShortcuts const& system;
        std::function<QString(Shortcut const&)> text; // as the field shows it
        std::function<std::vector<MenuItem>()> mainMenu = [] { return std::vector<MenuItem>(); };
    };

    // Posted when recording starts and stops; "isActive" in its user info is a bool.
    static QString recorderActiveStatusDidChange()
    {
        return QStringLiteral("KeyboardShortcuts_recorderActiveStatusDidChange");
    }

    RecorderSteps(Services services, ShortcutName name, RecorderField& field);
    ~RecorderSteps();
    RecorderSteps(RecorderSteps const&) = delete;
    RecorderSteps& operator=(RecorderSteps const&) = delete;

    ConflictPolicy conflictPolicy;
    std::function<std::expected<void, QString>(Shortcut const&)> validateShortcut; // optional; the error is a reason
    std::function<void(std::optional<Shortcut> const&)> onChange = [](auto const&) { };

    // Empty without a shortcut.
    QString stringValue() const;
    QString placeholder() const;
    bool isRecording() const { return std::holds_alternative<Recording>(m_state); }

    // A field must not take the keyboard by itself when its window comes up.
    void windowDidBecomeKey() { m_canBecomeKey = true; }
    void windowDidResignKey();

    // False when the field should give the keyboard up again.
    bool focusGained();
    void focusLost() { blur(); }

    // Events of the monitor.
    Answer keyWentDown(KeyStroke const& stroke);
    void mouseWentUp(Where where);

    void alertClosed(AlertAnswer answer);
    void clear();

private:
    // What a shortcut has to pass, in order.
    enum class Check { validation, menuItem, disallowed, system, anotherProgram, none };

    struct Idle { };
    struct Recording { };
    struct Alerting {
        Shortcut shortcut;
        Check objection;
    };

    void blur();
    void setPaused(HotKeyCenter::Pause pause);
    void judge(Shortcut const& shortcut, Check first);
    std::optional<RecorderField::Alert> objection(Shortcut const& shortcut, Check check) const;
    std::optional<RecorderField::Alert> menuItemObjection(Shortcut const& shortcut) const;
    std::optional<RecorderField::Alert> systemObjection(Shortcut const& shortcut) const;
    void accept(Shortcut const& shortcut);
    void store(std::optional<Shortcut> const& shortcut);

    Services m_services;
    ShortcutName m_name;
    RecorderField& m_field;
    bool m_canBecomeKey = false;
    std::variant<Idle, Recording, Alerting> m_state;
    Registration m_shortcutsNameChangeObserver;
    Registration m_layoutChanges;
};

}
