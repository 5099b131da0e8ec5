#include "KeyboardShortcuts/RecorderSteps.h"

#include "KeyboardShortcuts/SpecialKey.h"

#include <any>
#include <utility>

namespace Quillory {

namespace {

using Alert = RecorderField::Alert;

constexpr bool holdsAny(ModifierFlags flags, ModifierFlags of)
{
    return (flags & of) != ModifierFlags::none;
}

// Without a modifier, as far as recording goes: locks, the keypad and the system's own bits say nothing.
bool isEmpty(std::optional<ModifierFlags> flags)
{
    constexpr auto meaningless = ModifierFlags { 0xFFFF } | ModifierFlags::capsLock | ModifierFlags::numericPad;
    return flags && (std::to_underlying(*flags) & ~std::to_underlying(meaningless)) == 0;
}

bool isTab(KeyStroke const& stroke)
{
    auto const flags = stroke.modifiers.value_or(ModifierFlags::command);
    return stroke.keyCode == SpecialKeys::code(SpecialKey::tab) && (isEmpty(flags) || flags == ModifierFlags::shift);
}

bool isDelete(KeyStroke const& stroke)
{
    auto const key = SpecialKeys::withCode(stroke.keyCode.value_or(0));
    return isEmpty(stroke.modifiers) && (key == SpecialKey::delete_ || key == SpecialKey::deleteForward);
}

// A plain letter would be lost to typing.
bool needsModifier(KeyStroke const& stroke)
{
    constexpr auto strong = ModifierFlags::command | ModifierFlags::option | ModifierFlags::control
        | ModifierFlags::help;
    return stroke.modifiers && !holdsAny(*stroke.modifiers, strong)
        && !SpecialKeys::isInFunctionKeySet(stroke.keyCode.value_or(0));
}

// Absent when the key has no code, or a modifier is held that a shortcut can't have.
std::optional<Shortcut> shortcutOf(KeyStroke const& stroke)
{
    if (!stroke.keyCode || !stroke.modifiers)
        return std::nullopt;
    auto const function = Shortcut::carbonModifiersOf(ModifierFlags::function);
    return Shortcut { *stroke.keyCode, Shortcut::carbonModifiersOf(*stroke.modifiers) & ~function };
}

Alert withBehavior(Alert alert, ConflictBehavior behavior)
{
    alert.buttons = behavior == ConflictBehavior::warn ? Alert::Buttons::okAndForce : Alert::Buttons::ok;
    return alert;
}

}

RecorderSteps::RecorderSteps(Services services, ShortcutName name, RecorderField& field)
    : m_services(std::move(services))
    , m_name(std::move(name))
    , m_field(field)
{
    m_shortcutsNameChangeObserver = m_services.notifications.observe(
        ShortcutStorage::shortcutByNameDidChange(), [this](Notification const& notification) {
            auto const& changed = std::any_cast<ShortcutName const&>(notification.userInfo.at(QStringLiteral("name")));
            if (changed.rawValue == m_name.rawValue)
                m_field.refresh();
        });
    m_layoutChanges = m_services.layout.observeChanges([this] { m_field.refresh(); });
}

RecorderSteps::~RecorderSteps()
{
    if (isRecording())
        setPaused(HotKeyCenter::Pause::off);
}

QString RecorderSteps::stringValue() const
{
    auto const shortcut = m_services.shortcuts.getShortcut(m_name);
    return shortcut ? m_services.text(*shortcut) : QString();
}

QString RecorderSteps::placeholder() const
{
    return isRecording() ? tr("Press shortcut…") : tr("Record shortcut");
}

void RecorderSteps::windowDidResignKey()
{
    m_canBecomeKey = false;
    blur();
}

bool RecorderSteps::focusGained()
{
    if (!m_canBecomeKey)
        return false;
    if (isRecording())
        return true;
    m_state = Recording {};
    setPaused(HotKeyCenter::Pause::on);
    m_field.startMonitor();
    m_field.refresh();
    return true;
}

void RecorderSteps::blur()
{
    if (!isRecording())
        return;
    m_state = Idle {};
    m_field.stopMonitor();
    setPaused(HotKeyCenter::Pause::off);
    m_field.refresh();
    m_field.giveUpFocus();
}

void RecorderSteps::setPaused(HotKeyCenter::Pause pause)
{
    m_services.center.setPaused(pause);
    m_services.notifications.post(
        { recorderActiveStatusDidChange(), { { QStringLiteral("isActive"), pause == HotKeyCenter::Pause::on } } });
}

void RecorderSteps::mouseWentUp(Where where)
{
    if (where == Where::outside)
        blur();
}

RecorderSteps::Answer RecorderSteps::keyWentDown(KeyStroke const& stroke)
{
    if (!isRecording())
        return Answer::passOn;
    if (stroke.kind == KeyStroke::Kind::modifier)
        return Answer::swallow;
    if (isTab(stroke)) {
        blur();
        return Answer::passOn;
    }
    auto const shortcut = shortcutOf(stroke);
    if (isEmpty(stroke.modifiers) && stroke.keyCode == SpecialKeys::code(SpecialKey::escape))
        blur();
    else if (isDelete(stroke))
        clear();
    else if (needsModifier(stroke) || !shortcut)
        m_field.beep();
    else
        judge(*shortcut, Check::validation);
    return Answer::swallow;
}

void RecorderSteps::judge(Shortcut const& shortcut, Check first)
{
    for (auto check = first; check != Check::none; check = Check { std::to_underlying(check) + 1 }) {
        auto const alert = objection(shortcut, check);
        if (!alert)
            continue;
        blur();
        m_state = Alerting { shortcut, check };
        m_field.showAlert(*alert);
        return;
    }
    accept(shortcut);
}

void RecorderSteps::alertClosed(AlertAnswer answer)
{
    auto const* const alerting = std::get_if<Alerting>(&m_state);
    if (!alerting)
        return;
    auto const [shortcut, objection] = *alerting;
    m_state = Idle {};
    if (answer == AlertAnswer::force)
        judge(shortcut, Check { std::to_underlying(objection) + 1 });
    else
        m_field.takeFocus();
}

std::optional<Alert> RecorderSteps::objection(Shortcut const& shortcut, Check check) const
{
    switch (check) {
    case Check::validation: {
        auto const validated = validateShortcut ? validateShortcut(shortcut) : std::expected<void, QString>();
        return validated ? std::nullopt : std::optional(Alert { validated.error(), {} });
    }
    case Check::menuItem:
        return menuItemObjection(shortcut);
    case Check::disallowed:
        if (conflictPolicy.disallowed == ConflictBehavior::allow || !m_services.center.isImpossible(shortcut))
            return std::nullopt;
        return withBehavior({ tr("This shortcut can’t be registered: the keyboard lacks one of its keys."), {} },
            conflictPolicy.disallowed);
    case Check::system:
        return systemObjection(shortcut);
    case Check::anotherProgram:
        if (!m_services.center.isHeldByAnother(shortcut))
            return std::nullopt;
        return Alert { tr("Another program holds this shortcut."),
            tr("Quillory can have it once that program lets it go. Until then, choose another one.") };
    case Check::none:
        break;
    }
    return std::nullopt;
}

std::optional<Alert> RecorderSteps::menuItemObjection(Shortcut const& shortcut) const
{
    bool const isHeldAlready = shortcut == m_services.shortcuts.getShortcut(m_name);
    if (isHeldAlready || conflictPolicy.menuItem == ConflictBehavior::allow)
        return std::nullopt;
    auto const menu = m_services.mainMenu();
    auto const* const item = MenuItem::takenBy(shortcut, menu, m_services.layout);
    if (!item)
        return std::nullopt;
    return withBehavior(
        { tr("Quillory itself uses this shortcut for “%1”.").arg(item->title), {} }, conflictPolicy.menuItem);
}

// One that the desktop holds at this moment can't be had, however much the user insists.
std::optional<Alert> RecorderSteps::systemObjection(Shortcut const& shortcut) const
{
    bool const isListed = conflictPolicy.systemShortcut != ConflictBehavior::allow
        && shortcut.isTakenBySystem(m_services.system.symbolicHotKeys());
    if (!isListed)
        return std::nullopt;
    bool const isHeld = m_services.center.isHeldByAnother(shortcut);
    return withBehavior({ tr("Your desktop uses this shortcut already."),
                            tr("Its shortcuts can be changed in the keyboard settings of the desktop.") },
        isHeld ? ConflictBehavior::block : conflictPolicy.systemShortcut);
}

void RecorderSteps::accept(Shortcut const& shortcut)
{
    store(shortcut);
    blur();
}

void RecorderSteps::clear()
{
    store(std::nullopt);
    blur();
}

void RecorderSteps::store(std::optional<Shortcut> const& shortcut)
{
    m_services.shortcuts.setShortcut(shortcut, m_name);
    onChange(shortcut);
}

}
