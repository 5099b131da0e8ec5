#include "X11Desk.h"

#include "linux/x11/X11KeyState.h"
#include "linux/x11/X11ModifierEvents.h"
#include "linux/x11/XInput.h"
#include "support/FakeInputPermission.h"

#include <xcb/xtest.h>

namespace Quillory {
namespace {

using enum ModifierFlags;
using enum ModifierEvent::Type;

constexpr std::uint16_t leftShift = 56, rightShift = 60, leftControl = 59, rightControl = 62;
constexpr std::uint16_t leftOption = 58, rightOption = 61, leftCommand = 55, rightCommand = 54, keyK = 40;

// A keyboard and a mouse of their own beside those that are there.
class SecondKeyboard {
public:
    explicit SecondKeyboard(xcb_connection_t* xcb)
        : m_xcb(xcb)
    {
        EXPECT_TRUE(startXInput(xcb));
        struct {
            xcb_input_add_master_t head { XCB_INPUT_HIERARCHY_CHANGE_TYPE_ADD_MASTER, 4, 6, 1, 1 };
            char name[8] = "Second";
        } request;
        xcb_input_xi_change_hierarchy(xcb, 1, reinterpret_cast<xcb_input_hierarchy_change_t const*>(&request));
    }

    void unplug()
    {
        xcb_input_remove_master_t const request { XCB_INPUT_HIERARCHY_CHANGE_TYPE_REMOVE_MASTER, 3,
            device("Second keyboard"), XCB_INPUT_CHANGE_MODE_FLOAT, {}, 0, 0 };
        xcb_input_xi_change_hierarchy(m_xcb, 1, reinterpret_cast<xcb_input_hierarchy_change_t const*>(&request));
    }

    void press(std::uint16_t keyCode)
    {
        auto const first = xcb_get_extension_data(m_xcb, &xcb_input_id)->first_event;
        auto const request = xcb_test_fake_input_checked(m_xcb, std::uint8_t(first + XCB_INPUT_DEVICE_KEY_PRESS),
            VirtualKeys::serverKeyCode(keyCode).value(), XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0,
            std::uint8_t(device("Second XTEST keyboard")));
        EXPECT_FALSE(XcbOwned<xcb_generic_error_t>(xcb_request_check(m_xcb, request)));
    }

private:
    std::uint16_t device(std::string_view name) const
    {
        XcbOwned<xcb_input_xi_query_device_reply_t> const reply(
            xcb_input_xi_query_device_reply(m_xcb, xcb_input_xi_query_device(m_xcb, XCB_INPUT_DEVICE_ALL), nullptr));
        for (auto device = xcb_input_xi_query_device_infos_iterator(reply.get()); device.rem > 0;
            xcb_input_xi_device_info_next(&device)) {
            if (std::string_view(xcb_input_xi_device_info_name(device.data), device.data->name_len) == name)
                return device.data->deviceid;
        }
        ADD_FAILURE() << "no device " << name;
        return 0;
    }

    xcb_connection_t* m_xcb;
};

class ModifierEventsOnX11 : public X11Desk {
protected:
    ModifierEventObservation observe()
    {
        return events.observe([this](auto const& event) { received.push_back(event); }, [this] { ++interruptions; })
            .value();
    }

    // What is told of while something is done, at a time within which it was.
    std::vector<ModifierEvent> eventsOf(std::function<void()> const& act)
    {
        auto const now = [] { return std::chrono::steady_clock::now().time_since_epoch(); };
        auto const before = now();
        received.clear();
        act();
        settle();
        for (auto& event : received) {
            EXPECT_GE(event.timestamp, before - 2ms) << "a server's clock may count whole milliseconds";
            EXPECT_LE(std::exchange(event.timestamp, {}), now());
        }
        return received;
    }
    std::vector<ModifierEvent> eventsOfButton(std::uint8_t button)
    {
        return eventsOf([&] { keyboard->clickButton(button); });
    }

    FakeInputPermission permission;
    X11ModifierEvents events { *connection, clock, permission };
    X11KeyState keys { *connection };
    std::vector<ModifierEvent> received;
    int interruptions = 0;
};

TEST_F(ModifierEventsOnX11, Each_act_gives_one_event_with_the_flags_that_follow_from_it)
{
    struct Case {
        std::uint16_t key;
        bool goesDown;
        ModifierFlags flags;
    };
    auto const observation = observe();
    auto const goThrough = [&](std::initializer_list<Case> cases) {
        for (auto const& [key, goesDown, flags] : cases) {
            SCOPED_TRACE(Message() << key << (goesDown ? " down" : " up"));
            EXPECT_NE(keys.keyIsDown(key), goesDown);
            EXPECT_THAT(eventsOf([&] { goesDown ? keyboard->press(key) : keyboard->release(key); }),
                ElementsAre(ModifierEvent { flagsChanged, key, flags }));
            EXPECT_EQ(keys.keyIsDown(key), goesDown);
            EXPECT_EQ(keys.flags(), flags);
        }
    };
    auto const held = option | control | command;
    goThrough({ { leftShift, true, shift }, { rightShift, true, shift }, { leftShift, false, shift },
        { rightShift, false, none }, { leftOption, true, option }, { rightOption, true, option },
        { leftControl, true, option | control }, { rightCommand, true, held } });
    EXPECT_NE(clock.latest(), 0U);
    openFocusedWindow();
    EXPECT_THAT(eventsOf([&] {
        press(keyK);
        EXPECT_TRUE(loop.runUntil([&] { return pressesElsewhere(keyK) >= 4; })) << "it repeats";
    }),
        ElementsAre(ModifierEvent { keyDown, keyK, held }));
    EXPECT_TRUE(keys.keyIsDown(keyK));
    EXPECT_THAT(eventsOf([&] { release(keyK); }), IsEmpty());
    goThrough({ { leftOption, false, held }, { rightOption, false, control | command }, { leftControl, false, command },
        { rightCommand, false, none }, { rightControl, true, control }, { rightControl, false, none },
        { leftCommand, true, command }, { leftCommand, false, none } });

    constexpr std::uint8_t wheel = 4, lastOfWheels = 7, side = 8;
    for (auto const& [button, type] : { std::pair<std::uint8_t, ModifierEvent::Type> { 1, leftMouseDown },
             { 3, rightMouseDown }, { 2, otherMouseDown }, { side, otherMouseDown } })
        EXPECT_THAT(eventsOfButton(button), ElementsAre(ModifierEvent { type, 0, none })) << int(button);
    EXPECT_THAT(eventsOfButton(wheel), IsEmpty());
    EXPECT_THAT(eventsOfButton(lastOfWheels), IsEmpty());
}

TEST_F(ModifierEventsOnX11, AltGr_and_keys_that_changed_places_are_known_by_what_they_give_now)
{
    auto const observation = observe();
    QStringList const swapped { u"us"_s, u"-option"_s, u"altwin:swap_lalt_lwin"_s };
    for (auto const& [map, pressed, expected, flag] :
        { std::tuple { QStringList(u"de"_s), rightOption, rightOption, option },
            { swapped, leftCommand, leftOption, option }, { swapped, leftOption, leftCommand, command } }) {
        useMap(map);
        EXPECT_THAT(eventsOf([&] { press(pressed); }), ElementsAre(ModifierEvent { flagsChanged, expected, flag }));
        EXPECT_TRUE(keys.keyIsDown(expected));
        release(pressed);
    }
    useMap();
}

TEST_F(ModifierEventsOnX11, They_come_while_another_program_holds_the_keyboard_and_with_Caps_Lock_on)
{
    auto const observation = observe();
    ASSERT_TRUE(other.takeKeyboard());
    other.lock(XCB_MOD_MASK_LOCK, true);
    EXPECT_THAT(eventsOf([&] { press(leftShift); }), ElementsAre(ModifierEvent { flagsChanged, leftShift, shift }));
    EXPECT_EQ(keys.flags(), shift | capsLock);
    other.lock(XCB_MOD_MASK_LOCK, false);
}

TEST_F(ModifierEventsOnX11, A_keyboard_that_comes_counts_and_takes_its_keys_along_when_it_goes)
{
    auto const observation = observe();
    SecondKeyboard second(other.connection());
    settle();
    EXPECT_GE(interruptions, 1);
    EXPECT_THAT(
        eventsOf([&] { second.press(leftShift); }), ElementsAre(ModifierEvent { flagsChanged, leftShift, shift }));
    second.unplug();
    settle();
    EXPECT_GE(interruptions, 2);
    EXPECT_THAT(
        eventsOf([&] { press(leftControl); }), ElementsAre(ModifierEvent { flagsChanged, leftControl, control }));

    permission.canListen = false;
    interruptions = 0;
    SecondKeyboard third(other.connection());
    settle();
    EXPECT_EQ(interruptions, 1);
    EXPECT_FALSE(observation.isActive());
    EXPECT_THAT(eventsOf([&] { release(leftControl); }), IsEmpty());
    third.unplug();
}

TEST_F(ModifierEventsOnX11, Nobody_is_woken_before_the_first_observation_and_after_the_last_which_may_end_itself)
{
    int woken = 0;
    auto const counting = connection->observeEvents([&](auto const&) { ++woken; });
    auto const wakes = [&] {
        woken = 0;
        play(u"shift K"_s);
        eventsOfButton(1);
        SecondKeyboard(other.connection()).unplug();
        settle();
        return woken > 0;
    };
    EXPECT_FALSE(wakes());
    std::optional<ModifierEventObservation> first;
    int toFirst = 0;
    first = events.observe(
        [&](auto const&) {
            ++toFirst;
            std::exchange(first, std::nullopt)->cancel();
        },
        [] {});
    auto const second = observe();
    EXPECT_THAT(eventsOf([&] { play(u"shift"_s); }), SizeIs(2));
    EXPECT_EQ(toFirst, 1);
    EXPECT_TRUE(wakes());
    EXPECT_TRUE(second.isActive());
    second.cancel();
    second.cancel();
    EXPECT_FALSE(second.isActive());
    EXPECT_FALSE(wakes());
}

}
}
