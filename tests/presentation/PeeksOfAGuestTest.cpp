#include "presentation/SummoningDesk.h"

#include "support/Dice.h"
#include "support/Test.h"

namespace Quillory {
namespace {

// Peeks on a session that tells the program of modifiers only while it has the keyboard, of keys never, and of the end
// of a peek late, first or not at all.
class GuestDesk : public SummoningDesk {
public:
    explicit GuestDesk(Dice& dice)
        : m_dice(dice)
    {
        peekKeys.isGuest = true;
        peekKeys.hasKeyboard = [this] {
            bool const isPassing = since() > m_keyboardComes + 60ms && (since() + m_flicker) % 300ms < 40ms;
            return since() >= m_keyboardComes && !isPassing;
        };
        peekKeys.oldFlags = [this]() -> std::optional<ModifierFlags> {
            return since() < m_keyboardComes + 20ms ? std::optional(m_old) : std::nullopt;
        };
    }

    // How a peek goes on: by key or by a button, told by the portal or by a request.
    struct Story {
        bool isByKey = false, isByPortal = false, isToldHeld = false, isEndLost = false, isRepeated = false;
        std::chrono::nanoseconds keyUp {}, modifiersUp {}, beginLag {}, endLag {};
        std::chrono::nanoseconds cut {}; // Escape or another window, when not zero
        bool isCutByWindow = false;
    };

    Story think()
    {
        auto const milliseconds = [&](int from, int to) {
            return std::chrono::milliseconds(from + static_cast<int>(m_dice.below(static_cast<unsigned>(to - from))));
        };
        Story story;
        story.isByKey = !m_dice.oneIn(5);
        story.isByPortal = story.isByKey && m_dice.oneIn(3);
        story.isToldHeld = story.isByKey && !story.isByPortal && m_dice.oneIn(2);
        story.isRepeated = story.isByKey && m_dice.oneIn(3);
        story.beginLag = milliseconds(0, 40);
        story.endLag = story.isByPortal ? story.beginLag : milliseconds(0, 40);
        story.keyUp = m_dice.oneIn(3) ? milliseconds(1, 60) : milliseconds(60, 1500);
        story.modifiersUp = story.keyUp + milliseconds(-50, 50);
        story.isEndLost = story.isByKey && !story.isByPortal && m_dice.oneIn(4);
        // Without a word of the modifiers they must be seen once.
        if (story.isEndLost && !story.isToldHeld)
            story.keyUp = story.modifiersUp = milliseconds(250, 1500);
        if (m_dice.oneIn(4))
            story.cut = milliseconds(150, 1500);
        story.isCutByWindow = m_dice.oneIn(2);
        // The first repetition comes so late that it can't be told from another press.
        story.isRepeated &= story.cut == 0ns || story.cut > story.beginLag + 640ms;
        return story;
    }

    // One peek from its first key to a time when nothing of it can be left.
    void live(Story const& story)
    {
        m_old = m_dice.oneIn(3) ? ModifierFlags::command : ModifierFlags::none;
        m_keyboardComes = std::chrono::milliseconds(m_dice.below(60));
        m_flicker = std::chrono::milliseconds(m_dice.below(300));
        m_start.reset();
        workspace.bringForeignToFront();
        m_cut.reset();
        if (story.isByKey)
            keys.down.insert({ leftControl, leftCommand });
        std::vector<Registration> script;
        auto const at = [&](std::chrono::nanoseconds when, auto act) {
            script.push_back(executor.after(when, [act] { act(); }));
        };
        at(story.beginLag, [&] { begin(story); });
        for (auto repeat = story.beginLag + 600ms; story.isRepeated && repeat < story.keyUp; repeat += 40ms)
            at(repeat, [&] { begin(story); });
        at(std::max(story.modifiersUp, 0ns), [&] { keys.down.clear(); });
        if (!story.isEndLost)
            at(story.keyUp + story.endLag, [&] { end(story); });
        if (story.cut > 0ns)
            at(story.cut, [&] { cut(story); });
        auto const released = std::min(story.keyUp, std::max(story.modifiersUp, 0ns));
        auto const over = std::max(story.keyUp, story.modifiersUp) + 40ms;
        auto const start = executor.now();
        auto const forgotten = story.isEndLost && story.cut > 0ns ? PeekVerbs::patience : 0s;
        while (executor.now() < start + over + PeekHold::settling + 260ms + forgotten) {
            executor.advance(5ms);
            auto const passed = executor.now() - start;
            bool const isHeld = passed > story.beginLag && passed < released;
            ASSERT_TRUE(!isHeld || m_cut || presence() == Presence::keyboardPeek) << passed / 1ms << " ms";
            bool const isCutOff = m_cut && executor.now() > *m_cut + PeekHold::passing + 65ms;
            ASSERT_TRUE(!isCutOff || presence() == Presence::closed) << passed / 1ms << " ms";
        }
        ASSERT_EQ(presence(), Presence::closed);
        ASSERT_EQ(library.peekModifiers.value(), ModifierFlags::none);
    }

private:
    std::chrono::nanoseconds since() const { return m_start && !m_cut ? executor.now() - *m_start : -1ns; }

    void begin(Story const& story)
    {
        if (story.isByPortal)
            hotKeys.press(peekKey, SummoningDesk::peekModifiers);
        else
            coordinator->peek(story.isToldHeld ? std::optional(SummoningDesk::peekModifiers) : std::nullopt);
        if (!m_start)
            m_start = executor.now();
    }
    void end(Story const& story) { story.isByPortal ? hotKeys.release(peekKey) : coordinator->endRequestedPeek(); }
    void cut(Story const& story)
    {
        m_cut = executor.now();
        story.isCutByWindow ? workspace.bringForeignToFront() : coordinator->close();
    }

    Dice& m_dice;
    std::optional<std::chrono::nanoseconds> m_start; // of what is shown
    std::chrono::nanoseconds m_keyboardComes {};
    ModifierFlags m_old = ModifierFlags::none;
    std::chrono::nanoseconds m_flicker {}; // nobody has the keyboard for a moment
    std::optional<std::chrono::nanoseconds> m_cut;
};

TEST(PeeksOfAGuest, None_sticks_and_none_ends_while_it_is_held)
{
    for (unsigned seed = 1; seed <= 60; ++seed) {
        Dice dice(seed);
        GuestDesk desk(dice);
        for (int number = 0; number < 50; ++number) {
            auto const story = desk.think();
            SCOPED_TRACE("seed " + std::to_string(seed) + ", peek " + std::to_string(number));
            ASSERT_NO_FATAL_FAILURE(desk.live(story));
        }
    }
}

TEST(PeeksOfAGuest, A_button_holds_its_peek_whatever_modifier_is_pressed_later_and_keys_until_they_go)
{
    Dice dice(1);
    GuestDesk desk(dice);
    desk.peekKeys.hasKeyboard = [] { return true; };
    desk.peekKeys.oldFlags = [] { return std::nullopt; };
    desk.coordinator->peek();
    desk.executor.advance(400ms);
    desk.keys.down = { SummoningDesk::leftShift };
    desk.executor.advance(100ms);
    EXPECT_EQ(desk.library.peekModifiers.value(), ModifierFlags::none);
    desk.keys.down.clear();
    desk.executor.advance(100ms);
    EXPECT_EQ(desk.presence(), SummoningDesk::Presence::keyboardPeek);
    desk.coordinator->endRequestedPeek();
    EXPECT_EQ(desk.presence(), SummoningDesk::Presence::closed);

    desk.keys.down = { SummoningDesk::leftControl };
    desk.coordinator->peek(ModifierFlags::control);
    desk.executor.advance(70ms);
    desk.keys.down.clear();
    desk.executor.advance(60ms);
    EXPECT_EQ(desk.presence(), SummoningDesk::Presence::closed) << "seen at once, where they were told";
}

}
}
