#include "KeyboardShortcuts/SessionHotKeys.h"

#include <utility>

namespace Quillory {

SessionHotKeys::SessionHotKeys(HotKeys& grabs, HotKeys& desktops, DesktopHotKeys& service)
    : m_grabs(grabs)
    , m_desktops(desktops)
    , m_service(service)
    , m_current(&serving())
    , m_changes(service.observeChanges([this] { follow(); }))
{
}

// Until the desktop has said that it has no such service nothing is grabbed.
HotKeys& SessionHotKeys::serving() const
{
    return m_service.state() == DesktopHotKeys::State::unavailable ? m_grabs : m_desktops;
}

void SessionHotKeys::follow()
{
    auto* const serving = &this->serving();
    if (std::exchange(m_current, serving) == serving)
        return;
    auto const hotKeys = m_hotKeys;
    for (auto const& hotKey : hotKeys) {
        hotKey->registration.end();
        if (std::exchange(hotKey->isDown, false))
            hotKey->handler(Phase::released);
        if (hotKey->isRegistered)
            (void)request(hotKey);
    }
}

std::expected<void, HotKeys::Refusal> SessionHotKeys::request(std::shared_ptr<HotKey> const& hotKey)
{
    auto registration = m_current->registerHotKey(
        hotKey->keyCode, hotKey->modifiers, [weak = std::weak_ptr(hotKey)](Phase phase) {
            auto const pressed = weak.lock();
            pressed->isDown = phase == Phase::pressed;
            pressed->handler(phase);
        });
    if (!registration)
        return std::unexpected(registration.error());
    hotKey->registration = *std::move(registration);
    return {};
}

std::expected<Registration, HotKeys::Refusal> SessionHotKeys::registerHotKey(
    std::uint16_t keyCode, ModifierFlags modifiers, Handler handler)
{
    auto const hotKey = std::make_shared<HotKey>(HotKey { keyCode, modifiers, std::move(handler) });
    if (auto const had = request(hotKey); !had)
        return std::unexpected(had.error());
    m_hotKeys.push_back(hotKey);
    return Registration([this, hotKey] {
        hotKey->isRegistered = false;
        hotKey->registration.end();
        std::erase(m_hotKeys, hotKey);
    });
}

}
