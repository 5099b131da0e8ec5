#include "ModifierEventsContract.h"

#include "support/FakeModifierEvents.h"
#include "support/ManualExecutor.h"

namespace Quillory {
namespace {

class FakeDesk final : public ModifierEventsDesk {
public:
    ModifierEvents& events() override { return m_events; }
    KeyState const& keys() override { return m_keys; }
    std::chrono::nanoseconds now() const override { return m_executor.now(); }
    void press(std::uint16_t keyCode) override { m_events.press(keyCode); }
    void release(std::uint16_t keyCode) override { m_events.release(keyCode); }
    void click(ModifierEvent::Type button) override { m_events.click(button); }
    void changeKeyboards() override { m_events.interrupt(); }

    void holdKeyUntilItRepeats(std::uint16_t keyCode) override
    {
        m_events.press(keyCode);
        m_events.press(keyCode);
    }

private:
    ManualExecutor m_executor;
    FakeKeyState m_keys;
    FakeModifierEvents m_events { m_executor, m_keys, permission };
};

INSTANTIATE_TEST_SUITE_P(Fake, ModifierEventsContract, deskOf<FakeDesk>("fake"));

}
}
