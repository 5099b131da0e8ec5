#include "KeyboardShortcuts/HotKeyCenter.h"

#include <algorithm>
#include <utility>

namespace Quillory {

HotKeyCenter::HotKeyCenter(HotKeys& hotKeys, LocalKeyEvents& localKeyEvents, NotificationCenter& notifications)
    : m_service(hotKeys)
    , m_localKeyEvents(localKeyEvents)
    , m_openMenuObserver(notifications.observe(
          NotificationCenter::menuDidBeginTracking(), [this](auto const&) { setMenu(Menu::open); }))
    , m_closeMenuObserver(notifications.observe(
          NotificationCenter::menuDidEndTracking(), [this](auto const&) { setMenu(Menu::closed); }))
{
}

bool HotKeyCenter::registerHotKey(std::shared_ptr<HotKey> const& hotKey)
{
    if (!request(*hotKey))
        return false;
    m_hotKeys[hotKey->id] = hotKey;
    m_handlesEvents = true;
    applyMode();
    return true;
}

void HotKeyCenter::setPaused(Pause pause)
{
    m_paused = pause;
    updateMode();
}

void HotKeyCenter::setMenu(Menu menu)
{
    m_menu = menu;
    updateMode();
}

bool HotKeyCenter::request(HotKey& hotKey)
{
    if (!hotKey.combination)
        return false;
    auto registration = m_service.registerHotKey(hotKey.combination->keyCode, hotKey.combination->modifiers,
        [this, id = hotKey.id](HotKeys::Phase phase) { handleHotKey(id, phase); });
    if (!registration)
        return false;
    hotKey.eventHotKeyRef = std::move(*registration);
    return true;
}

// A handler may end hot keys: those alive at the beginning are kept until all handlers have returned.
std::vector<std::shared_ptr<HotKey>> HotKeyCenter::living() const
{
    std::vector<std::shared_ptr<HotKey>> hotKeys;
    for (auto const& [id, weak] : m_hotKeys) {
        if (auto hotKey = weak.lock())
            hotKeys.push_back(std::move(hotKey));
    }
    return hotKeys;
}

void HotKeyCenter::updateMode()
{
    auto const whileEnabled = m_menu == Menu::open ? Mode::menuOpen : Mode::normal;
    auto const mode = m_paused == Pause::on ? Mode::disabled : whileEnabled;
    if (std::exchange(m_mode, mode) != mode && m_handlesEvents)
        applyMode();
}

void HotKeyCenter::applyMode()
{
    if (m_mode == Mode::normal) {
        registerAll();
    } else {
        for (auto const& hotKey : living())
            hotKey->eventHotKeyRef.end();
    }
    if (m_mode != Mode::menuOpen)
        m_rawKeyEvents.end();
    else if (!m_rawKeyEvents.isActive())
        m_rawKeyEvents = m_localKeyEvents.observe([this](RawKeyEvent const& event) { return handleRawKey(event); });
}

void HotKeyCenter::registerAll()
{
    for (auto const& hotKey : living()) {
        if (hotKey->eventHotKeyRef.isActive() || request(*hotKey))
            continue;
        forget(hotKey->id);
        if (hotKey->onRegistrationFailed)
            hotKey->onRegistrationFailed();
    }
}

std::expected<void, HotKeys::Refusal> HotKeyCenter::probe(Shortcut const& shortcut) const
{
    auto const combination = shortcut.combination();
    if (!combination)
        return std::unexpected(HotKeys::Refusal { HotKeys::Refusal::Reason::unknownKey });
    return m_service.probe(combination->keyCode, combination->modifiers);
}

bool HotKeyCenter::isHeldByAnother(Shortcut const& shortcut) const
{
    auto const probed = probe(shortcut);
    return !probed && probed.error().reason == HotKeys::Refusal::Reason::taken;
}

bool HotKeyCenter::isImpossible(Shortcut const& shortcut) const
{
    auto const probed = probe(shortcut);
    return !probed && probed.error().reason != HotKeys::Refusal::Reason::taken;
}

void HotKeyCenter::handleHotKey(std::uint32_t id, HotKeys::Phase phase) const
{
    auto const entry = m_hotKeys.find(id);
    auto const hotKey = entry == m_hotKeys.end() ? nullptr : entry->second.lock();
    if (!hotKey || m_mode != Mode::normal)
        return;
    (phase == HotKeys::Phase::pressed ? hotKey->onKeyDown : hotKey->onKeyUp)();
}

LocalKeyEvents::Answer HotKeyCenter::handleRawKey(RawKeyEvent const& event) const
{
    using enum LocalKeyEvents::Answer;
    bool const isDown = event.kind == RawKeyEvent::Kind::down;
    if (isDown && event.repeat == RawKeyEvent::Repeat::yes)
        return passOn;
    auto const struck = Shortcut { event.keyCode, Shortcut::carbonModifiersOf(event.modifiers) }.combination();
    auto const hotKeys = living();
    auto const hotKey = std::ranges::find_if(hotKeys, [&](auto const& each) { return each->combination == struck; });
    if (hotKey == hotKeys.end())
        return passOn;
    (isDown ? (*hotKey)->onKeyDown : (*hotKey)->onKeyUp)();
    return swallow;
}

}
