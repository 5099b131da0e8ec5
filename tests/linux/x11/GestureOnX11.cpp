#include "X11ModifierEventsDesk.h"

#include "input/ModifierGestureMonitor.h"
#include "linux/qt/QtExecutor.h"
#include "linux/x11/X11InputPermission.h"

#include <QProcess>

#include <gmock/gmock.h>

namespace Quillory {
namespace {

constexpr std::uint16_t leftShift = 56, rightShift = 60, leftOption = 58, rightOption = 61, leftSuper = 55;
constexpr std::uint16_t leftControl = 59, keyK = 40;
constexpr std::size_t idle = 0, secondDown = 3;

class GestureOnX11 : public testing::Test {
protected:
    GestureOnX11()
    {
        monitor.began = [this](ModifierFlags, std::uint16_t keyCode) { began.push_back(keyCode); };
        monitor.ended = [this] { ++ended; };
    }

    ~GestureOnX11() override { useMap({ QStringLiteral("us") }); }

    // The user's choice of a keyboard map, as a desktop makes it.
    void useMap(QStringList const& arguments)
    {
        EXPECT_EQ(
            QProcess::execute(QStringLiteral("setxkbmap"), QStringList { QStringLiteral("-option"), {} } + arguments),
            0);
    }

    // True when the gesture came with this key and went with its release.
    bool works(std::uint16_t pressed, std::uint16_t expected)
    {
        began.clear();
        ended = 0;
        desk.doubleTap(pressed);
        desk.loop().runUntil([&] { return !began.empty() || stage() == idle; });
        EXPECT_TRUE(desk.keys().keyIsDown(expected));
        desk.release(pressed);
        return began == std::vector { expected } && ended == 1;
    }

    std::size_t stage() const { return monitor.recognizer().state().index(); }

    X11ModifierEventsDesk desk;
    QtExecutor executor;
    X11InputPermission permission { desk.connection() };
    ModifierGestureMonitor monitor { executor,
        ModifierGestureMonitor::Operations::of(desk.events(), permission, desk.keys()) };
    std::vector<std::uint16_t> began;
    int ended = 0;
};

TEST_F(GestureOnX11, It_comes_on_either_side_with_AltGr_and_with_keys_that_changed_places)
{
    struct Case {
        QStringList map;
        ModifierGesture gesture;
        std::uint16_t pressed;
        std::uint16_t keyCode;
    };
    auto const us = QStringLiteral("us");
    auto const option = QStringLiteral("-option");
    QStringList const swappedAlt { us, option, QStringLiteral("altwin:swap_lalt_lwin") };
    for (auto const& [map, gesture, pressed, keyCode] :
        std::initializer_list<Case> { { { us }, ModifierGesture::shift, leftShift, leftShift },
            { { us }, ModifierGesture::shift, rightShift, rightShift },
            { { us }, ModifierGesture::option, leftOption, leftOption },
            { { us }, ModifierGesture::option, rightOption, rightOption },
            { { QStringLiteral("de") }, ModifierGesture::option, rightOption, rightOption },
            { swappedAlt, ModifierGesture::option, leftSuper, leftOption } }) {
        SCOPED_TRACE((map.join(u' ') + QStringLiteral(" %1").arg(pressed)).toStdString());
        useMap(map);
        monitor.configure(gesture, true);
        EXPECT_TRUE(works(pressed, keyCode));
        EXPECT_NE(desk.clock().latest(), 0U);
    }
    useMap(swappedAlt);
    desk.doubleTap(leftOption);
    EXPECT_EQ(stage(), idle) << "the key is the Command key now";
}

TEST_F(GestureOnX11, It_comes_while_another_program_holds_the_keyboard_and_with_Caps_Lock_on)
{
    monitor.configure(ModifierGesture::shift, true);
    ASSERT_TRUE(desk.other().takeKeyboard());
    desk.other().lock(XCB_MOD_MASK_LOCK, true);
    EXPECT_TRUE(works(leftShift, leftShift));
    EXPECT_TRUE(contains(desk.keys().flags(), ModifierFlags::capsLock));
    desk.other().lock(XCB_MOD_MASK_LOCK, false);
}

TEST_F(GestureOnX11, Typing_clicking_and_other_modifiers_end_it_and_the_wheel_does_not)
{
    struct Case {
        char const* what;
        std::function<void()> act;
        bool endsAttempt = true;
        bool endsGesture = true;
    };
    auto const strike = [this](std::uint16_t key) {
        desk.press(key);
        desk.release(key);
    };
    monitor.configure(ModifierGesture::shift, true);
    for (auto const& [what, act, endsAttempt, endsGesture] : std::initializer_list<Case> {
             { "typing", [&] { strike(keyK); }, true, false }, { "a click", [&] { desk.clickButton(1); }, true, false },
             { "the side button", [&] { desk.clickButton(8); }, true, false },
             { "the wheel", [&] { desk.clickButton(4); }, false, false }, { "Control", [&] { strike(leftControl); } },
             { "the other Shift", [&] { strike(rightShift); } },
             { "another keyboard", [&] { desk.changeKeyboards(); } } }) {
        SCOPED_TRACE(what);
        desk.doubleTap(leftShift);
        ASSERT_EQ(stage(), secondDown);
        act();
        EXPECT_EQ(stage() != secondDown, endsAttempt);
        desk.release(leftShift);

        began.clear();
        ended = 0;
        desk.doubleTap(leftShift);
        ASSERT_TRUE(desk.loop().runUntil([&] { return !began.empty(); }));
        act();
        EXPECT_EQ(ended, endsGesture);
        desk.release(leftShift);
        EXPECT_EQ(ended, 1);
    }
}

TEST_F(GestureOnX11, A_keyboard_that_is_plugged_in_later_counts)
{
    monitor.configure(ModifierGesture::shift, true);
    auto const keyboard = desk.addMaster();
    for (int count = 0; count < 2; ++count) {
        EXPECT_EQ(stage(), count == 0 ? 0U : 2U);
        desk.pressOn(keyboard, leftShift);
        EXPECT_EQ(stage(), count == 0 ? 1U : 3U);
        if (count == 0)
            desk.releaseOn(keyboard, leftShift);
    }
    desk.removeMaster();
    EXPECT_EQ(stage(), idle) << "pulled out with the key held";
    EXPECT_TRUE(works(leftShift, leftShift));
}

TEST_F(GestureOnX11, Nobody_is_woken_while_it_is_off)
{
    int woken = 0;
    auto const counting = desk.connection().observeEvents([&](auto const&) { ++woken; });
    auto const useTheDesk = [&] {
        woken = 0;
        desk.doubleTap(leftShift);
        desk.release(leftShift);
        desk.clickButton(1);
        desk.changeKeyboards();
    };
    useTheDesk();
    EXPECT_EQ(woken, 0);
    monitor.configure(ModifierGesture::shift, true);
    useTheDesk();
    EXPECT_GT(woken, 0);
    monitor.configure(ModifierGesture::off, true);
    useTheDesk();
    EXPECT_EQ(woken, 0);
}

}
}
