#include "HotKeysContract.h"

#include "support/FakeHotKeys.h"

namespace Quillory {
namespace {

class FakeDesk final : public HotKeysDesk {
public:
    HotKeys& hotKeys() override { return m_hotKeys; }
    void pressModifiers(ModifierFlags modifiers) override { m_modifiers = m_modifiers | modifiers; }
    void releaseModifiers(ModifierFlags modifiers) override
    {
        m_modifiers = static_cast<ModifierFlags>(std::uint32_t(m_modifiers) & ~std::uint32_t(modifiers));
    }
    void pressKey(std::uint16_t keyCode) override { m_hotKeys.press(keyCode, m_modifiers); }
    void releaseKey(std::uint16_t keyCode) override { m_hotKeys.release(keyCode); }

    void holdKeyUntilItRepeats(std::uint16_t keyCode) override
    {
        pressKey(keyCode);
        pressKey(keyCode);
        pressKey(keyCode);
    }

    void stopRepeating() override { }

    void letAnotherProgramHave(std::uint16_t keyCode, ModifierFlags modifiers) override
    {
        m_hotKeys.refusals.push_back({ { keyCode, modifiers }, HotKeys::Refusal::Reason::taken });
    }

private:
    FakeHotKeys m_hotKeys;
    ModifierFlags m_modifiers = ModifierFlags::none;
};

INSTANTIATE_TEST_SUITE_P(Fake, HotKeysContract, deskOf<FakeDesk>("fake"));

}
}
