#pragma once

#include "platform/Executor.h"
#include "platform/InputPermission.h"
#include "platform/ModifierEvents.h"
#include "support/FakeKeyState.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace Quillory {

// A session without a desktop: a test presses its keys, at the time of the given clock.
class FakeModifierEvents final : public ModifierEvents {
public:
    FakeModifierEvents(Executor const& clock, FakeKeyState& keys, InputPermission const& permission)
        : m_clock(clock)
        , m_keys(keys)
        , m_permission(permission)
    {
    }

    std::optional<ModifierEventObservation> observe(Receiver receive, Interruption interrupted) override
    {
        if (isRefusing)
            return std::nullopt;
        ++started;
        auto tap = std::make_shared<Tap>(Tap { std::move(receive), std::move(interrupted) });
        m_taps.push_back(tap);
        return ModifierEventObservation {
            .isActive = [tap] { return tap->isRunning; },
            .cancel = [tap] { tap->isRunning = false; },
        };
    }

    void press(std::uint16_t keyCode)
    {
        if (m_keys.down.insert(keyCode).second)
            send(FakeKeyState::isModifier(keyCode) ? flagsChanged : keyDown, keyCode);
    }
    void release(std::uint16_t keyCode)
    {
        if (m_keys.down.erase(keyCode) > 0 && FakeKeyState::isModifier(keyCode))
            send(flagsChanged, keyCode);
    }

    // Whatever a test wants to come.
    void send(ModifierEvent const& event)
    {
        for (auto const& tap : running())
            tap->receive(event);
    }

    // The session's keyboards are not what they were.
    void interrupt()
    {
        for (auto const& tap : running()) {
            tap->interrupted();
            tap->isRunning = m_permission.isAccessibilityTrusted() || m_permission.canListenToEvents();
        }
    }

    // Every observation dies without a word.
    void die()
    {
        for (auto const& tap : running())
            tap->isRunning = false;
    }

    std::size_t observations() { return running().size(); }

    bool isRefusing = false;
    int started = 0;

private:
    static constexpr auto flagsChanged = ModifierEvent::Type::flagsChanged;
    static constexpr auto keyDown = ModifierEvent::Type::keyDown;

    struct Tap {
        Receiver receive;
        Interruption interrupted;
        bool isRunning = true;
    };

    std::vector<std::shared_ptr<Tap>> running()
    {
        std::erase_if(m_taps, [](auto const& tap) { return !tap->isRunning; });
        return m_taps;
    }

    void send(ModifierEvent::Type type, std::uint16_t keyCode)
    {
        send(ModifierEvent { type, keyCode, m_keys.flags(), m_clock.now() });
    }

    Executor const& m_clock;
    FakeKeyState& m_keys;
    InputPermission const& m_permission;
    std::vector<std::shared_ptr<Tap>> m_taps;
};

}
