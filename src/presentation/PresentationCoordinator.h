#pragma once

#include "KeyboardShortcuts/KeyboardShortcuts.h"
#include "input/ModifierGestureMonitor.h"
#include "library/LibraryStore.h"
#include "platform/Executor.h"
#include "platform/InputPermission.h"
#include "platform/KeyState.h"
#include "platform/Lifetime.h"
#include "platform/ModifierEvents.h"
#include "platform/PeekKeys.h"
#include "platform/SessionEvents.h"
#include "platform/StatusBar.h"
#include "platform/Workspace.h"
#include "presentation/MenuBarItems.h"
#include "presentation/PanelSurface.h"
#include "presentation/PeekHold.h"
#include "presentation/PeekVerbs.h"
#include "presentation/PresentationState.h"

#include <chrono>
#include <optional>
#include <vector>

namespace Quillory {

// Decides when the reader panel is on screen, and gives the keyboard back to where the user was when it goes.
// The panel is resident until it is dismissed, or a peek for as long as keys are held. Main thread only; everything
// handed in outlives it.
class PresentationCoordinator {
public:
    struct Services {
        KeyboardShortcuts& shortcuts;
        Workspace& workspace;
        SessionEvents& session;
        ModifierEvents& modifierEvents;
        InputPermission const& permission;
        KeyState const& keys;
        PeekKeys const& peekKeys;
        Executor& executor;
        StatusBar& statusBar;
        std::optional<MenuBarUpdates> updates; // absent where the program has no updater
        std::function<void()> quit;
    };

    // How often the keys of a peek are looked at, for the case that their release is never told.
    static constexpr std::chrono::milliseconds peekPoll { 30 };

    PresentationCoordinator(LibraryStore& store, Services services, PanelSurface& panel);
    PresentationCoordinator(PresentationCoordinator const&) = delete;
    PresentationCoordinator& operator=(PresentationCoordinator const&) = delete;

    // Requests of the user. Nothing happens while a file panel is open.
    void toggle();
    void open();
    void close();

    // A peek that no key of ours holds: another program asks for it, and for its end, for keys that it was told of.
    // `held` are the modifiers that are held meanwhile, where they are told; else those that are seen to be.
    void peek(std::optional<ModifierFlags> held = std::nullopt);
    void endRequestedPeek();

    // Makes a peek resident: its keys are needed for what comes up over the reader, a file panel or the settings.
    void stay();

    // The panel was moved or resized, and, its last word, closed by its close button.
    void windowDidMove() { savePanelFrame(); }
    void windowDidResize() { savePanelFrame(); }
    void windowWillClose();

    PresentationState state() const
    {
        return m_presentation == Presentation::closed ? PresentationState::closed : PresentationState::panel;
    }
    bool isPeeking() const { return m_presentation == Presentation::keyPeek || isGesturePeek(); }
    bool isGesturePeek() const { return m_presentation == Presentation::gesturePeek; }
    bool isPolling() const { return m_peekTask.isActive(); }
    std::optional<RunningApplication> const& previousApp() const { return m_previousApp; }

private:
    // A peek is ended by what began it: the keys of its shortcut or of another program, or the gesture.
    enum class Presentation { closed, resident, keyPeek, gesturePeek };

    // Whether this program had the front when the panel was about to go.
    enum class Front { ours, theirs };

    // A callback that calls `operation` for as long as this object lives, and nothing afterwards.
    template<typename... Arguments>
    auto weakly(void (PresentationCoordinator::*operation)(Arguments...))
    {
        return m_lifetime.guarded([this, operation](Arguments... arguments) { (this->*operation)(arguments...); });
    }

    void bindShortcuts();
    void observe();
    void refreshGesture();

    void peekKeyDown();
    void peekKeyUp();
    void gestureBegan(ModifierFlags flags, std::uint16_t keyCode);
    void gestureEnded();
    void beginPeek(Presentation peek, PeekHold const& hold);
    void pollPeek();
    void lookAtPeek();
    void resetAndClosePeek();
    void clearPeek();

    void woke();
    void endPeek();
    void applicationActivated(RunningApplication const& application);

    void showSelection();
    void rebuildPins() { m_items.rebuildPins(); }
    void savePanelFrame();
    void applyPeekLevel() { m_panel.applyPeekLevel(presence()); }
    PanelPresence presence() const { return isPeeking() ? PanelPresence::peek : PanelPresence::resident; }
    bool isPickerOnScreen() const;
    Front front() const;
    void restorePreviousApp(Front front);
    bool isThisApplication(std::optional<RunningApplication> const& application) const;

    LibraryStore& m_store;
    Services m_services;
    PanelSurface& m_panel;
    MenuBarItems m_items;
    Presentation m_presentation = Presentation::closed;
    std::optional<RunningApplication> m_previousApp; // where the keyboard goes back to
    PeekHold m_hold; // of the running peek
    PeekVerbs m_verbs;
    Registration m_peekTask;
    ModifierGestureMonitor m_modifierMonitor;
    Lifetime m_lifetime;
    std::vector<Registration> m_observations;
};

}
