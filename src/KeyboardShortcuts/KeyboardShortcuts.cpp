#include "KeyboardShortcuts/KeyboardShortcuts.h"

#include <algorithm>
#include <utility>

namespace Quillory {

KeyboardShortcuts::KeyboardShortcuts(ShortcutStorage& storage, HotKeyCenter& center, Executor& executor)
    : m_storage(storage)
    , m_center(center)
    , m_executor(executor)
    , m_storageChanges(storage.listen([this](ShortcutStorage::Change change, Name const& name) {
        if (change == ShortcutStorage::Change::coming)
            unregisterShortcut(name);
        else
            registerShortcut(name);
    }))
{
}

void KeyboardShortcuts::define(Name const& name)
{
    noteName(name);
    m_storage.storeInitialShortcut(name);
    m_definitions.push_back(m_executor.post([this, name] { registerShortcut(name); }));
}

void KeyboardShortcuts::setShortcut(std::optional<Shortcut> const& shortcut, Name const& name)
{
    noteName(name);
    m_storage.setShortcut(shortcut, name);
}

void KeyboardShortcuts::onKeyDown(Name const& name, Action action)
{
    listen(name, HotKeys::Phase::pressed, std::move(action));
}

void KeyboardShortcuts::onKeyUp(Name const& name, Action action)
{
    listen(name, HotKeys::Phase::released, std::move(action));
}

void KeyboardShortcuts::listen(Name const& name, HotKeys::Phase phase, Action action)
{
    noteName(name);
    m_handlers.push_back({ name, phase, std::move(action) });
    registerShortcut(name);
}

void KeyboardShortcuts::noteName(Name const& name)
{
    if (std::ranges::find(m_names, name.rawValue, &Name::rawValue) == m_names.end())
        m_names.push_back(name);
}

// The hot key stays as long as another name uses the same shortcut.
void KeyboardShortcuts::unregisterShortcut(Name const& name)
{
    auto const shortcut = getShortcut(name);
    bool const isShared = std::ranges::any_of(
        m_names, [&](Name const& other) { return other.rawValue != name.rawValue && getShortcut(other) == shortcut; });
    if (shortcut && !isShared)
        remove(*shortcut);
}

// Listened to, and yet without a hot key.
bool KeyboardShortcuts::isMissing(Name const& name) const
{
    auto const shortcut = getShortcut(name);
    bool const isListenedTo = std::ranges::any_of(
        m_handlers, [&](Handler const& handler) { return handler.name.rawValue == name.rawValue; });
    return isListenedTo && shortcut
        && std::ranges::find(m_registered, *shortcut, &Entry::shortcut) == m_registered.end();
}

void KeyboardShortcuts::registerShortcut(Name const& name)
{
    if (!isMissing(name))
        return;
    auto const shortcut = getShortcut(name);
    auto const on = [this, shortcut = *shortcut](
                        HotKeys::Phase phase) { return [this, shortcut, phase] { dispatch(shortcut, phase); }; };
    auto const hotKey = std::make_shared<HotKey>(m_center, shortcut->carbonKeyCode, shortcut->carbonModifiers,
        on(HotKeys::Phase::pressed), on(HotKeys::Phase::released));
    if (!m_center.registerHotKey(hotKey))
        return;
    hotKey->onRegistrationFailed = [this, shortcut = *shortcut] { remove(shortcut); };
    m_registered.push_back({ *shortcut, hotKey });
}

std::vector<Shortcut> KeyboardShortcuts::registerWhatIsTaken()
{
    std::vector<Shortcut> taken;
    for (auto const& name : m_names) {
        registerShortcut(name);
        if (isMissing(name) && m_center.isHeldByAnother(*getShortcut(name)))
            taken.push_back(*getShortcut(name));
    }
    return taken;
}

void KeyboardShortcuts::remove(Shortcut const& shortcut)
{
    std::erase_if(m_registered, [&](Entry const& entry) { return entry.shortcut == shortcut; });
}

void KeyboardShortcuts::dispatch(Shortcut const& shortcut, HotKeys::Phase phase) const
{
    // An action may add handlers.
    auto const handlers = m_handlers;
    for (auto const& handler : handlers) {
        if (handler.phase == phase && getShortcut(handler.name) == shortcut)
            handler.action();
    }
}

}
