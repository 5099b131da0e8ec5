#pragma once

#include "platform/LocalKeyEvents.h"

#include "support/Desks.h"

#include <functional>

namespace Quillory {

// A desk with a window of ours that has the keyboard. Each act returns when what follows from it has been delivered.
class LocalKeyEventsDesk {
public:
    virtual ~LocalKeyEventsDesk() = default;

    virtual LocalKeyEvents& events() = 0;
    virtual void press(std::uint16_t keyCode, ModifierFlags modifiers) = 0;
    virtual void release(std::uint16_t keyCode, ModifierFlags modifiers) = 0;

    // How many presses the window was given.
    virtual int pressesInTheWindow() const = 0;
};

class LocalKeyEventsContract : public ContractOn<LocalKeyEventsDesk> {
protected:
    static constexpr std::uint16_t keyK = 40;
    static constexpr auto modifiers = ModifierFlags::control | ModifierFlags::shift;

    void strike()
    {
        desk->press(keyK, modifiers);
        desk->release(keyK, modifiers);
    }

    std::unique_ptr<LocalKeyEventsDesk> desk = GetParam().make();
};

TEST_P(LocalKeyEventsContract, A_monitor_sees_each_event_first_and_may_keep_it_from_the_window)
{
    using enum RawKeyEvent::Kind;
    std::vector<RawKeyEvent> seen;
    auto answer = LocalKeyEvents::Answer::passOn;
    auto observation = desk->events().observe([&](RawKeyEvent const& event) {
        if (event.keyCode == keyK)
            seen.push_back(event);
        return event.keyCode == keyK ? answer : LocalKeyEvents::Answer::passOn;
    });
    strike();
    std::vector<RawKeyEvent> const struck { { down, keyK, modifiers }, { up, keyK, modifiers } };
    EXPECT_EQ(seen, struck);
    EXPECT_EQ(desk->pressesInTheWindow(), 1);
    answer = LocalKeyEvents::Answer::swallow;
    strike();
    EXPECT_EQ(seen.size(), 4U);
    EXPECT_EQ(desk->pressesInTheWindow(), 1);
    observation.end();
    strike();
    EXPECT_EQ(seen.size(), 4U);
    EXPECT_EQ(desk->pressesInTheWindow(), 2);
}

TEST_P(LocalKeyEventsContract, A_monitor_may_end_its_own_observation)
{
    Registration observation;
    int seen = 0;
    observation = desk->events().observe([&](RawKeyEvent const&) {
        observation.end();
        ++seen;
        return LocalKeyEvents::Answer::passOn;
    });
    strike();
    strike();
    EXPECT_EQ(seen, 1);
}

}
