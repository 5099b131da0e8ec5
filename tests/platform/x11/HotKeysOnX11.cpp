#include "HotKeysContract.h"

#include "platform/linux/x11/VirtualKeys.h"
#include "platform/linux/x11/X11HotKeys.h"
#include "support/EventLoop.h"
#include "support/OtherProgram.h"
#include "support/SyntheticKeyboard.h"

#include <algorithm>
#include <stdexcept>

namespace Quillory {
namespace {

constexpr std::uint16_t keyK = 40;
constexpr auto controlOption = ModifierFlags::control | ModifierFlags::option;
constexpr std::uint16_t controlOptionBits = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;
constexpr std::uint8_t numLockBit = XCB_MOD_MASK_2;

class X11Desk final : public HotKeysDesk {
public:
    HotKeys& hotKeys() override { return m_hotKeys; }

    void pressModifiers(ModifierFlags modifiers) override
    {
        act([&] { m_keyboard->pressModifiers(modifiers); });
    }
    void releaseModifiers(ModifierFlags modifiers) override
    {
        act([&] { m_keyboard->releaseModifiers(modifiers); });
    }
    void pressKey(std::uint16_t keyCode) override
    {
        act([&] { m_keyboard->press(keyCode); });
    }
    void releaseKey(std::uint16_t keyCode) override
    {
        act([&] { m_keyboard->release(keyCode); });
    }

    void holdKeyUntilItRepeats(std::uint16_t keyCode) override
    {
        int presses = 0;
        auto const counting = m_connection->observeEvents(
            [&](xcb_generic_event_t const& event) { presses += event.response_type == XCB_KEY_PRESS; });
        pressKey(keyCode);
        EXPECT_TRUE(m_loop.runUntil([&] { return presses >= 4; }));
    }

    void letAnotherProgramHave(std::uint16_t keyCode, ModifierFlags modifiers) override
    {
        auto const bits = ModifierMap::read(m_connection->handle()).serverMask(modifiers);
        ASSERT_TRUE(m_other.grab(keyCode, bits.value()));
    }

    OtherProgram& other() { return m_other; }
    EventLoop& loop() { return m_loop; }
    X11Clock const& clock() const { return m_clock; }

private:
    // The server deals with a synthetic key at once; a round trip later all that follows from it is here.
    void act(std::function<void()> const& action)
    {
        action();
        XcbOwned<xcb_get_input_focus_reply_t>(
            xcb_get_input_focus_reply(m_connection->handle(), xcb_get_input_focus(m_connection->handle()), nullptr));
        m_connection->drain();
    }

    static std::unique_ptr<X11Connection> connect()
    {
        auto connection = X11Connection::open();
        if (!connection)
            throw std::runtime_error(connection.error().toStdString());
        return std::move(*connection);
    }

    EventLoop m_loop;
    std::unique_ptr<X11Connection> m_connection = connect();
    X11Clock m_clock;
    X11HotKeys m_hotKeys { *m_connection, m_clock };
    OtherProgram m_other;
    std::unique_ptr<SyntheticKeyboard> m_keyboard = SyntheticKeyboard::open().value();
};

INSTANTIATE_TEST_SUITE_P(
    X11, HotKeysContract, testing::Values(NamedHotKeysDesk { "x11", [] { return std::make_unique<X11Desk>(); } }));

class HotKeysOnX11 : public testing::Test {
protected:
    std::expected<Registration, HotKeys::Refusal> registerControlOptionK()
    {
        return desk.hotKeys().registerHotKey(
            keyK, controlOption, [this](HotKeys::Phase phase) { phases.push_back(phase); });
    }

    void strike(ModifierFlags modifiers = controlOption)
    {
        desk.pressModifiers(modifiers);
        desk.pressKey(keyK);
        desk.releaseKey(keyK);
        desk.releaseModifiers(modifiers);
    }

    X11Desk desk;
    std::vector<HotKeys::Phase> phases;
    std::vector<HotKeys::Phase> const once { HotKeys::Phase::pressed, HotKeys::Phase::released };
};

TEST_F(HotKeysOnX11, Locks_do_not_matter)
{
    auto const hotKey = registerControlOptionK();
    ASSERT_TRUE(hotKey.has_value());
    for (std::uint8_t const locks :
        { std::uint8_t { XCB_MOD_MASK_LOCK }, numLockBit, std::uint8_t { XCB_MOD_MASK_LOCK | numLockBit } }) {
        SCOPED_TRACE(testing::Message() << "locks " << int(locks));
        phases.clear();
        desk.other().lock(locks, true);
        strike();
        desk.other().lock(locks, false);
        EXPECT_EQ(phases, once);
    }
}

TEST_F(HotKeysOnX11, A_refusal_under_one_lock_leaves_the_other_combinations_free)
{
    OtherProgram holder;
    ASSERT_TRUE(holder.grab(keyK, controlOptionBits | numLockBit));
    auto const refused = registerControlOptionK();
    ASSERT_FALSE(refused.has_value());
    EXPECT_EQ(refused.error().reason, HotKeys::Refusal::Reason::taken);
    EXPECT_TRUE(desk.other().grab(keyK, controlOptionBits));
    EXPECT_TRUE(desk.other().grab(keyK, controlOptionBits | XCB_MOD_MASK_LOCK));
}

TEST_F(HotKeysOnX11, The_key_reaches_the_window_in_front_before_and_after_but_not_meanwhile)
{
    auto& other = desk.other();
    auto const window = other.open({ .windowClass = "Editor", .process = {} });
    other.focus(window);
    auto const kPresses = [&] { return std::ranges::count(other.pressedKeys(), VirtualKeys::serverKeyCode(keyK)); };
    strike();
    EXPECT_EQ(kPresses(), 1);
    auto hotKey = registerControlOptionK();
    ASSERT_TRUE(hotKey.has_value());
    strike();
    EXPECT_EQ(kPresses(), 1);
    hotKey->end();
    strike();
    EXPECT_EQ(kPresses(), 2);
}

TEST_F(HotKeysOnX11, Keys_that_change_places_are_followed)
{
    constexpr std::uint8_t leftAlt = 64, rightAlt = 108, leftSuper = 133, rightSuper = 134;
    auto& other = desk.other();
    auto const hotKey = registerControlOptionK();
    ASSERT_TRUE(hotKey.has_value());
    auto const swap = [&] {
        other.swapKeys(leftAlt, leftSuper);
        other.swapKeys(rightAlt, rightSuper);
    };
    auto const isGrabbedUnder = [&](std::uint16_t bits) {
        OtherProgram prober;
        return !prober.grab(keyK, bits);
    };
    swap();
    EXPECT_TRUE(desk.loop().runUntil([&] { return isGrabbedUnder(XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_4); }));
    EXPECT_FALSE(isGrabbedUnder(controlOptionBits));
    strike();
    EXPECT_EQ(phases, once);
    swap();
    EXPECT_TRUE(desk.loop().runUntil([&] { return isGrabbedUnder(controlOptionBits); }));
}

TEST_F(HotKeysOnX11, Another_hot_key_pressed_while_one_is_held_does_nothing)
{
    constexpr std::uint16_t keyJ = 38;
    auto const hotKey = registerControlOptionK();
    int others = 0;
    auto const other = desk.hotKeys().registerHotKey(keyJ, controlOption, [&](HotKeys::Phase) { ++others; });
    desk.pressModifiers(controlOption);
    desk.pressKey(keyK);
    desk.pressKey(keyJ);
    desk.releaseKey(keyJ);
    desk.releaseKey(keyK);
    EXPECT_EQ(phases, once);
    EXPECT_EQ(others, 0);
    desk.pressKey(keyJ);
    desk.releaseKey(keyJ);
    desk.releaseModifiers(controlOption);
    EXPECT_EQ(others, 2);
}

TEST_F(HotKeysOnX11, Keys_that_keyboards_here_lack_are_unknown)
{
    constexpr std::uint16_t functionKey = 63;
    auto const byKey = desk.hotKeys().registerHotKey(functionKey, controlOption, [](auto) { });
    ASSERT_FALSE(byKey.has_value());
    EXPECT_EQ(byKey.error().reason, HotKeys::Refusal::Reason::unknownKey);
    auto const byModifier = desk.hotKeys().registerHotKey(keyK, ModifierFlags::function, [](auto) { });
    ASSERT_FALSE(byModifier.has_value());
    EXPECT_EQ(byModifier.error().reason, HotKeys::Refusal::Reason::unknownKey);
}

TEST_F(HotKeysOnX11, The_time_of_the_keys_is_noted)
{
    auto const hotKey = registerControlOptionK();
    EXPECT_EQ(desk.clock().latest(), 0U);
    strike();
    EXPECT_NE(desk.clock().latest(), 0U);
}

TEST(X11Clock, Later_times_win_across_the_wrap)
{
    X11Clock clock;
    for (X11Clock::Time const time : { 0xffffff00U, 0xfffffff0U, 0U, 0x10U, 0xfffffff1U })
        clock.note(time);
    EXPECT_EQ(clock.latest(), 0x10U);
}

}
}
