#include "HotKeysContract.h"
#include "X11Desk.h"

#include "linux/x11/X11HotKeys.h"

namespace Quillory {
namespace {

using enum HotKeys::Phase;
using Reason = HotKeys::Refusal::Reason;
using Phases = std::vector<HotKeys::Phase>;

constexpr std::uint16_t keyJ = 38, keyK = 40;
constexpr auto controlOption = ModifierFlags::control | ModifierFlags::option;
constexpr std::uint16_t controlOptionBits = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;
constexpr std::uint16_t controlSuperBits = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_4;
constexpr std::uint8_t capsLockBit = XCB_MOD_MASK_LOCK, numLockBit = XCB_MOD_MASK_2;

class HotKeysOnX11 : public X11Desk {
public:
    void setRepeat(std::uint32_t mode)
    {
        xcb_change_keyboard_control(xcb, XCB_KB_AUTO_REPEAT_MODE, &mode);
        settle();
    }

    void letAnotherProgramHave(std::uint16_t key, ModifierFlags modifiers)
    {
        ASSERT_TRUE(other.grab(key, ModifierMap::read(xcb).serverMask(modifiers).value()));
    }

    std::expected<Registration, HotKeys::Refusal> registered(std::uint16_t key = keyK)
    {
        return hotKeys.registerHotKey(key, controlOption, [this](HotKeys::Phase phase) { phases.push_back(phase); });
    }

    // What is told while the keys of the script go down and up.
    Phases phasesOf(QString const& script)
    {
        phases.clear();
        play(script);
        return phases;
    }

    // Returns when the key that is down has been repeated a few times.
    void waitForRepeats()
    {
        int presses = 0;
        auto const counting = connection->observeEvents(
            [&](xcb_generic_event_t const& event) { presses += event.response_type == XCB_KEY_PRESS; });
        EXPECT_TRUE(loop.runUntil([&] { return presses >= 4; }));
    }

    static bool isGrabbedUnder(std::uint16_t bits)
    {
        OtherProgram prober;
        return !prober.grab(keyK, bits);
    }

    void swapAltAndSuper()
    {
        constexpr std::uint8_t leftAlt = 64, rightAlt = 108, leftSuper = 133, rightSuper = 134;
        other.swapKeys(leftAlt, leftSuper);
        other.swapKeys(rightAlt, rightSuper);
    }

    X11HotKeys hotKeys { *connection, clock };
    Phases phases;
    Phases const once { pressed, released };
    QString const strike = u"ctrl+alt+K"_s;
};

TEST_F(HotKeysOnX11, In_any_order_of_keys_and_registrations_each_has_its_own_phases)
{
    setRepeat(XCB_AUTO_REPEAT_MODE_OFF);
    tellsEachHotKeyItsOwnPhases(*this, hotKeys);
    setRepeat(XCB_AUTO_REPEAT_MODE_ON);
}

TEST_F(HotKeysOnX11, Locks_do_not_matter_and_the_time_of_the_keys_is_noted)
{
    auto const hotKey = registered();
    EXPECT_EQ(clock.latest(), 0U);
    for (std::uint8_t const locks : { capsLockBit, numLockBit, std::uint8_t(capsLockBit | numLockBit) }) {
        other.lock(locks, true);
        EXPECT_EQ(phasesOf(strike), once) << int(locks);
        other.lock(locks, false);
    }
    EXPECT_NE(clock.latest(), 0U);
}

TEST_F(HotKeysOnX11, What_is_held_under_one_lock_or_is_on_no_keyboard_here_is_refused_and_leaves_nothing_behind)
{
    OtherProgram holder;
    ASSERT_TRUE(holder.grab(keyK, controlOptionBits | numLockBit));
    EXPECT_EQ(registered().error().reason, Reason::taken);
    EXPECT_FALSE(isGrabbedUnder(controlOptionBits));
    EXPECT_FALSE(isGrabbedUnder(controlOptionBits | capsLockBit));
    constexpr std::uint16_t functionKey = 63;
    EXPECT_EQ(registered(functionKey).error().reason, Reason::unknownKey);
    EXPECT_EQ(hotKeys.probe(keyK, ModifierFlags::function).error().reason, Reason::unknownKey);
}

TEST_F(HotKeysOnX11,
    The_window_in_front_has_the_key_before_and_after_and_others_meanwhile_if_it_is_ours_or_they_are_yielded)
{
    auto const window = openFocusedWindow();
    play(strike);
    EXPECT_EQ(pressesElsewhere(keyK), 1);
    auto hotKey = registered();
    play(u"ctrl+alt+K↓"_s);
    waitForRepeats();
    EXPECT_EQ(phases, Phases { pressed });
    for (auto const& [own, expected] : { std::pair { xcb_window_t { XCB_WINDOW_NONE }, 0 }, { window, 1 } }) {
        hotKeys.isOwnWindow = [own](xcb_window_t each) { return each == own; };
        play(u"J"_s);
        EXPECT_EQ(pressesElsewhere(keyJ), expected);
    }
    // Any window has them once the keyboard is yielded, but neither the held key nor what does not end its repetition.
    hotKeys.isOwnWindow = [](auto) { return false; };
    play(u"K↑ K↓"_s);
    waitForRepeats();
    hotKeys.yieldKeyboard();
    play(u"shift↓"_s);
    waitForRepeats();
    play(u"J"_s);
    EXPECT_TRUE(loop.runUntil([&] { return pressesElsewhere(keyJ) == 2; }));
    EXPECT_EQ(pressesElsewhere(keyK), 1);
    play(u"shift↑ ctrl+alt+K↑"_s);
    EXPECT_TRUE(loop.runUntil([&] { return phases == Phases({ pressed, released, pressed, released }); }));
    hotKey->end();
    EXPECT_THAT(phasesOf(strike), IsEmpty());
    EXPECT_EQ(pressesElsewhere(keyK), 2);
}

TEST_F(HotKeysOnX11, Keys_that_change_places_are_followed_and_what_was_refused_then_is_had_after_sleep)
{
    auto const hotKey = registered();
    swapAltAndSuper();
    EXPECT_TRUE(loop.runUntil([&] { return isGrabbedUnder(controlSuperBits); }));
    EXPECT_FALSE(isGrabbedUnder(controlOptionBits));
    EXPECT_EQ(phasesOf(u"ctrl+super+K"_s), once);
    swapAltAndSuper();
    EXPECT_TRUE(loop.runUntil([&] { return isGrabbedUnder(controlOptionBits); }));

    OtherProgram holder;
    ASSERT_TRUE(holder.grab(keyK, controlSuperBits));
    swapAltAndSuper();
    EXPECT_TRUE(loop.runUntil([&] { return !isGrabbedUnder(controlOptionBits); })) << "it rests";
    holder.ungrab(keyK, controlSuperBits);
    hotKeys.grabAgain();
    EXPECT_EQ(phasesOf(u"ctrl+super+K"_s), once);
    swapAltAndSuper();
}

TEST_F(HotKeysOnX11, Hot_keys_that_are_down_together_reach_nobody_else_and_leave_the_keyboard_free)
{
    openFocusedWindow();
    auto const first = registered();
    auto second = registered(keyJ);
    play(u"ctrl+alt+K↓ J↓"_s);
    waitForRepeats();
    play(u"K↑"_s);
    waitForRepeats();
    EXPECT_FALSE(other.canHaveKeyboard());
    play(u"J↑ ctrl+alt↑"_s);
    EXPECT_EQ(phases, Phases({ pressed, pressed, released, released }));
    EXPECT_EQ(pressesElsewhere(keyJ) + pressesElsewhere(keyK), 0);
    EXPECT_TRUE(other.canHaveKeyboard());

    play(u"ctrl+alt+J↓"_s);
    second->end();
    EXPECT_TRUE(other.canHaveKeyboard()) << "ended while it was down";
}

TEST_F(HotKeysOnX11, A_release_that_nobody_tells_of_is_noticed)
{
    auto const hotKey = registered();
    play(u"ctrl+alt+K↓"_s);
    xcb_ungrab_keyboard(xcb, XCB_CURRENT_TIME);
    settle();
    play(u"ctrl+alt+K↑"_s);
    EXPECT_EQ(phases, Phases { pressed });
    EXPECT_TRUE(loop.runUntil([&] { return phases == once; }));
    EXPECT_EQ(phasesOf(strike), once);
}

TEST_F(HotKeysOnX11, A_storm_of_keyboard_maps_costs_less_than_one_request_a_change)
{
    constexpr unsigned changes = 30; // window managers grab again at each, and are busy for a while
    constexpr std::uint8_t scrollLock = 78, pause = 127;
    auto const hotKey = registered();
    unsigned told = 0;
    auto const counting = connection->observeEvents([&](auto const&) { ++told; });
    auto const requests = [&] { return xcb_no_operation(xcb).sequence; };
    auto const before = requests();
    for (unsigned change = 0; change < changes / 2; ++change)
        other.swapKeys(scrollLock, pause);
    EXPECT_TRUE(loop.runUntil([&] { return told >= changes / 2; }));
    EXPECT_EQ(phasesOf(strike), once);
    EXPECT_LT(requests() - before, changes);
}

}
}
