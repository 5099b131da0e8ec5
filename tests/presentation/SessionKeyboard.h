#pragma once

#include "platform/Executor.h"
#include "platform/InputPermission.h"
#include "platform/KeyState.h"
#include "platform/ModifierEvents.h"

#include <memory>
#include <set>
#include <utility>
#include <vector>

namespace Quillory {

// The keys that are held, and who listens to them, as the test has it.
class SessionKeyboard final : public ModifierEvents, public KeyState, public InputPermission {
public:
    explicit SessionKeyboard(Executor const& executor)
        : m_executor(executor)
    {
    }

    std::optional<ModifierEventObservation> observe(Receiver receive, Interruption) override
    {
        auto const listener = std::make_shared<Receiver>(std::move(receive));
        m_listeners.push_back(listener);
        auto const isActive = [this, listener] {
            return std::ranges::find(m_listeners, listener) != m_listeners.end();
        };
        return ModifierEventObservation { isActive, [this, listener] { std::erase(m_listeners, listener); } };
    }
    bool keyIsDown(std::uint16_t keyCode) const override { return keysDown.contains(keyCode); }
    ModifierFlags flags() const override { return heldFlags; }
    bool isAccessibilityTrusted() const override { return false; }
    bool canListenToEvents() const override { return isPermitted; }
    void requestListenAccess() override { isPermitted = true; }

    // A modifier key goes down or up, and everybody who listens is told.
    void change(std::uint16_t keyCode, ModifierFlags modifier, bool isDown)
    {
        isDown ? void(keysDown.insert(keyCode)) : void(keysDown.erase(keyCode));
        heldFlags = isDown ? heldFlags | modifier : without(heldFlags, modifier);
        ModifierEvent const event { ModifierEvent::Type::flagsChanged, keyCode, isDown ? modifier : ModifierFlags::none,
            m_executor.now() };
        for (auto const& listener : std::vector(m_listeners))
            (*listener)(event);
    }

    static ModifierFlags without(ModifierFlags flags, ModifierFlags taken)
    {
        return static_cast<ModifierFlags>(static_cast<std::uint32_t>(flags) & ~static_cast<std::uint32_t>(taken));
    }

    std::size_t listeners() const { return m_listeners.size(); }

    std::set<std::uint16_t> keysDown;
    ModifierFlags heldFlags = ModifierFlags::none;
    bool isPermitted = true;

private:
    Executor const& m_executor;
    std::vector<std::shared_ptr<Receiver>> m_listeners;
};

}
