#include "HotKeysContract.h"

#include "linux/x11/VirtualKeys.h"
#include "linux/x11/X11HotKeys.h"
#include "support/EventLoop.h"
#include "support/OtherProgram.h"
#include "tools/x11/SyntheticKeyboard.h"

#include <algorithm>

namespace Quillory {
namespace {

constexpr std::uint16_t keyK = 40;
constexpr auto controlOption = ModifierFlags::control | ModifierFlags::option;
constexpr std::uint16_t controlOptionBits = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;
constexpr std::uint8_t numLockBit = XCB_MOD_MASK_2;

class X11Desk final : public HotKeysDesk {
public:
    ~X11Desk() override { setRepeat(XCB_AUTO_REPEAT_MODE_ON); }

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
        pressKey(keyCode);
        waitForRepeats();
    }

    void stopRepeating() override { setRepeat(XCB_AUTO_REPEAT_MODE_OFF); }

    void letAnotherProgramHave(std::uint16_t keyCode, ModifierFlags modifiers) override
    {
        auto const bits = ModifierMap::read(m_connection->handle()).serverMask(modifiers);
        ASSERT_TRUE(m_other.grab(keyCode, bits.value()));
    }

    Registration observe(X11Connection::EventHandler handler)
    {
        return m_connection->observeEvents(std::move(handler));
    }

    OtherProgram& other() { return m_other; }
    EventLoop& loop() { return m_loop; }
    X11Clock const& clock() const { return m_clock; }

    void waitForRepeats()
    {
        int presses = 0;
        auto const counting = m_connection->observeEvents(
            [&](xcb_generic_event_t const& event) { presses += event.response_type == XCB_KEY_PRESS; });
        EXPECT_TRUE(m_loop.runUntil([&] { return presses >= 4; }));
    }

    // Up to now, by all who use the service's connection.
    unsigned requests() const { return xcb_no_operation(m_connection->handle()).sequence; }
    void breakGrab()
    {
        act([&] { xcb_ungrab_keyboard(m_connection->handle(), XCB_CURRENT_TIME); });
    }
    void wake() { m_hotKeys.grabAgain(); }
    void setOwnWindow(xcb_window_t own)
    {
        m_hotKeys.isOwnWindow = [own](xcb_window_t window) { return window == own; };
    }

private:
    void setRepeat(std::uint32_t mode)
    {
        xcb_change_keyboard_control(m_connection->handle(), XCB_KB_AUTO_REPEAT_MODE, &mode);
        act([] { });
    }

    // The server deals with a synthetic key at once; a round trip later all that follows from it is here.
    void act(std::function<void()> const& action)
    {
        action();
        XcbOwned<xcb_get_input_focus_reply_t>(
            xcb_get_input_focus_reply(m_connection->handle(), xcb_get_input_focus(m_connection->handle()), nullptr));
        m_connection->drain();
    }

    EventLoop m_loop;
    std::unique_ptr<X11Connection> m_connection = X11Connection::open().value();
    X11Clock m_clock;
    X11HotKeys m_hotKeys { *m_connection, m_clock };
    OtherProgram m_other;
    std::unique_ptr<SyntheticKeyboard> m_keyboard = SyntheticKeyboard::open().value();
};

INSTANTIATE_TEST_SUITE_P(X11, HotKeysContract, deskOf<X11Desk>("x11"));

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

TEST_F(HotKeysOnX11, Other_keys_that_go_down_meanwhile_reach_the_window_in_front_if_it_is_ours_or_they_are_yielded)
{
    constexpr std::uint16_t keyJ = 38;
    auto& other = desk.other();
    auto const window = other.open({ .windowClass = "Quillory", .process = {} });
    other.focus(window);
    auto const presses = [&](std::uint16_t key) {
        return std::ranges::count(other.pressedKeys(), VirtualKeys::serverKeyCode(key));
    };
    auto const hotKey = registerControlOptionK();
    desk.pressModifiers(controlOption);
    desk.holdKeyUntilItRepeats(keyK);
    for (auto const& [own, expected] : { std::pair { xcb_window_t { XCB_WINDOW_NONE }, 0 }, { window, 1 } }) {
        desk.setOwnWindow(own);
        desk.pressKey(keyJ);
        desk.releaseKey(keyJ);
        EXPECT_EQ(presses(keyJ), expected);
    }
    // And any other window once the keyboard is yielded, but neither the held key nor what does not end its repetition.
    desk.setOwnWindow(XCB_WINDOW_NONE);
    desk.releaseKey(keyK);
    desk.holdKeyUntilItRepeats(keyK);
    desk.hotKeys().yieldKeyboard();
    desk.pressModifiers(ModifierFlags::shift);
    desk.waitForRepeats();
    desk.pressKey(keyJ);
    desk.releaseKey(keyJ);
    EXPECT_TRUE(desk.loop().runUntil([&] { return presses(keyJ) == 2; }));
    desk.releaseModifiers(ModifierFlags::shift);
    EXPECT_EQ(presses(keyK), 0);
    desk.releaseKey(keyK);
    desk.releaseModifiers(controlOption);
    EXPECT_TRUE(desk.loop().runUntil([&] { return phases.size() == 2 * once.size(); }));
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

TEST_F(HotKeysOnX11, Hot_keys_that_are_down_together_reach_nobody_else_and_leave_the_keyboard_free)
{
    constexpr std::uint16_t keyJ = 38;
    auto& other = desk.other();
    auto const window = other.open({ .windowClass = "Editor", .process = {} });
    other.focus(window);
    auto const hotKey = registerControlOptionK();
    auto const second = desk.hotKeys().registerHotKey(
        keyJ, controlOption, [this](HotKeys::Phase phase) { phases.push_back(phase); });
    desk.pressModifiers(controlOption);
    desk.pressKey(keyK);
    desk.holdKeyUntilItRepeats(keyJ);
    desk.releaseKey(keyK);
    desk.holdKeyUntilItRepeats(keyJ);
    desk.releaseKey(keyJ);
    using enum HotKeys::Phase;
    EXPECT_EQ(phases, std::vector({ pressed, pressed, released, released }));
    desk.releaseModifiers(controlOption);
    auto const pressedElsewhere = other.pressedKeys();
    EXPECT_EQ(std::ranges::count(pressedElsewhere, VirtualKeys::serverKeyCode(keyJ)), 0);
    EXPECT_EQ(std::ranges::count(pressedElsewhere, VirtualKeys::serverKeyCode(keyK)), 0);
    EXPECT_TRUE(other.canHaveKeyboard());
}

TEST_F(HotKeysOnX11, A_release_that_nobody_tells_of_is_noticed)
{
    auto const hotKey = registerControlOptionK();
    desk.pressModifiers(controlOption);
    desk.pressKey(keyK);
    desk.breakGrab();
    desk.releaseKey(keyK);
    desk.releaseModifiers(controlOption);
    EXPECT_EQ(phases, std::vector { HotKeys::Phase::pressed });
    EXPECT_TRUE(desk.loop().runUntil([&] { return phases == once; }));
    strike();
    EXPECT_EQ(phases.size(), 4U);
}

TEST_F(HotKeysOnX11, A_hot_key_that_ends_while_it_is_down_gives_the_keyboard_back)
{
    auto hotKey = registerControlOptionK();
    desk.pressModifiers(controlOption);
    desk.pressKey(keyK);
    EXPECT_FALSE(desk.other().canHaveKeyboard());
    hotKey->end();
    EXPECT_TRUE(desk.other().canHaveKeyboard());
}

TEST_F(HotKeysOnX11, A_storm_of_keyboard_maps_costs_less_than_one_request_a_change)
{
    constexpr unsigned changes = 30; // window managers grab again at each, and are busy for a while
    constexpr std::uint8_t scrollLock = 78, pause = 127;
    auto const hotKey = registerControlOptionK();
    int told = 0;
    auto const counting = desk.observe([&](auto const&) { ++told; });
    auto const before = desk.requests();
    for (unsigned change = 0; change < changes / 2; ++change)
        desk.other().swapKeys(scrollLock, pause);
    EXPECT_TRUE(desk.loop().runUntil([&] { return told >= int(changes / 2); }));
    strike();
    EXPECT_EQ(phases, once);
    EXPECT_LT(desk.requests() - before, changes);
}

TEST_F(HotKeysOnX11, A_hot_key_that_rests_is_had_again_after_sleep)
{
    constexpr std::uint8_t leftAlt = 64, rightAlt = 108, leftSuper = 133, rightSuper = 134;
    auto const controlSuperBits = std::uint16_t(XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_4);
    auto& other = desk.other();
    auto const hotKey = registerControlOptionK();
    OtherProgram holder;
    ASSERT_TRUE(holder.grab(keyK, controlSuperBits));
    auto const swap = [&] {
        other.swapKeys(leftAlt, leftSuper);
        other.swapKeys(rightAlt, rightSuper);
    };
    swap();
    // It lets go of what it had, and what it wants now is held.
    EXPECT_TRUE(desk.loop().runUntil([&] {
        OtherProgram prober;
        return prober.grab(keyK, controlOptionBits);
    }));
    holder.ungrab(keyK, controlSuperBits);
    desk.wake();
    strike();
    EXPECT_EQ(phases, once);
    swap();
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
