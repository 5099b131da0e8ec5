#include "presentation/PresentationCoordinator.h"

#include "input/ModifierGesturePermission.h"

#include <utility>

namespace Quillory {

PresentationCoordinator::PresentationCoordinator(LibraryStore& store, Services services, PanelSurface& panel)
    : m_store(store)
    , m_services(std::move(services))
    , m_panel(panel)
    , m_items(store, m_services.statusBar, m_services.updates,
          { [this] { toggle(); }, [this] { showSelection(); }, m_services.quit })
    , m_modifierMonitor(m_services.executor,
          ModifierGestureMonitor::Operations::of(m_services.modifierEvents, m_services.permission, m_services.keys))
{
    using Self = PresentationCoordinator;
    bindShortcuts();
    m_modifierMonitor.began = weakly(&Self::gestureBegan);
    m_modifierMonitor.ended = weakly(&Self::gestureEnded);
    m_store.modifierGestureChanged = weakly(&Self::refreshGesture);
    refreshGesture();
    m_store.pinsChanged = weakly(&Self::rebuildPins);
    m_store.filePickerWillPresent = weakly(&Self::stay);
    m_items.observeUpdates();
    rebuildPins();
    observe();
}

void PresentationCoordinator::bindShortcuts()
{
    using Self = PresentationCoordinator;
    auto& shortcuts = m_services.shortcuts;
    shortcuts.onKeyUp(ShortcutName::toggleQuillory(), weakly(&Self::toggle));
    shortcuts.onKeyDown(ShortcutName::peekQuillory(), weakly(&Self::peekKeyDown));
    shortcuts.onKeyUp(ShortcutName::peekQuillory(), weakly(&Self::peekKeyUp));
}

void PresentationCoordinator::observe()
{
    using Self = PresentationCoordinator;
    auto& session = m_services.session;
    m_observations.push_back(session.observeDidWake(weakly(&Self::woke)));
    m_observations.push_back(m_services.workspace.observeActivation(weakly(&Self::applicationActivated)));
    m_observations.push_back(session.observeWillSleep(weakly(&Self::endPeek)));
    m_observations.push_back(session.observeSessionDidResignActive(weakly(&Self::endPeek)));
}

// Notices a permission that came or went while the program runs; asks nobody for it.
void PresentationCoordinator::refreshGesture()
{
    m_store.gesturePermissionGranted.assignAs<PresentationCoordinator>(
        ModifierGesturePermission::isGranted(m_services.permission));
    m_modifierMonitor.configure(m_store.modifierGesture.value(), m_store.gesturePermissionGranted.value());
}

void PresentationCoordinator::toggle()
{
    if (isPickerOnScreen())
        return;
    // A panel that is minimized looks closed to the user.
    if (m_presentation == Presentation::closed || m_panel.isMinimized())
        open();
    else
        close();
}

void PresentationCoordinator::open()
{
    if (isPickerOnScreen())
        return;
    if (m_presentation == Presentation::closed)
        m_previousApp = m_services.workspace.frontmostApplication();
    m_panel.dismissTooltips();
    savePanelFrame();
    clearPeek();
    m_store.reload();
    m_presentation = Presentation::resident;
    m_panel.show(presence());
}

void PresentationCoordinator::close()
{
    if (isPickerOnScreen())
        return;
    m_panel.dismissTooltips();
    savePanelFrame();
    clearPeek();
    m_presentation = Presentation::closed;
    // Asked before the panel goes: the window manager hands the front on by itself as soon as a window is hidden.
    auto const before = front();
    // Before the user sees the panel go, and types.
    m_services.shortcuts.yieldKeyboard();
    m_panel.orderOut();
    restorePreviousApp(before);
}

// A panel that is up, also for a peek, stays as it is and comes to the front.
void PresentationCoordinator::showSelection()
{
    if (m_presentation == Presentation::closed || m_panel.isMinimized())
        open();
    else
        m_panel.makeKeyAndOrderFront();
}

void PresentationCoordinator::windowWillClose()
{
    m_panel.dismissTooltips();
    savePanelFrame();
    clearPeek();
    m_presentation = Presentation::closed;
    restorePreviousApp(front());
    m_services.shortcuts.yieldKeyboard();
}

PresentationCoordinator::Front PresentationCoordinator::front() const
{
    return isThisApplication(m_services.workspace.frontmostApplication()) ? Front::ours : Front::theirs;
}

void PresentationCoordinator::restorePreviousApp(Front front)
{
    if (front == Front::theirs)
        return; // another application has taken the front meanwhile, and keeps it
    if (isThisApplication(m_previousApp))
        return;
    if (m_previousApp)
        m_services.workspace.activate(*m_previousApp);
}

void PresentationCoordinator::peekKeyDown()
{
    if (isPeeking())
        return;
    if (isPickerOnScreen())
        return;
    auto const peek = m_services.shortcuts.getShortcut(ShortcutName::peekQuillory());
    if (!peek)
        return;
    // One combination for both is the toggle, however long it is held.
    if (m_services.shortcuts.getShortcut(ShortcutName::toggleQuillory()) == peek)
        return;
    beginPeek(Presentation::keyPeek,
        PeekHold(PeekHold::Keys { static_cast<std::uint16_t>(peek->carbonKeyCode), peek->modifiers() }));
}

void PresentationCoordinator::peekKeyUp()
{
    if (isGesturePeek())
        return;
    resetAndClosePeek();
}

void PresentationCoordinator::gestureBegan(ModifierFlags flags, std::uint16_t keyCode)
{
    if (isPeeking())
        return;
    if (isPickerOnScreen())
        return;
    beginPeek(Presentation::gesturePeek, PeekHold(PeekHold::Keys { keyCode, flags }));
}

void PresentationCoordinator::gestureEnded()
{
    if (!isGesturePeek())
        return;
    resetAndClosePeek();
}

void PresentationCoordinator::peek(std::optional<ModifierFlags> held)
{
    if (!m_verbs.begins(m_services.executor.now()) || isPeeking())
        return;
    if (isPickerOnScreen())
        return;
    beginPeek(Presentation::keyPeek, PeekHold(held));
}

void PresentationCoordinator::endRequestedPeek()
{
    m_verbs.ends(m_services.executor.now());
    peekKeyUp();
}

void PresentationCoordinator::beginPeek(Presentation peek, PeekHold const& hold)
{
    bool const wasClosed = std::exchange(m_presentation, peek) == Presentation::closed;
    m_previousApp = m_services.workspace.frontmostApplication();
    m_hold = hold;
    m_store.peekModifiers.assignAs<PresentationCoordinator>(m_hold.modifiers());
    if (wasClosed) {
        m_store.reload();
        m_panel.show(presence());
    }
    applyPeekLevel();
    m_store.reload();
    m_panel.makeKeyAndOrderFront();
    m_panel.focusReader();
    pollPeek();
}

void PresentationCoordinator::pollPeek()
{
    m_peekTask = m_services.executor.after(peekPoll, [this] { lookAtPeek(); });
}

void PresentationCoordinator::lookAtPeek()
{
    if (!isPeeking())
        return;
    auto const now = m_services.executor.now();
    auto const verdict = m_hold.look(m_services.peekKeys.known(m_hold.keyCode()), now);
    if (verdict != PeekHold::Verdict::held) {
        resetAndClosePeek();
        if (verdict == PeekHold::Verdict::letGo)
            m_verbs.keysAreUp(now);
        return;
    }
    m_store.peekModifiers.assignAs<PresentationCoordinator>(m_hold.modifiers());
    pollPeek();
}

// The reset may end a gesture, and with it the peek.
void PresentationCoordinator::resetAndClosePeek()
{
    m_modifierMonitor.reset();
    if (isPeeking())
        close();
}

// The gesture counts as over before the monitor is reset, so that its end is nobody's any more.
void PresentationCoordinator::clearPeek()
{
    m_peekTask.end();
    if (isPeeking()) {
        m_presentation = Presentation::resident;
        m_verbs.isCutOff(m_services.executor.now());
    }
    m_modifierMonitor.reset();
    m_store.peekModifiers.assignAs<PresentationCoordinator>(ModifierFlags::none);
    applyPeekLevel();
}

void PresentationCoordinator::endPeek()
{
    resetAndClosePeek();
}

void PresentationCoordinator::woke()
{
    m_modifierMonitor.reset();
    refreshGesture();
    m_store.reload();
}

void PresentationCoordinator::applicationActivated(RunningApplication const& application)
{
    refreshGesture();
    if (isThisApplication(application))
        return;
    if (isPeeking())
        resetAndClosePeek();
    if (m_presentation != Presentation::closed)
        m_previousApp = application;
}

void PresentationCoordinator::stay()
{
    m_modifierMonitor.reset();
    clearPeek();
    m_panel.dismissTooltips();
}

void PresentationCoordinator::savePanelFrame()
{
    if (m_presentation != Presentation::closed)
        m_panel.savePanelFrame();
}

bool PresentationCoordinator::isPickerOnScreen() const
{
    return m_store.filePanel.value() != nullptr;
}

bool PresentationCoordinator::isThisApplication(std::optional<RunningApplication> const& application) const
{
    return application && application->bundleIdentifier == m_services.workspace.mainBundleIdentifier();
}

}
