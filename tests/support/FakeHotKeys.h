#pragma once

#include "platform/HotKeys.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>
#include <vector>

namespace Quillory {

// A keyboard without a desktop: a test presses its keys and says which of them somebody else holds.
class FakeHotKeys final : public HotKeys {
public:
    struct Combination {
        std::uint16_t keyCode;
        ModifierFlags modifiers;
        bool operator==(Combination const&) const = default;
    };

    std::expected<Registration, Refusal> registerHotKey(
        std::uint16_t keyCode, ModifierFlags modifiers, Handler handler) override
    {
        Combination const combination { keyCode, modifiers };
        attempts.push_back(combination);
        if (auto const free = isFree(combination); !free)
            return std::unexpected(free.error());
        if (isRegistered(combination))
            return std::unexpected(Refusal { Refusal::Reason::taken });
        auto hotKey = std::make_shared<HotKey>(HotKey { combination, std::move(handler) });
        m_hotKeys.push_back(hotKey);
        return Registration([this, weak = std::weak_ptr(hotKey)] { std::erase(m_hotKeys, weak.lock()); });
    }

    void yieldKeyboard() override { }

    std::expected<void, Refusal> probe(std::uint16_t keyCode, ModifierFlags modifiers) override
    {
        Combination const combination { keyCode, modifiers };
        return isRegistered(combination) ? std::expected<void, Refusal>() : isFree(combination);
    }

    std::vector<Combination> registered() const
    {
        std::vector<Combination> combinations;
        std::ranges::transform(m_hotKeys, std::back_inserter(combinations), &HotKey::combinationOf);
        return combinations;
    }

    // The key goes down, again and again when it is held.
    void press(std::uint16_t keyCode, ModifierFlags modifiers)
    {
        for (auto const& hotKey : std::vector(m_hotKeys)) {
            if (hotKey->combination == Combination { keyCode, modifiers } && !std::exchange(hotKey->isDown, true))
                hotKey->handler(Phase::pressed);
        }
    }

    // The key is let go, whatever the modifiers are by now.
    void release(std::uint16_t keyCode)
    {
        for (auto const& hotKey : std::vector(m_hotKeys)) {
            if (hotKey->combination.keyCode == keyCode && std::exchange(hotKey->isDown, false))
                hotKey->handler(Phase::released);
        }
    }

    std::vector<std::pair<Combination, Refusal::Reason>> refusals;
    std::vector<Combination> attempts;

private:
    struct HotKey {
        Combination combination;
        Handler handler;
        bool isDown = false;
        static Combination combinationOf(std::shared_ptr<HotKey> const& hotKey) { return hotKey->combination; }
    };

    std::expected<void, Refusal> isFree(Combination const& combination) const
    {
        for (auto const& [refused, reason] : refusals) {
            if (refused == combination)
                return std::unexpected(Refusal { reason });
        }
        return {};
    }

    bool isRegistered(Combination const& combination) const
    {
        return std::ranges::find(m_hotKeys, combination, &HotKey::combinationOf) != m_hotKeys.end();
    }

    std::vector<std::shared_ptr<HotKey>> m_hotKeys;
};

}
